// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PointView.h"

#include <KerrinExtractor/KiGeometryHexahedronIjk.h>
#include <KerrinExtractor/KiHexahedronTopologyExplicitIjk.h>
#include <KerrinExtractor/KiVolumeCell.h>
#include <KerrinExtractor/KiVolumeTopologyExplicitI.h>

#include <array>
#include <cstdint>
#include <variant>

namespace kx {

/// Shape codes of cells as the polygoniser sees them: the four linear ones as in `KiVolumeCell` (quadratic cells are
/// taken by their corners), polyhedra, and cells that cannot be read.
enum CellCode : std::uint8_t { TETRAHEDRON, PYRAMID, WEDGE, HEXAHEDRON, POLYHEDRON, UNREADABLE };

inline constexpr std::array<std::uint8_t, 4> NUM_CORNERS{4, 5, 6, 8};

/// The code of a shape with this number of nodes.
inline CellCode codeOf(std::size_t shape, std::size_t numNodes) {
  constexpr std::array<std::uint8_t, 8> NUM_NODES{4, 5, 6, 8, 10, 13, 15, 20};
  if (shape == KiVolumeCell::POLYHEDRON) return POLYHEDRON;
  if (shape >= NUM_NODES.size() || numNodes != NUM_NODES[shape]) return UNREADABLE;
  return static_cast<CellCode>(shape % 4);
}

using CellNodes = std::array<std::size_t, 8>;

// Each view below offers: `load(cell, nodes)`, the ids of the corners; `loadForValues`, the same where only the values
// are asked for (ids may then name any node with the same value); `prefetch(cell)`, which brings what `load` will read
// nearer where that is known; `ARE_ARRAYS`, whether loading costs little; `find(cell)`, where ids lie in an array.

/// Ids of a cell's corners where they are kept.
template <class Index>
struct FoundCell {
  CellCode code;
  const Index* ids;

  CellCode load(CellNodes& nodes) const {
    const auto copy = [&](std::size_t count) __attribute__((always_inline)) {
      for (std::size_t i = 0; i < count; ++i)
        nodes[i] = static_cast<std::size_t>(ids[i]);
    };
    if (code == HEXAHEDRON)
      copy(8);
    else if (code == TETRAHEDRON)
      copy(4);
    else if (code < POLYHEDRON)
      copy(NUM_CORNERS[code]);
    return code;
  }
};

/// Cells of one shape in a plain array.
template <class Index>
struct UniformCells {
  static constexpr bool ARE_ARRAYS = true;
  const Index* connectivity;
  std::size_t stride;
  CellCode code;
  const KiVolumeTopologyExplicitI* topology;

  FoundCell<Index> find(std::size_t cell) const { return {code, connectivity + cell * stride}; }
  CellCode load(std::size_t cell, CellNodes& nodes) const { return find(cell).load(nodes); }
  CellCode loadForValues(std::size_t cell, CellNodes& nodes) const { return load(cell, nodes); }
  void prefetch(std::size_t cell) const {
    // A cell's ids may lie in two cache lines.
    const Index* p = connectivity + cell * stride;
    __builtin_prefetch(p);
    __builtin_prefetch(p + stride - 1);
  }
};

/// Cells of several shapes in plain arrays.
template <class Index>
struct MixedCells {
  static constexpr bool ARE_ARRAYS = true;
  const Index* connectivity;
  std::size_t connectivitySize;
  const Index* offsets;
  const std::uint8_t* shapes;
  std::size_t shapeStep; ///< 0 when one entry serves all cells
  const KiVolumeTopologyExplicitI* topology;

