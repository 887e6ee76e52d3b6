// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceCutter.h"

#include "NodeAverages.h"

#include <cmath>

namespace kx {

void SurfaceCutter::keepIndexOf(std::size_t field) {
  State input = m_extraction.state();
  input.parameters = {field};
  if (m_indexInput == input) return;
  m_edges.reset();
  m_rowsHaveIndex = false;
  m_hasNodeAverages = false;
  m_indexInput = std::move(input);
}

template <class Filter, class MakeField>
const KeXSurfaceMeshUnstructured& SurfaceCutter::cut(KiExtractorCallback* callback, Request request, std::size_t field,
                                                     double isovalue, const Filter* filter,
                                                     const MakeField& makeField) {
  request.parameters.push_back(field);
  std::optional<ScalarField> values;
  std::string fault;
  const auto numPhases = [&](const MeshView& mesh) -> std::size_t {
    keepIndexOf(field);
    values = makeField(mesh, fault);
    if (!values) return 0;
    return RowPolygoniser::suits(mesh, *values) ? RowPolygoniser::NUM_PHASES : m_edges.numPhases(mesh, *values);
  };
  const auto make = [&](Run& run, const MeshView& mesh, Faults& faults) {
    if (!values) {
      faults.post(fault);
      m_output.clear();
      return;
    }
    std::optional<State> indexInput;
    indexInput.swap(m_indexInput); // an exception leaves an index that belongs to nothing
    polygonise(run, mesh, *values, isovalue, faults);
    m_indexInput.swap(indexInput);
  };
  m_extraction.update(callback, m_output, std::move(request), filter, numPhases, make);
  return m_output.mesh;
}

void SurfaceCutter::polygonise(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue,
                               Faults& faults) {
  SurfaceData& data = m_output.mesh.data();
  if (RowPolygoniser::suits(mesh, field)) {
    const bool isDone = m_rows.cut(run, mesh, field, isovalue, !m_rowsHaveIndex, data);
    m_rowsHaveIndex = true;
    if (isDone) return;
  }
  m_edges.cut(run, mesh, field, isovalue, data, faults);
}

template <class Set, class Filter>
const KeXSurfaceMeshUnstructured& SurfaceCutter::cutBySet(KiExtractorCallback* callback, double isovalue,
                                                          const Set& set, const Filter* filter) {
  Request request;
  request.add(isovalue);
  request.set = &set;
  if (!std::isfinite(isovalue)) request.fault = "the isovalue " + std::to_string(isovalue) + " is not finite";
  const auto makeField = [&](const MeshView& mesh, std::string& fault) -> std::optional<ScalarField> {
    const std::optional<SetView<double>> values = viewFor(mesh, set, fault);
    if (!values) {
      if (fault.empty())
        fault = "the set \"" + set.getName() + "\" has a binding or a form of addressing that does not suit the mesh";
      return std::nullopt;
    }
    if (set.getBinding() == DataBinding::PER_NODE) return toField(*values);
    if (mesh.hasGridNodes) return ScalarField(GridAverages{&mesh, *values});
    if (!m_hasNodeAverages) {
      Run silent(nullptr, m_isParallel, {}, {}, 0);
      averageToNodes(silent, mesh, *values, m_nodeAverages);
    }
    m_hasNodeAverages = true;
    return ScalarField(ArrayValues<double, double>{m_nodeAverages.data(), mesh.slotBits});
  };
  // An object may have several forms, of which one suits the mesh.
  const std::size_t form = std::is_same_v<Set, KiDataSetIjk<double>> ? 1 : 0;
  return cut(callback, std::move(request), form, isovalue, filter, makeField);
}

template <class Filter>
const KeXSurfaceMeshUnstructured& SurfaceCutter::cutByFunction(KiExtractorCallback* callback,
                                                               const ImplicitFunction& function, const Filter* filter) {
  Request request;
  for (const double parameter : function.parameters())
    request.add(parameter);
  if (const char* fault = function.fault()) request.fault = fault;
  return cut(callback, std::move(request), 0, 0.0, filter, [&function](const MeshView& mesh, std::string&) {
    return std::optional<ScalarField>(FunctionValues{&function, &mesh.points});
  });
}

template <class T, template <class> class Set>
const KeXDataSetI<T>* SurfaceCutter::mapSet(KiExtractorCallback* callback, const Set<T>& set) {
  constexpr std::size_t AHEAD = 24; // vertices; their nodes lie all over the input
  const SurfaceData& data = m_output.mesh.data();
  return m_extraction.map(callback, set, m_output, [&data](const auto& values, std::size_t vertex) {
    if (vertex + AHEAD < data.edgeBegins.size()) {
      values.prefetch(data.edgeBegins[vertex + AHEAD]);
      values.prefetch(data.edgeEnds[vertex + AHEAD]);
    }
    return data.valueOnEdge(values, vertex);
  });
}

// The combinations that the contract has.
using Surface = KeXSurfaceMeshUnstructured;
template const Surface& SurfaceCutter::cutBySet(KiExtractorCallback*, double, const KiDataSetI<double>&,
                                                const KiCellFilterI*);
template const Surface& SurfaceCutter::cutBySet(KiExtractorCallback*, double, const KiDataSetI<double>&,
                                                const KiCellFilterIjk*);
template const Surface& SurfaceCutter::cutBySet(KiExtractorCallback*, double, const KiDataSetIjk<double>&,
                                                const KiCellFilterIjk*);
template const Surface& SurfaceCutter::cutByFunction(KiExtractorCallback*, const ImplicitFunction&,
                                                     const KiCellFilterI*);
template const Surface& SurfaceCutter::cutByFunction(KiExtractorCallback*, const ImplicitFunction&,
                                                     const KiCellFilterIjk*);
template const KeXDataSetI<double>* SurfaceCutter::mapSet(KiExtractorCallback*, const KiDataSetI<double>&);
template const KeXDataSetI<double>* SurfaceCutter::mapSet(KiExtractorCallback*, const KiDataSetIjk<double>&);
template const KeXDataSetI<KbVec3<double>>* SurfaceCutter::mapSet(KiExtractorCallback*,
                                                                  const KiDataSetI<KbVec3<double>>&);
template const KeXDataSetI<KbVec3<double>>* SurfaceCutter::mapSet(KiExtractorCallback*,
                                                                  const KiDataSetIjk<KbVec3<double>>&);

} // namespace kx
