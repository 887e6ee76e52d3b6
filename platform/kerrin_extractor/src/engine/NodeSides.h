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
    ON_SURFACE = 16, ///< inside as well
    NO_NUMBER = 32,
    NO_NODE = 64
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
  /// False for a cell that has all corners on one side. True may be wrong where nodes lie on the surface; cells with a
  /// node out of range or a value that is no number count as crossed, and so do polyhedra, which have more nodes.
  template <class Id>
  [[gnu::always_inline]] bool mayCross(CellCode code, const Id* ids) const {
    switch (code) {
    case HEXAHEDRON:
      return mayCross<8>(ids);
    case TETRAHEDRON:
      return mayCross<4>(ids);
    case PYRAMID:
      return mayCross<5>(ids);
    case WEDGE:
      return mayCross<6>(ids);
    default:
      return true;
    }
  }

private:
  template <std::size_t N, class Id>
  [[gnu::always_inline]] bool mayCross(const Id* ids) const {
    static_assert(INSIDE == 1 && N < ON_SURFACE, "the sum counts the nodes inside, and is greater for any other bit");
    std::size_t allBits = 0;
    for (std::size_t i = 0; i < N; ++i)
      allBits |= static_cast<std::size_t>(ids[i]);
    unsigned sum = 0;
    if (allBits < m_numDirect) [[likely]] {
      for (std::size_t i = 0; i < N; ++i)
        sum += m_sides[static_cast<std::size_t>(ids[i])];
    } else {
      for (std::size_t i = 0; i < N; ++i)
        sum += (*this)[static_cast<std::size_t>(ids[i])];
    }
    return sum != 0 && sum != N;
  }

  Array<std::uint8_t> m_sides; ///< of all nodes, and `NO_NODE` behind them
  unsigned m_slotBits = 0;
  std::size_t m_beginNode = 0;
  std::size_t m_numNodes = 0;
  /// A power of two, where an id below it is an index into the sides and none other is one; 0 where ids are no indices.
  std::size_t m_numDirect = 0;
};

} // namespace kx
