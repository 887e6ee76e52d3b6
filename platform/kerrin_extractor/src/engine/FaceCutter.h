// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FlatMesh.h"
#include "Numbers.h"

#include <array>
#include <span>
#include <vector>

namespace kx {

/// A cut edge by the ids of its ends, smaller one first; both are the same where the cut goes through a node.
struct NodeEdge {
  std::size_t a;
  std::size_t b;
  friend bool operator==(const NodeEdge&, const NodeEdge&) = default;
  friend std::uint64_t hashOf(const NodeEdge& edge) { return mixHash(mixHash(0, edge.a), edge.b); }
};

/// Splits a simple, possibly concave polygon into triangles of its corner numbers by clipping ears (G. H. Meisters,
/// Polygons have ears, Amer. Math. Monthly 82, 1975), in the plane of its mean normal. Always yields n - 2 triangles;
/// those of a polygon that crosses itself overlap. A convex quadrangle is split along its shorter diagonal.
void triangulatePolygon(std::span<const KbVec3<double>> corners, std::vector<std::array<std::size_t, 3>>& triangles);

/// Whether no corner of a polygon turns against its mean normal.
bool isConvexPolygon(std::span<const KbVec3<double>> corners);
/// Whether the corners lie visibly apart from one plane: by more than a thousandth of the polygon's size.
bool isWarpedPolygon(std::span<const KbVec3<double>> corners);

/// All corners of a face by their local numbers.
struct AllCorners {
  std::size_t count;
  std::size_t size() const { return count; }
  std::size_t operator[](std::size_t i) const { return i; }
};

/// Cuts a convex face, given by local numbers of its corners. `ids` and `values` belong to the corners of the whole
/// face. Calls `emit(NodeEdge from, NodeEdge to)` for each segment; the inside is on the same side of all of them.
template <class Corners, class Emit>
void cutConvexFace(const Corners& corners, const std::vector<std::size_t>& ids, const double* values, double isovalue,
                   const Emit& emit) {
  const std::size_t n = corners.size();
  const auto next = [n](std::size_t i) { return i + 1 < n ? i + 1 : 0; };
  const auto isInside = [&](std::size_t i) { return values[corners[i]] >= isovalue; };
  const auto edge = [&](std::size_t inside, std::size_t outside) {
    const std::size_t a = ids[corners[inside]];
    const std::size_t b = values[corners[inside]] == isovalue ? a : ids[corners[outside]];
    return a < b ? NodeEdge{a, b} : NodeEdge{b, a};
  };
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t first = next(i);
    if (isInside(i) || !isInside(first)) continue;
    std::size_t last = first;
    std::size_t behind = next(last);
    while (isInside(behind)) {
      last = behind;
      behind = next(last);
    }
    const NodeEdge from = edge(first, i);
    const NodeEdge to = edge(last, behind);
    if (!(from == to)) emit(from, to);
  }
}

/// Cuts one face after the other where a field, known at the corners, takes some values.
///
/// Every run of inside corners around a face is cut off by one segment, so that inside corners stay separate: the rule
/// of the isosurfaces, whose traces on the faces of a volume are these lines. A corner with the very value is inside,
/// and the cut goes through it. Concave faces are cut triangle by triangle, since a segment between two of their edges
/// may leave them.
class FaceCutter {
public:
  /// With `splitsWarpedFaces`, faces that are not flat are cut triangle by triangle too: for fields that are sections
  /// of the surface itself, since a single segment would take a short cut through space.
  explicit FaceCutter(bool splitsWarpedFaces = false)
      : m_splitsWarpedFaces(splitsWarpedFaces) {}

  /// Looks at the next face; false when a position is not finite.
  bool setFace(const CellNodeList& face, const PointView& points);
  /// Cuts it. `ids` and `values` belong to its corners, which have finite values; `emit` as for `cutConvexFace`.
  template <class Emit>
  void cut(const std::vector<std::size_t>& ids, const double* values, double isovalue, const Emit& emit) const {
    if (m_triangles.empty()) cutConvexFace(AllCorners{m_corners.size()}, ids, values, isovalue, emit);
    for (const std::array<std::size_t, 3>& triangle : m_triangles)
      cutConvexFace(triangle, ids, values, isovalue, emit);
  }

  static bool isFinite(std::span<const KbVec3<double>> corners);

private:
  bool m_splitsWarpedFaces;
  std::vector<KbVec3<double>> m_corners;
  std::vector<std::array<std::size_t, 3>> m_triangles; ///< none of a face that is cut as a whole
};

} // namespace kx