  FoundCell<Index> find(std::size_t cell) const {
    const auto begin = static_cast<std::size_t>(offsets[cell]);
    const auto end = static_cast<std::size_t>(offsets[cell + 1]);
    if (begin > end || end > connectivitySize) return {UNREADABLE, nullptr};
    return {codeOf(shapes[cell * shapeStep], end - begin), connectivity + begin};
  }
  CellCode load(std::size_t cell, CellNodes& nodes) const { return find(cell).load(nodes); }
  CellCode loadForValues(std::size_t cell, CellNodes& nodes) const { return load(cell, nodes); }
  void prefetch(std::size_t cell) const {
    const auto begin = static_cast<std::size_t>(offsets[cell]);
    if (begin < connectivitySize) __builtin_prefetch(connectivity + begin);
  }
};

/// Cells read through the topology's virtual operations.
struct VirtualCells {
  static constexpr bool ARE_ARRAYS = false;
  const KiVolumeTopologyExplicitI* topology;

  [[gnu::always_inline]] CellCode load(std::size_t cell, CellNodes& nodes) const {
    const KiVolumeCell* c = topology->getCell(cell);
    if (!c) return UNREADABLE;
    const KiCell& base = *c; // found once: it is a virtual base
    const CellCode code = codeOf(c->getShape(), base.getNumNodes());
    if (code == HEXAHEDRON)
      for (std::size_t i = 0; i < 8; ++i)
        nodes[i] = base.getNodeIndex(i);
    else if (code < POLYHEDRON)
      for (std::size_t i = 0; i < NUM_CORNERS[code]; ++i)
        nodes[i] = base.getNodeIndex(i);
    return code;
  }
  CellCode loadForValues(std::size_t cell, CellNodes& nodes) const { return load(cell, nodes); }
  void prefetch(std::size_t) const {}
};

/// Hexahedra with explicit nodes, addressed by (i, j, k).
struct HexahedronIjkCells {
  static constexpr bool ARE_ARRAYS = false;
  const KiHexahedronTopologyExplicitIjk* topology;
  Dims cells;

  CellCode load(std::size_t cell, CellNodes& nodes) const {
    const auto [i, j, k] = cells.split(cell);
    topology->getCellNodeIds(i, j, k, nodes.data());
    return HEXAHEDRON;
  }
  CellCode loadForValues(std::size_t cell, CellNodes& nodes) const { return load(cell, nodes); }
  void prefetch(std::size_t) const {}
};

/// Hexahedra of a structured grid.
struct GridCells {
  static constexpr bool ARE_ARRAYS = true;
  Dims cells;
  Dims nodes;

  CellCode load(std::size_t cell, CellNodes& ids) const {
    const auto [i, j, k] = cells.split(cell);
    const std::size_t base = nodes.flat(i, j, k);
    const std::size_t layer = nodes.i * nodes.j;
    const std::size_t low[4] = {base, base + 1, base + 1 + nodes.i, base + nodes.i};
    for (std::size_t c = 0; c < 4; ++c) {
      ids[c] = low[c];
      ids[c + 4] = low[c] + layer;
    }
    return HEXAHEDRON;
  }
  CellCode loadForValues(std::size_t cell, CellNodes& ids) const { return load(cell, ids); }
  void prefetch(std::size_t) const {}
};

/// Hexahedra with corners of their own. A node's id is its grid node and the first of the eight cells around it whose
/// corner lies at the same position: corners that touch get one id, torn ones several.
struct CornerCells {
  static constexpr bool ARE_ARRAYS = false;
  const KiGeometryHexahedronIjk* geometry;
  Dims cells;
  Dims nodes;

  CellCode load(std::size_t cell, CellNodes& ids) const;
  CellCode loadForValues(std::size_t cell, CellNodes& ids) const {
    GridCells{cells, nodes}.load(cell, ids);
    for (std::size_t& id : ids)
      id <<= CORNER_SLOT_BITS;
    return HEXAHEDRON;
  }
  void prefetch(std::size_t) const {}
};

using CellView = std::variant<UniformCells<std::int32_t>, UniformCells<std::int64_t>, MixedCells<std::int32_t>,
                              MixedCells<std::int64_t>, VirtualCells, HexahedronIjkCells, GridCells, CornerCells>;

} // namespace kx
