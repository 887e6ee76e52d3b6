// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "FlatForms.h"
#include "FlatMesh.h"
#include "MappedSets.h"
#include "MeshView.h"

#include <functional>
#include <tuple>
#include <utility>
#include <vector>

namespace kx {

/// All that an output is made from.
struct InputState {
  std::size_t topologyStamp = 0;
  std::size_t geometryStamp = 0;
  const void* filter = nullptr;
  std::size_t filterStamp = 0;
  const void* set = nullptr;
  std::size_t setStamp = 0;
  std::size_t tessellatorStamp = 0; ///< 0 without one
  std::vector<double> numbers;      ///< the family's own parameters
  std::vector<std::size_t> cells;   ///< chosen cells, where the family chooses some
  bool choosesCells = false;

  friend bool operator==(const InputState&, const InputState&) = default;
};

// How each view of a mesh tells the address of its cells, and reads a set of the form and binding that suit it. The
// function is not called, and `fault` may say why, when the set does not suit.

inline InputAddress addressOf(const FlatMesh& mesh) { return mesh.address; }
inline InputAddress addressOf(const MeshView& mesh) { return {mesh.isStructured, mesh.cellDims}; }

template <class T, class F>
void visitValues(const KiDataSetI<T>& set, std::size_t count, std::string& fault, const F& f) {
  if (const std::optional<SetView<T>> view = viewSet(set, count, fault)) std::visit(f, *view);
}

template <class T, class F>
void visitSet(const FlatMesh& mesh, const KiDataSetI<T>& set, std::string& fault, const F& f) {
  if (mesh.address.isStructured || set.getBinding() == DataBinding::AUTO) return;
  visitValues(set, set.getBinding() == DataBinding::PER_NODE ? mesh.endNode : mesh.numCells, fault, f);
}

template <class T, class F>
void visitSet(const FlatMesh& mesh, const KiDataSetIj<T>& set, std::string& fault, const F& f) {
  if (!mesh.address.isStructured || set.getBinding() == DataBinding::AUTO) return;
  const Dims& dims = set.getBinding() == DataBinding::PER_NODE ? mesh.nodeDims : mesh.cellDims;
  visitValues<T>(FlatSet<T, KiDataSetIj<T>>(set, dims), dims.count(), fault, f);
}

template <class T, class F>
void visitSet(const MeshView& mesh, const KiDataSetI<T>& set, std::string& fault, const F& f) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (set.getBinding() == DataBinding::AUTO || (isPerNode ? mesh.hasGridNodes : mesh.isStructured)) return;
  visitValues(set, isPerNode ? mesh.endNode : mesh.numCells, fault, f);
}

template <class T, class F>
void visitSet(const MeshView& mesh, const KiDataSetIjk<T>& set, std::string& fault, const F& f) {
  const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
  if (set.getBinding() == DataBinding::AUTO || !(isPerNode ? mesh.hasGridNodes : mesh.isStructured)) return;
  const std::optional<SetView<T>> view =
      viewSet(set, isPerNode ? mesh.nodeDims : mesh.cellDims, isPerNode ? mesh.slotBits : 0, fault);
  if (view) std::visit(f, *view);
}

/// The frame of every extraction that keeps its output until something changes: it compares the state of the input with
/// that of the last call, reports to the callback, clears the output after a cancellation, and maps sets. `View` is
/// `FlatMesh` or `MeshView`.
template <class View>
class Extraction {
public:
  /// `name` is the extractor's class name, for messages and reports. The mesh must outlive this object.
  template <class Mesh>
  Extraction(const Mesh& mesh, bool parallel, std::string name)
      : m_view([&mesh] { return View(mesh); })
      , m_stamps([&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); })
      , m_parallel(parallel)
      , m_name(std::move(name)) {}
  virtual ~Extraction() = default;
  Extraction(const Extraction&) = delete;
  Extraction& operator=(const Extraction&) = delete;

