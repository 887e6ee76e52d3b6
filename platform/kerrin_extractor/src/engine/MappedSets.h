// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Blocks.h"
#include "ExtractedSet.h"
#include "Run.h"
#include "ValueView.h"

#include <map>
#include <memory>

namespace kx {

/// The sets mapped onto one output mesh. A set is mapped once for each pair of time stamps: its own and the output's.
/// It is known by the address of the form in which it is given (`Set` is `KiDataSetI<T>`, `KiDataSetIj<T>` or
/// `KiDataSetIjk<T>`), for an object may have several forms, of which not all suit a mesh.
class MappedSets {
public:
  /// A result that still holds; null when the set has to be mapped.
  template <class T, class Set>
  const KeXDataSetI<T>* find(const Set& set, std::size_t outputStamp) const {
    const auto found = maps<T>().find(&set);
    if (found == maps<T>().end()) return nullptr;
    const Entry<T>& entry = *found->second;
    return entry.outputStamp == outputStamp && entry.inputStamp == set.getTimeStamp() ? &entry.values : nullptr;
  }

  /// Fills a result by `valueAt(i)` for i in [0, `count`), in one phase of `run`.
  template <class T, class Set, class ValueAt>
  const KeXDataSetI<T>* fill(Run& run, const Set& set, std::size_t outputStamp, std::size_t count,
                             const ValueAt& valueAt) {
    constexpr std::size_t STEP = 16384;
    std::unique_ptr<Entry<T>>& entry = maps<T>()[&set];
    if (!entry) entry = std::make_unique<Entry<T>>();
    entry->outputStamp = 0; // until it is done: an exception leaves nothing that looks valid
    Array<T>& values = entry->values.values();
    values.resize(count);
    run.phase("map", numBlocksOf(count, STEP), [&](std::size_t step) {
      const std::size_t end = std::min((step + 1) * STEP, count);
      for (std::size_t i = step * STEP; i < end; ++i)
        values[i] = valueAt(i);
    });
    entry->values.commit(set.getName(), set.getBinding());
    entry->inputStamp = set.getTimeStamp();
    entry->outputStamp = outputStamp;
    return &entry->values;
  }

  /// Forgets what was mapped onto an earlier output than the one before `outputStamp`.
  void dropUnused(std::size_t outputStamp) {
    const auto isUnused = [outputStamp](const auto& entry) { return entry.second->outputStamp != outputStamp; };
    std::erase_if(m_scalars, isUnused);
    std::erase_if(m_vectors, isUnused);
  }

private:
  template <class T>
  struct Entry {
    ExtractedSet<T> values;
    std::size_t inputStamp = 0;
    std::size_t outputStamp = 0;
  };
  template <class T>
  using Map = std::map<const void*, std::unique_ptr<Entry<T>>>;

  template <class T>
  Map<T>& maps() {
    if constexpr (std::is_same_v<T, double>)
      return m_scalars;
    else
      return m_vectors;
  }
  template <class T>
  const Map<T>& maps() const {
    return const_cast<MappedSets*>(this)->maps<T>();
  }

  Map<double> m_scalars;
  Map<KbVec3<double>> m_vectors;
};

/// Output vertices that lie on edges between two input nodes.
struct EdgeSources {
  IndexArray begins;
  IndexArray ends;
  Array<float> weights; ///< from begin to end

  void resize(std::size_t numVertices, std::size_t endNode) {
    begins.resize(numVertices, endNode);
    ends.resize(numVertices, endNode);
    weights.resize(numVertices);
  }
  void set(std::size_t vertex, std::size_t begin, std::size_t end, double weight) {
    begins.set(vertex, begin);
    ends.set(vertex, end);
    weights[vertex] = static_cast<float>(weight);
  }
  /// The value at a vertex from those at the nodes. A vertex on its begin takes that value alone, even where the other
  /// end has none.
  template <class Values>
  auto valueAt(const Values& values, std::size_t vertex) const {
    const auto a = values(begins[vertex]);
    const auto weight = static_cast<double>(weights[vertex]);
    return weight == 0.0 ? a : a + (values(ends[vertex]) - a) * weight;
  }
};

} // namespace kx
