// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/engine/Blocks.h"
#include "src/engine/SetForm.h"
#include "src/engine/SurfaceLocator.h"
#include "src/engine/VolumeLocator.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace kx {

/// The state behind every point probe. `Locator` is `VolumeLocator` or `SurfaceLocator`.
template <class Locator>
class PointProbe {
public:
  /// `name` is the probe's class name, for messages and reports. The mesh must outlive this object.
  template <class Mesh>
  PointProbe(const Mesh& mesh, bool parallel, std::string name)
      : m_locator(mesh)
      , m_parallel(parallel)
      , m_name(std::move(name)) {}

  template <class Filter>
  void move(KiExtractorCallback* callback, const KbVec3<double>& point, const Filter* filter) {
    m_hit.cell = CellHit::NO_CELL;
    m_weights.clear();
    run(callback, filter, 0, [&](Run&) {
      if (!m_locator.find(point, m_hit)) return;
      for (std::size_t i = 0; i < m_hit.numNodes(); ++i)
        m_weights.push_back(m_hit.weight(i));
    });
  }

  bool isCellFound() const { return m_hit.isFound(); }
  std::size_t cell() const { return m_hit.cell; }
  /// One of the found cell's indices in a structured mesh; all bits set when there is none.
  std::size_t cellIndex(std::size_t axis) const {
    return isCellFound() ? m_locator.mesh().cellDims.split(m_hit.cell)[axis] : CellHit::NO_CELL;
  }
  const std::vector<double>& weights() const { return m_weights; }

  template <class T, template <class> class Set>
  T getValue(const Set<T>& set) const {
    T value(0.0);
    if (!isCellFound()) return value;
    const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
    withValuesOf(set, "::getValue",
                 [&](const auto& values) { value = isPerNode ? m_hit.interpolate(values) : values(m_hit.cell); });
    return value;
  }

  template <class Filter>
  void findCells(KiExtractorCallback* callback, const KbVec3<double>* points, std::size_t count, const Filter* filter,
                 std::size_t* cells) {
    run(callback, filter, 1, [&](Run& run) {
      forEachPoint(run, points, count, [&](std::size_t i, const CellHit& hit) { cells[i] = hit.cell; });
    });
  }

  template <class T, template <class> class Set, class Filter>
  void probe(KiExtractorCallback* callback, const KbVec3<double>* points, std::size_t count, const Filter* filter,
             const Set<T>& set, std::size_t* cells, T* values) {
    run(callback, filter, 1, [&](Run& run) {
      const bool isPerNode = set.getBinding() == DataBinding::PER_NODE;
      const auto probeAll = [&](const auto& input) {
        forEachPoint(run, points, count, [&](std::size_t i, const CellHit& hit) {
          if (cells) cells[i] = hit.cell;
          values[i] = !hit.isFound() ? T(0.0) : isPerNode ? hit.interpolate(input) : input(hit.cell);
        });
      };
      if (!withValuesOf(set, "::probe", probeAll)) probeAll([](std::size_t) { return T(0.0); });
    });
  }

private:
  static constexpr std::size_t POINTS_PER_STEP = 1024;

  template <class Filter, class Body>
  void run(KiExtractorCallback* callback, const Filter* filter, std::size_t numPhases, const Body& body) {
    const Changes changes = m_locator.getChanges();
    Run run(callback, m_parallel, m_name, changes, m_locator.numPhases(changes) + numPhases);
    Faults faults(m_name + "::move");
    m_locator.update(run, changes, faults);
    faults.post();
    m_locator.setFilter(filter);
    body(run);
  }

  template <class Visit>
  void forEachPoint(Run& run, const KbVec3<double>* points, std::size_t count, const Visit& visit) const {
    // Steps of a batch share one order: points that are near each other want the same cells and nodes.
    constexpr std::size_t STEPS_PER_BATCH = 1024;
    constexpr std::size_t BATCH = STEPS_PER_BATCH * POINTS_PER_STEP;
    std::vector<std::once_flag> areOrdered(numBlocksOf(count, BATCH));
    std::vector<std::vector<std::uint32_t>> orders(areOrdered.size());
    run.phase("probe", numBlocksOf(count, POINTS_PER_STEP), [&](std::size_t step) {
      const std::size_t batch = step / STEPS_PER_BATCH;
      const KbVec3<double>* first = points + batch * BATCH;
      std::call_once(areOrdered[batch], [&] {
        orders[batch] = m_locator.orderOf(first, static_cast<std::uint32_t>(std::min(BATCH, count - batch * BATCH)));
      });
      const std::vector<std::uint32_t>& order = orders[batch];
      CellHit hit;
      const std::size_t begin = step % STEPS_PER_BATCH * POINTS_PER_STEP;
      for (std::size_t n = begin; n < std::min(begin + POINTS_PER_STEP, order.size()); ++n) {
        m_locator.find(first[order[n]], hit);
        visit(batch * BATCH + order[n], hit);
      }
    });
  }

  /// Visits the values of a set; posts why not when it does not suit the mesh.
  template <class Set, class Visit>
  bool withValuesOf(const Set& set, const char* function, const Visit& visit) const {
    std::string fault;
    if (visitSet(m_locator.mesh(), set, fault, visit)) return true;
    if (fault.empty()) fault = "the set \"" + set.getName() + "\" has a binding or a form that does not suit the mesh";
    Faults(m_name + function).post(fault);
    return false;
  }

  Locator m_locator;
  bool m_parallel;
  std::string m_name;
  CellHit m_hit;
  std::vector<double> m_weights;
};

} // namespace kx