protected:
  /// Empties the output.
  virtual void clear() = 0;
  /// Gives the output new time stamps.
  virtual void commit(const InputAddress& address) = 0;

  /// Brings the output up to date by `make(run, mesh, faults)`, if the input has changed. `parameters` holds the
  /// family's own part of the state; a `fault` in them leaves the output empty.
  template <class Filter, class Make>
  void update(KiExtractorCallback* callback, InputState parameters, const Filter* filter, const std::string& fault,
              std::size_t numPhases, const Make& make) {
    std::tie(parameters.topologyStamp, parameters.geometryStamp) = m_stamps();
    parameters.filter = static_cast<const KiCellFilter*>(filter);
    parameters.filterStamp = filter ? filter->getTimeStamp() : 0;
    if (m_isValid && parameters == m_state) {
      const Run nothingToDo(callback, m_parallel, m_name, {}, 0);
      return;
    }
    const bool isNewSet = !m_isValid || parameters.set != m_state.set || parameters.setStamp != m_state.setStamp;
    m_isValid = false;
    m_state = std::move(parameters);
    Faults faults(m_name + "::extract");
    View mesh = m_view();
    mesh.setFilter(filter);
    try {
      const bool isFaulty = !fault.empty() || !mesh.fault.empty();
      if (isFaulty) faults.post(!fault.empty() ? fault : mesh.fault);
      Run run(callback, m_parallel, m_name, {true, true, isNewSet}, isFaulty ? 0 : numPhases);
      if (isFaulty)
        clear();
      else
        make(run, mesh, faults);
    } catch (...) {
      clear();
      commit(addressOf(mesh));
      throw;
    }
    commit(addressOf(mesh));
    m_isValid = true;
    faults.post();
  }

  /// Output that a set is mapped onto.
  struct Target {
    MappedSets* sets;
    std::size_t outputStamp;
    std::size_t numVertices;
    std::size_t numCells;
  };
  /// Maps a set onto each target by `vertexValue(values, target, vertex)` or `cellValue(values, target, cell)`. Null
  /// entries when the set does not suit.
  template <class T, class Set, class VertexValue, class CellValue>
  std::vector<const KeXDataSetI<T>*> map(KiExtractorCallback* callback, const Set& set,
                                         const std::vector<Target>& targets, const VertexValue& vertexValue,
                                         const CellValue& cellValue) {
    std::vector<const KeXDataSetI<T>*> results;
    std::size_t numMissing = 0;
    for (const Target& target : targets) {
      results.push_back(target.sets->template find<T>(set, target.outputStamp));
      numMissing += !results.back();
    }
    const std::string origin = m_name + (std::is_same_v<T, double> ? "::extractScalarSet" : "::extractVec3Set");
    if (numMissing == 0) {
      const Run nothingToDo(callback, m_parallel, origin, {}, 0);
      return results;
    }
    const Faults faults(origin);
    if (m_isValid && m_stamps() != std::pair(m_state.topologyStamp, m_state.geometryStamp)) {
      faults.post("the mesh has changed since the last extraction");
      return std::vector<const KeXDataSetI<T>*>(targets.size(), nullptr);
    }
    const View mesh = m_view();
    std::string fault;
    visitSet(mesh, set, fault, [&](const auto& values) {
      Run run(callback, m_parallel, origin, {false, false, true}, numMissing);
      const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
      for (std::size_t t = 0; t < targets.size(); ++t) {
        if (results[t]) continue;
        const Target& target = targets[t];
        if (isPerNode)
          results[t] = target.sets->template fill<T>(run, set, target.outputStamp, target.numVertices,
                                                     [&](std::size_t v) { return vertexValue(values, t, v); });
        else
          results[t] = target.sets->template fill<T>(run, set, target.outputStamp, target.numCells,
                                                     [&](std::size_t c) { return cellValue(values, t, c); });
      }
    });
    if (!fault.empty()) faults.post(fault);
    return results;
  }

  /// The input of the last `update`.
  const InputState& state() const { return m_state; }

private:
  std::function<View()> m_view;
  std::function<std::pair<std::size_t, std::size_t>()> m_stamps;
  bool m_parallel;
  std::string m_name;
  bool m_isValid = false; ///< whether the output belongs to m_state
  InputState m_state;
};

} // namespace kx
