// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "src/contract/CellFaces.h"

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace kx {

/// A face of a cell, by the numbers of both.
struct FaceRef {
  std::uint64_t cell : 48;
  std::uint64_t face : 16;
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
    if (!mesh.loadPolyhedron(ref.cell, polyhedronFaces, polyhedronNodes) || ref.face >= polyhedronFaces.size())
      return false;
    const std::vector<std::size_t>& face = polyhedronFaces[ref.face];
    count = face.size();
    ids.resize(std::max(ids.size(), count));
    for (std::size_t c = 0; c < count; ++c)
      ids[c] = polyhedronNodes[face[c]];
    return true;
  }
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

  bool contains(std::size_t i, std::size_t j = 0, std::size_t k = 0) const {
    const Bounds index(i, j, k);
    return m_ranges.empty() || std::any_of(m_ranges.begin(), m_ranges.end(), [&](const Range& r) {
             for (std::size_t axis = 0; axis < 3; ++axis)
               if (index[axis] < r.min[axis] || index[axis] >= r.max[axis]) return false;
             return true;
           });
  }
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
