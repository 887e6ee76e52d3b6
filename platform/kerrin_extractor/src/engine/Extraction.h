// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "Output.h"
#include "Request.h"
#include "Run.h"
#include "SetForm.h"

#include <KerrinExtractor/KiCellFilter.h>

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace kx {

/// The frame of every extraction that keeps its output until something changes: it compares the state of the input with
/// that of the last call, reports to the callback, clears the output after a cancellation, and maps sets. `View` is
/// `FlatMesh` or `MeshView`.
template <class View>
class Extraction {
public:
  /// All that an output is made from.
  struct State {
    std::size_t topologyStamp = 0;
    std::size_t geometryStamp = 0;
    const KiCellFilter* filter = nullptr;
    std::size_t filterStamp = 0;
    const KiDataSet* set = nullptr;
    std::size_t setStamp = 0;
    std::vector<std::size_t> parameters;
    friend bool operator==(const State&, const State&) = default;
  };

  /// `name` is the extractor's class name, for messages and reports. The mesh must outlive this object.
  template <class Mesh>
  Extraction(const Mesh& mesh, bool parallel, std::string name)
      : m_view([&mesh] { return View(mesh); })
      , m_stamps([&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); })
      , m_isParallel(parallel)
      , m_name(std::move(name)) {}

  /// Brings `output` up to date by `make(run, view, faults)` if mesh, filter or request have changed. An empty mesh and
  /// a request with a fault give an empty output. `numPhases` is a number or tells it by the view. `Output` offers
  /// `clear`, `commit` and `dropUnusedSets` as `kx::Output` does.
  template <class Output, class Filter, class NumPhases, class Make>
  void update(KiExtractorCallback* callback, Output& output, Request request, const Filter* filter,
              const NumPhases& numPhases, const Make& make) {
    State state = stateOf(request, filter);
    if (m_isValid && state == m_state) {
      const Run nothingToDo(callback, m_isParallel, m_name, {}, 0);
      return;
    }
    const Changes changes = changesTo(state);
    output.dropUnusedSets();
    m_isValid = false;
    m_state = std::move(state);
    Faults faults(m_name + "::extract");
    View view = m_view();
    view.setFilter(filter);
    try {
      const std::string& fault = request.fault.empty() ? view.fault : request.fault;
      if (!fault.empty()) faults.post(fault);
      const bool isEmpty = !fault.empty() || view.numCells == 0;
      Run run(callback, m_isParallel, m_name, changes, isEmpty ? 0 : phasesOf(numPhases, view));
      if (isEmpty)
        output.clear();
      else
        make(run, view, faults);
    } catch (...) {
      output.clear();
      output.commit(view.address());
      throw;
    }
    output.commit(view.address());
    m_isValid = true;
    faults.post();
  }

  /// The set mapped onto each output, nodes by `valueAt(values, output, vertex)` with the output's number. Null entries
  /// when the set does not suit.
  template <class T, template <class> class Set, class Output, class ValueAt>
  std::vector<const KeXDataSetI<T>*> mapAll(KiExtractorCallback* callback, const Set<T>& set,
                                            const std::vector<Output*>& outputs, const ValueAt& valueAt) {
    std::vector<const KeXDataSetI<T>*> results;
    std::size_t numMissing = 0;
    for (const Output* output : outputs) {
      results.push_back(output->sets.template find<T>(set, output->mesh.outputStamp()));
      numMissing += !results.back();
    }
    const std::string origin = m_name + (std::is_same_v<T, double> ? "::extractScalarSet" : "::extractVec3Set");
    if (numMissing == 0) {
      const Run nothingToDo(callback, m_isParallel, origin, {}, 0);
      return results;
    }
    const Faults faults(origin);
    if (m_isValid && m_stamps() != std::pair(m_state.topologyStamp, m_state.geometryStamp)) {
      faults.post("the mesh has changed since the last extraction");
      return std::vector<const KeXDataSetI<T>*>(outputs.size(), nullptr);
    }
    const View view = m_view();
    std::string fault;
    visitSet(view, set, fault, [&](const auto& values) {
      Run run(callback, m_isParallel, origin, {false, false, true}, numMissing);
      const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
      for (std::size_t n = 0; n < outputs.size(); ++n) {
        if (results[n]) continue;
        const auto& data = outputs[n]->mesh.data();
        MappedSets& sets = outputs[n]->sets;
        const std::size_t stamp = outputs[n]->mesh.outputStamp();
        if (isPerNode)
          results[n] = sets.fill<T>(run, set, stamp, data.numVertices(),
                                    [&](std::size_t vertex) { return valueAt(values, n, vertex); });
        else
          results[n] = sets.fill<T>(run, set, stamp, data.numCells(),
                                    [&](std::size_t cell) { return values(data.inputCells[cell]); });
      }
    });
    if (!fault.empty()) faults.post(fault);
    return results;
  }
  /// The same for one output, nodes by `valueAt(values, vertex)`.
  template <class T, template <class> class Set, class Output, class ValueAt>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set, Output& output, const ValueAt& valueAt) {
    const auto valueAtVertex = [&](const auto& values, std::size_t, std::size_t vertex) {
      return valueAt(values, vertex);
    };
    return mapAll(callback, set, std::vector<Output*>{&output}, valueAtVertex).front();
  }

  /// Whether `update` would find nothing to do.
  template <class Filter>
  bool isUpToDate(Request request, const Filter* filter) const {
    return m_isValid && stateOf(request, filter) == m_state;
  }
  /// Of the present or last `update`.
  const State& state() const { return m_state; }

private:
  template <class Filter>
  State stateOf(Request& request, const Filter* filter) const {
    const auto [topologyStamp, geometryStamp] = m_stamps();
    return {topologyStamp,
            geometryStamp,
            filter,
            filter ? filter->getTimeStamp() : 0,
            request.set,
            request.set ? request.set->getTimeStamp() : 0,
            std::move(request.parameters)};
  }
  /// A new filter, set or parameter makes an output that is new as a whole.
  Changes changesTo(const State& state) const {
    if (!m_isValid) return {true, true, state.set != nullptr};
    const bool isNewSet = state.set != m_state.set || state.setStamp != m_state.setStamp;
    const bool isNewRequest = isNewSet || state.filter != m_state.filter || state.filterStamp != m_state.filterStamp ||
                              state.parameters != m_state.parameters;
    return {isNewRequest || state.geometryStamp != m_state.geometryStamp,
            isNewRequest || state.topologyStamp != m_state.topologyStamp, isNewSet};
  }
  template <class NumPhases>
  static std::size_t phasesOf(const NumPhases& numPhases, const View& view) {
    if constexpr (std::is_invocable_v<NumPhases, const View&>)
      return numPhases(view);
    else
      return numPhases;
  }

  std::function<View()> m_view;
  std::function<std::pair<std::size_t, std::size_t>()> m_stamps;
  bool m_isParallel;
  std::string m_name;
  bool m_isValid = false; ///< whether the output belongs to m_state
  State m_state;
};

} // namespace kx
