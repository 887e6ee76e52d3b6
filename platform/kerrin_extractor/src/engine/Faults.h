// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMessage.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

namespace kx {

/// Collects what is wrong with single cells while threads work on them, and posts one message for each kind of fault:
/// the first cell that has it. The message does not depend on the threads.
class Faults {
public:
  enum Kind { UNREADABLE_CELL, NODE_OUT_OF_RANGE, COORDINATE_NOT_FINITE, OPEN_POLYHEDRON, TOO_MANY_EDGES, NUM_KINDS };

  explicit Faults(std::string origin)
      : m_origin(std::move(origin)) {
    for (std::atomic<std::size_t>& cell : m_first)
      cell.store(NONE, std::memory_order_relaxed);
  }

  void add(Kind kind, std::size_t cell) {
    std::atomic<std::size_t>& first = m_first[kind];
    std::size_t seen = first.load(std::memory_order_relaxed);
    while (cell < seen && !first.compare_exchange_weak(seen, cell, std::memory_order_relaxed)) {
    }
  }

  void post() const {
    static constexpr std::array<const char*, NUM_KINDS> TEXTS{
        "cannot be read: its shape is unknown or has another number of nodes; such cells are skipped",
        "has a node id that is out of range; such cells are skipped",
        "has a node whose coordinates are not finite; such cells are skipped",
        "is a polyhedron whose faces do not close; such cells are skipped",
        "is cut at more edges than are possible; such cells are skipped"};
    for (std::size_t kind = 0; kind < NUM_KINDS; ++kind) {
      const std::size_t cell = m_first[kind].load(std::memory_order_relaxed);
      if (cell != NONE) KiMessage::postWarning(m_origin, "cell " + std::to_string(cell) + " " + TEXTS[kind]);
    }
  }

  /// A fault of the whole input.
  void post(const std::string& text) const { KiMessage::postWarning(m_origin, text); }

private:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);
  std::string m_origin;
  std::array<std::atomic<std::size_t>, NUM_KINDS> m_first;
};

} // namespace kx
