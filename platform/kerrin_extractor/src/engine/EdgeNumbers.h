// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceCutter.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace kx {

/// Finds the numbers of edges in several lists at once. Beginning again with empty lists costs nothing.
class EdgeNumbers {
public:
  /// Forgets all edges; lists have numbers below `numLists`.
  void reset(std::size_t numLists) {
    m_count = 0;
    if (m_nextStamp > std::numeric_limits<std::uint32_t>::max() - numLists) {
      m_slots.assign(m_slots.size(), {});
      m_nextStamp = 1;
    }
    m_stamp = m_nextStamp;
    m_nextStamp += static_cast<std::uint32_t>(numLists);
  }
  /// The number of an edge in a list; `next` if it has had none, which becomes its number.
  std::uint32_t numberOf(std::uint32_t list, const NodeEdge& edge, std::uint32_t next) {
    if (2 * m_count >= m_slots.size()) grow();
    Slot& slot = find(m_slots, edge, m_stamp + list);
    if (slot.stamp < m_stamp) {
      slot = {edge, m_stamp + list, next};
      ++m_count;
    }
    return slot.number;
  }

private:
  struct Slot {
    NodeEdge edge{};
    std::uint32_t stamp = 0; ///< of its list; free if it is from before the last reset
    std::uint32_t number = 0;
  };

  Slot& find(std::vector<Slot>& slots, const NodeEdge& edge, std::uint32_t stamp) const {
    const std::size_t mask = slots.size() - 1;
    std::size_t s = mixHash(hashOf(edge), stamp) & mask;
    while (slots[s].stamp >= m_stamp && !(slots[s].stamp == stamp && slots[s].edge == edge))
      s = (s + 1) & mask;
    return slots[s];
  }
  void grow() {
    std::vector<Slot> slots(std::max<std::size_t>(2 * m_slots.size(), 1024));
    for (const Slot& slot : m_slots)
      if (slot.stamp >= m_stamp) find(slots, slot.edge, slot.stamp) = slot;
    m_slots.swap(slots);
  }

  std::vector<Slot> m_slots;
  std::size_t m_count = 0;
  std::uint32_t m_stamp = 1; ///< of the first list
  std::uint32_t m_nextStamp = 1;
};

} // namespace kx
