// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "src/contract/CellFaces.h"

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace kx {

/// A face of a cell, by the numbers of both.
struct FaceRef {
  static constexpr std::size_t END_FACE = std::size_t{1} << 24; ///< no cell may have more faces

  std::uint64_t cell : 40;
  std::uint64_t face : 24;

  FaceRef() = default;
  FaceRef(std::size_t cellNumber, std::size_t faceNumber)
      : cell(cellNumber & 0xffffffffffu)
      , face(faceNumber & 0xffffffu) {}
};
using FaceList = Array<FaceRef>;

/// Numbers of a hexahedron's faces in `CELL_FACES`, by axis and side.
inline constexpr std::array<std::array<std::uint8_t, 2>, 3> HEXAHEDRON_FACE{{{5, 3}, {2, 4}, {0, 1}}};

/// The corners of one face, outwards unless the cell is inverted, with the nodes of its cell.
class FaceCorners {
public:
  std::vector<std::size_t> ids; ///< may be longer than `count`
  std::size_t count = 0;
  CellNodes cellNodes; ///< of cells that are no polyhedra
  CellCode code = UNREADABLE;
  std::vector<std::vector<std::size_t>> polyhedronFaces;
  std::vector<std::size_t> polyhedronNodes;

  FaceCorners()
      : ids(8) {}

  /// False for a face that cannot be read.
  template <class Cells>
  bool load(const MeshView& mesh, const Cells& cells, FaceRef ref) {
    code = cells.load(ref.cell, cellNodes);
    if (code == UNREADABLE) return false;
    if (code < POLYHEDRON) {
      const CellFace& face = CELL_FACES[code].faces[ref.face];
      count = face.numCorners;
      for (std::size_t c = 0; c < count; ++c)
        ids[c] = cellNodes[face.corners[c]];
      return true;
    }
    if (m_polyhedron != ref.cell) {
      m_polyhedron = NO_CELL;
      if (!mesh.loadPolyhedron(ref.cell, polyhedronFaces, polyhedronNodes)) return false;
      m_polyhedron = ref.cell;
    }
    if (ref.face >= polyhedronFaces.size()) return false;
    const std::vector<std::size_t>& face = polyhedronFaces[ref.face];
    count = face.size();
    ids.resize(std::max(ids.size(), count));
    for (std::size_t c = 0; c < count; ++c)
      ids[c] = polyhedronNodes[face[c]];
    return true;
  }

private:
  static constexpr std::uint64_t NO_CELL = ~std::uint64_t{0};
  std::uint64_t m_polyhedron = NO_CELL; ///< the one in the vectors
};

/// Some cells of a structured mesh.
struct IndexBox {
  Dims begin;
  Dims counts;
};

/// Cells in the union of half-open ranges; an end of all bits set is open. Without a range, all cells.
class CellRanges {
public:
  using Bounds = KbVec3<std::size_t>;
  static constexpr std::size_t OPEN = static_cast<std::size_t>(-1);

  void add(std::size_t min, std::size_t max) { add(Bounds(min, 0, 0), Bounds(max, OPEN, OPEN)); }
  void add(const Bounds& min, const Bounds& max) {
    Range range{min, max};
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (range.min[axis] == OPEN) range.min[axis] = 0;
    m_ranges.push_back(range);
  }
  void clear() { m_ranges.clear(); }
  bool isEmpty() const { return m_ranges.empty(); }

  /// The flat ranges within [begin, end), merged and in order.
  std::vector<std::pair<std::size_t, std::size_t>> within(std::size_t begin, std::size_t end) const {
    if (m_ranges.empty()) return {{begin, end}};
    std::vector<std::pair<std::size_t, std::size_t>> parts;
    for (const Range& r : m_ranges)
      if (const std::size_t b = std::max(begin, r.min[0]), e = std::min(end, r.max[0]); b < e) parts.emplace_back(b, e);
    std::sort(parts.begin(), parts.end());
    std::size_t last = 0;
    for (std::size_t p = 1; p < parts.size(); ++p) {
      if (parts[p].first <= parts[last].second)
        parts[last].second = std::max(parts[last].second, parts[p].second);
      else
        parts[++last] = parts[p];
    }
    parts.resize(parts.empty() ? 0 : last + 1);
    return parts;
  }
  /// Calls `visit(begin, end)` for each range's part of a row of `count` cells; parts may overlap.
  template <class Visit>
  void visitRow(std::size_t count, std::size_t j, std::size_t k, Visit&& visit) const {
    if (m_ranges.empty()) visit(std::size_t{0}, count);
    for (const Range& r : m_ranges)
      if (r.min[0] < std::min(r.max[0], count) && j >= r.min[1] && j < r.max[1] && k >= r.min[2] && k < r.max[2])
        visit(r.min[0], std::min(r.max[0], count));
  }
  /// The cells of a structured mesh as one box (an empty one holds nothing); none when there are several ranges.
  std::optional<IndexBox> asBox(const Dims& cells) const {
    if (m_ranges.empty()) return IndexBox{{}, cells};
    if (m_ranges.size() > 1) return std::nullopt;
    const Range& r = m_ranges.front();
    const std::array<std::size_t, 3> all{cells.i, cells.j, cells.k};
    std::array<std::size_t, 3> counts;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::size_t end = std::min(r.max[axis], all[axis]);
      counts[axis] = end > r.min[axis] ? end - r.min[axis] : 0;
    }
    return IndexBox{{r.min[0], r.min[1], r.min[2]}, {counts[0], counts[1], counts[2]}};
  }
  /// All bounds, to tell one selection from another.
  std::vector<std::size_t> values() const {
    std::vector<std::size_t> all;
    for (const Range& r : m_ranges)
      for (std::size_t axis = 0; axis < 3; ++axis)
        all.insert(all.end(), {r.min[axis], r.max[axis]});
    return all;
  }

private:
  struct Range {
    Bounds min;
    Bounds max;
  };
  std::vector<Range> m_ranges;
};

} // namespace kx
