// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kx {

/// A cut edge by the local numbers of its ends, smaller one first.
struct LocalEdge {
  std::size_t a;
  std::size_t b;
  friend bool operator==(const LocalEdge&, const LocalEdge&) = default;
};

/// The closed polygons in which the surface crosses a cell.
using Loops = std::vector<std::vector<LocalEdge>>;

/// Finds the polygons of a cell from its faces (local corners, counter-clockwise seen from outside) and the sides of
/// its corners.
///
/// In each face every run of inside corners is cut off by one segment, so inside corners across a face stay separate.
/// The rule needs nothing but the signs around the face, so that two cells that share a face always agree on it,
/// whatever their shapes and numbering: the ambiguity of marching cubes (Lorensen and Cline 1987; Duerst 1988) is
/// settled the same way everywhere and closed surfaces have no holes. Segments run from the edge that enters the run to
/// the edge that leaves it, which turns the normals of the polygons away from the inside. False when the faces don't
/// close up to a cell.
bool traceLoops(const std::vector<std::vector<std::size_t>>& faces, const std::vector<bool>& inside, Loops& loops);

/// All cases of one linear shape; bit i of a case number says that corner i is inside.
class CaseTable {
public:
  static constexpr std::uint8_t END_OF_POLYGON = 12;

  struct Case {
    std::uint8_t numPolygons = 0;
    std::uint8_t numEdges = 0;
    std::uint8_t listSize = 0; ///< indices of all polygons with the ends of polygons
    std::array<std::uint8_t, 12> edges{};
    /// Edge numbers around the polygons, `END_OF_POLYGON` behind each; second list for inverted cells.
    std::array<std::array<std::uint8_t, 24>, 2> lists{};
  };

  /// `shape` as in `KiVolumeCell`: TETRAHEDRON, PYRAMID, WEDGE or HEXAHEDRON.
  static const CaseTable& of(std::size_t shape);

  std::size_t numCorners() const { return m_numCorners; }
  const Case& operator[](std::size_t index) const { return m_cases[index]; }
  /// The two corners of an edge, smaller one first.
  const std::array<std::uint8_t, 2>& edge(std::size_t index) const { return m_edges[index]; }
  std::size_t numEdges() const { return m_edges.size(); }

  explicit CaseTable(std::size_t shape);

private:
  std::size_t m_numCorners;
  std::vector<std::array<std::uint8_t, 2>> m_edges;
  std::vector<Case> m_cases;
};

} // namespace kx
