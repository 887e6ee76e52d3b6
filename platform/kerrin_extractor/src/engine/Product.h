// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Extraction.h"
#include "Faults.h"
#include "MappedSets.h"
#include "MeshView.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace kx {

/// The output of an extractor that picks parts of its mesh: what it was made from, and the sets mapped onto it. `View`
/// is the view of the mesh, `Output` an output mesh with `data()`, `commit` and `outputStamp`.
template <class View, class Output>
class Product {
public:
  template <class Mesh>
  Product(const Mesh& mesh, bool parallel, std::string name)
      : m_view([&mesh] { return View(mesh); })
      , m_stamps([&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); })
      , m_isParallel(parallel)
      , m_name(std::move(name)) {}

  const Output& output() const { return m_output; }

  /// Makes the output by `make(run, view, data, faults)` unless mesh, filter and `parameters` are those of the call
  /// before. `numPhases` is a number or tells it by the view.
  template <class Filter, class NumPhases, class Make>
  const Output& update(KiExtractorCallback* callback, const Filter* filter, std::vector<std::size_t> parameters,
                       const NumPhases& numPhases, const Make& make) {
    const auto [topologyStamp, geometryStamp] = m_stamps();
    parameters.push_back(filter ? filter->getTimeStamp() : 0);
    Inputs inputs{topologyStamp, geometryStamp, static_cast<const KiCellFilter*>(filter), std::move(parameters)};
    if (m_inputs == inputs) {
      const Run nothingToDo(callback, m_isParallel, m_name, {}, 0);
      return m_output;
    }
    const bool isNew = !m_inputs;
    const Changes changes{isNew || m_inputs->geometryStamp != geometryStamp,
                          isNew || m_inputs->topologyStamp != topologyStamp || m_inputs->filter != inputs.filter ||
                              m_inputs->parameters != inputs.parameters,
                          false};
    m_sets.dropUnused(m_output.outputStamp());
    m_inputs.reset();
    Faults faults(m_name + "::extract");
    View view = m_view();
    view.setFilter(filter);
    m_address = addressOf(view);
    try {
      if (!view.fault.empty()) faults.post(view.fault);
      const bool isEmpty = view.numCells == 0;
      Run run(callback, m_isParallel, m_name, changes, isEmpty ? 0 : phasesOf(numPhases, view));
      if (isEmpty)
        m_output.data().clear();
      else
        make(run, view, m_output.data(), faults);
    } catch (...) {
      m_output.data().clear();
      commit();
      throw;
    }
    commit();
    m_inputs = std::move(inputs);
    faults.post();
    return m_output;
  }

  /// The set mapped onto the output, nodes by `valueAt(values, vertex)`; null when it does not suit.
  template <class T, template <class> class Set, class ValueAt>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set, const ValueAt& valueAt) {
    const std::string origin = m_name + (std::is_same_v<T, double> ? "::extractScalarSet" : "::extractVec3Set");
    const std::size_t stamp = m_output.outputStamp();
    if (const KeXDataSetI<T>* known = m_sets.template find<T>(set, stamp)) {
      const Run nothingToDo(callback, m_isParallel, origin, {}, 0);
      return known;
    }
    const Faults faults(origin);
    if (m_inputs && m_stamps() != std::pair(m_inputs->topologyStamp, m_inputs->geometryStamp)) {
      faults.post("the mesh has changed since the last extraction");
      return nullptr;
    }
    const View view = m_view();
    std::string fault;
    const KeXDataSetI<T>* mapped = nullptr;
    visitSet(view, set, fault, [&](const auto& values) {
      Run run(callback, m_isParallel, origin, {false, false, true}, 1);
      const auto& data = m_output.data();
      if (set.getBinding() == DataBinding::PER_CELL)
        mapped = m_sets.template fill<T>(run, set, stamp, data.numCells(),
                                         [&](std::size_t c) { return values(data.inputCells[c]); });
      else
        mapped = m_sets.template fill<T>(run, set, stamp, data.numVertices(),
                                         [&](std::size_t v) { return valueAt(values, v); });
    });
    if (!fault.empty()) faults.post(fault);
    return mapped;
  }

private:
  struct Inputs {
    std::size_t topologyStamp;
    std::size_t geometryStamp;
    const void* filter;
    std::vector<std::size_t> parameters;
    friend bool operator==(const Inputs&, const Inputs&) = default;
  };

  template <class NumPhases>
  static std::size_t phasesOf(const NumPhases& numPhases, const View& view) {
    if constexpr (std::is_invocable_v<NumPhases, const View&>)
      return numPhases(view);
    else
      return numPhases;
  }
  static InputAddress addressOf(const View& view) {
    if constexpr (requires { view.address; })
      return view.address;
    else
      return {view.isStructured, view.cellDims};
  }
  void commit() { m_output.commit(m_address); }

  std::function<View()> m_view;
  std::function<std::pair<std::size_t, std::size_t>()> m_stamps;
  bool m_isParallel;
  std::string m_name;
  std::optional<Inputs> m_inputs;
  InputAddress m_address;
  Output m_output;
  MappedSets m_sets;
};

} // namespace kx
