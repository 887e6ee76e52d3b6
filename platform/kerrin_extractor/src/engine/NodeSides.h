// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "Run.h"
#include "ValueView.h"

#include <algorithm>
#include <cstdint>

namespace kx {

/// On which side of a surface each node lies, a byte a node. Every node is read once, however many cells it has, and
/// cells then look at bytes that are likely near.
class NodeSides {
public:
  enum Side : std::uint8_t {
    INSIDE = 1,
    ON_SURFACE = 2, ///< inside as well
    NO_NUMBER = 4,
    NO_NODE = 8
  };

  /// Whether a node's value depends on no more than the node: functions see each corner of torn cells.
  static bool suits(const MeshView& mesh, const ScalarField& field) {
    return mesh.slotBits == 0 || !std::holds_alternative<FunctionValues>(field);
  }
  /// One phase.
  void fill(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue);
  /// The side of a node; `NO_NODE` for an id out of range.
  std::uint8_t operator[](std::size_t id) const {
    return m_sides[std::min((id >> m_slotBits) - m_beginNode, m_numNodes)];
  }
  void clear() { m_sides.clear(); }

private:
  Array<std::uint8_t> m_sides; ///< of all nodes, and `NO_NODE`
  unsigned m_slotBits = 0;
  std::size_t m_beginNode = 0;
  std::size_t m_numNodes = 0;
};

} // namespace kx
