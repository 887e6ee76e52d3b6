// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceCutter.h"

#include "NodeAverages.h"

#include <cmath>

namespace kx {
namespace {

constexpr std::size_t MAPPING_STEP = 16384; // values that are mapped in one step
constexpr std::size_t AHEAD = 24;           // vertices; their nodes lie all over the input

/// Views a set as the mesh kind wants it for the set's binding. Nothing for another form, with an empty `fault`.
template <class T>
std::optional<SetView<T>> viewFor(const MeshView& mesh, const KiDataSetI<T>& set, std::string& fault) {
  switch (set.getBinding()) {
  case DataBinding::PER_NODE:
    return mesh.hasGridNodes ? std::nullopt : viewSet(set, mesh.endNode, fault);
  case DataBinding::PER_CELL:
    return mesh.isStructured ? std::nullopt : viewSet(set, mesh.numCells, fault);
  default:
    return std::nullopt;
  }
}

template <class T>
std::optional<SetView<T>> viewFor(const MeshView& mesh, const KiDataSetIjk<T>& set, std::string& fault) {
  switch (set.getBinding()) {
  case DataBinding::PER_NODE:
    return mesh.hasGridNodes ? viewSet(set, mesh.nodeDims, mesh.slotBits, fault) : std::nullopt;
  case DataBinding::PER_CELL:
    return mesh.isStructured ? viewSet(set, mesh.cellDims, 0, fault) : std::nullopt;
  default:
    return std::nullopt;
  }
}

constexpr const char* WRONG_FORM = "has a binding or a form of addressing that does not suit the mesh";

} // namespace

void SurfaceCutter::dropIndices() {
  m_edges.reset();
  m_rowsHaveIndex = false;
  m_hasNodeAverages = false;
}

void SurfaceCutter::dropUnusedSets() {
  const std::size_t stamp = m_output.outputStamp();
  const auto isUnused = [stamp](const auto& entry) { return entry.second->outputStamp != stamp; };
  std::erase_if(m_scalarSets, isUnused);
  std::erase_if(m_vectorSets, isUnused);
}

template <class Filter, class MakeField>
void SurfaceCutter::extract(KiExtractorCallback* callback, const Parameters& parameters, double isovalue,
                            const Inputs& inputs, const Filter* filter, const MakeField& makeField) {
  const bool isSameField = m_isValid && inputs == m_inputs;
  if (isSameField && parameters == m_parameters) {
    const Run nothingToDo(callback, m_parallel, m_name, {}, 0);
    return;
  }
  const bool isNewSet = !m_isValid || inputs.field != m_inputs.field || inputs.fieldStamp != m_inputs.fieldStamp;
  if (!isSameField) dropIndices();
  dropUnusedSets();
  m_isValid = false;
  Faults faults(m_name + "::extract");
  MeshView mesh = m_view();
  mesh.setFilter(filter);
  try {
    std::optional<ScalarField> field;
    if (!mesh.fault.empty())
      faults.post(mesh.fault);
    else
      field = makeField(mesh, faults);
    polygonise(callback, {true, true, isNewSet}, mesh, field ? &*field : nullptr, isovalue, faults);
  } catch (...) {
    dropIndices();
    m_output.data().clear();
    m_output.commit({mesh.isStructured, mesh.cellDims});
    throw;
  }
  m_output.commit({mesh.isStructured, mesh.cellDims});
  m_inputs = inputs;
  m_parameters = parameters;
  m_isValid = true;
  faults.post();
}

void SurfaceCutter::polygonise(KiExtractorCallback* callback, const Changes& changes, const MeshView& mesh,
                               const ScalarField* field, double isovalue, Faults& faults) {
  SurfaceData& data = m_output.data();
  const bool hasCells = field && mesh.numCells > 0;
  const bool tryRows = hasCells && RowPolygoniser::suits(mesh, *field);
  const std::size_t numPhases = !hasCells ? 0 : tryRows ? RowPolygoniser::NUM_PHASES : m_edges.numPhases(mesh, *field);
  Run run(callback, m_parallel, m_name, changes, numPhases);
  if (!hasCells) {
    data.clear();
    return;
  }
  if (tryRows) {
    const bool isDone = m_rows.cut(run, mesh, *field, isovalue, !m_rowsHaveIndex, data);
    m_rowsHaveIndex = true;
    if (isDone) return;
  }
  m_edges.cut(run, mesh, *field, isovalue, data, faults);
}

template <class Set, class Filter>
const KeXSurfaceMeshUnstructured& SurfaceCutter::cutBySet(KiExtractorCallback* callback, double isovalue,
                                                          const Set& set, const Filter* filter) {
  const auto [topologyStamp, geometryStamp] = m_stamps();
  const Inputs inputs{topologyStamp,
                      geometryStamp,
                      &set, // an object may have several forms, of which one suits the mesh
                      set.getTimeStamp(),
                      static_cast<const KiCellFilter*>(filter),
                      filter ? filter->getTimeStamp() : 0};
  extract(callback, {isovalue}, isovalue, inputs, filter,
          [&](const MeshView& mesh, Faults& faults) -> std::optional<ScalarField> {
            if (!std::isfinite(isovalue)) {
              faults.post("the isovalue " + std::to_string(isovalue) + " is not finite");
              return std::nullopt;
            }
            std::string fault;
            const std::optional<SetView<double>> view = viewFor(mesh, set, fault);
            if (!view) {
              faults.post(!fault.empty() ? fault : "the set \"" + set.getName() + "\" " + WRONG_FORM);
              return std::nullopt;
            }
            if (set.getBinding() == DataBinding::PER_NODE) return toField(*view);
            if (mesh.hasGridNodes) return ScalarField(GridAverages{&mesh, *view});
            if (!m_hasNodeAverages) {
              Run silent(nullptr, m_parallel, m_name, {}, 0);
              averageToNodes(silent, mesh, *view, m_nodeAverages);
            }
            m_hasNodeAverages = true;
            return ScalarField(ArrayValues<double, double>{m_nodeAverages.data(), mesh.slotBits});
          });
  return m_output;
}

template <class Filter>
const KeXSurfaceMeshUnstructured& SurfaceCutter::cutByFunction(KiExtractorCallback* callback,
                                                               const ImplicitFunction& function, const Filter* filter) {
  const auto [topologyStamp, geometryStamp] = m_stamps();
  const Inputs inputs{topologyStamp,
                      geometryStamp,
                      nullptr,
                      0,
                      static_cast<const KiCellFilter*>(filter),
                      filter ? filter->getTimeStamp() : 0};
  extract(callback, function.parameters(), 0.0, inputs, filter,
          [&](const MeshView& mesh, Faults& faults) -> std::optional<ScalarField> {
            if (function.fault() == nullptr) return ScalarField(FunctionValues{&function, &mesh.points});
            faults.post(function.fault());
            return std::nullopt;
          });
  return m_output;
}

template <class T, template <class> class Set>
const KeXDataSetI<T>* SurfaceCutter::mapSet(KiExtractorCallback* callback, const Set<T>& set) {
  constexpr bool isScalar = std::is_same_v<T, double>;
  const std::string origin = m_name + (isScalar ? "::extractScalarSet" : "::extractVec3Set");
  const auto sets = [this]() -> MappedSets<T>& {
    if constexpr (isScalar)
      return m_scalarSets;
    else
      return m_vectorSets;
  };
  const void* key = &set; // each form of an object has an address of its own
  const std::size_t outputStamp = m_output.outputStamp();
  if (const auto known = sets().find(key); known != sets().end() && known->second->outputStamp == outputStamp &&
                                           known->second->inputStamp == set.getTimeStamp()) {
    const Run nothingToDo(callback, m_parallel, origin, {}, 0);
    return &known->second->values;
  }
  const Faults faults(origin);
  if (m_isValid && m_stamps() != std::pair(m_inputs.topologyStamp, m_inputs.geometryStamp)) {
    faults.post("the mesh has changed since the last extraction");
    return nullptr;
  }
  const MeshView mesh = m_view();
  std::string fault;
  const std::optional<SetView<T>> view = viewFor(mesh, set, fault);
  if (!view) {
    if (!fault.empty()) faults.post(fault);
    return nullptr;
  }
  std::unique_ptr<MappedSet<T>>& mapped = sets()[key];
  if (!mapped) mapped = std::make_unique<MappedSet<T>>();
  mapped->outputStamp = 0; // until it is done: an exception leaves nothing that looks valid
  const SurfaceData& data = m_output.data();
  Array<T>& values = mapped->values.values();
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  values.resize(isPerNode ? data.numVertices() : data.numCells());
  Run run(callback, m_parallel, origin, {false, false, true}, 1);
  run.phase("map", (values.size() + MAPPING_STEP - 1) / MAPPING_STEP, [&](std::size_t step) {
    const std::size_t end = std::min((step + 1) * MAPPING_STEP, values.size());
    std::visit(
        [&](const auto& input) {
          if (!isPerNode) {
            for (std::size_t c = step * MAPPING_STEP; c < end; ++c)
              values[c] = input(data.inputCells[c]);
            return;
          }
          for (std::size_t v = step * MAPPING_STEP; v < end; ++v) {
            const std::size_t ahead = std::min(v + AHEAD, end - 1);
            input.prefetch(data.edgeBegins[ahead]);
            input.prefetch(data.edgeEnds[ahead]);
            const T a = input(data.edgeBegins[v]);
            const auto weight = static_cast<double>(data.weights[v]);
            // A vertex on its begin takes that value alone, even where the other end has none.
            values[v] = weight == 0.0 ? a : a + (input(data.edgeEnds[v]) - a) * weight;
          }
        },
        *view);
  });
  mapped->values.commit(set.getName(), set.getBinding());
  mapped->inputStamp = set.getTimeStamp();
  mapped->outputStamp = outputStamp;
  return &mapped->values;
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
