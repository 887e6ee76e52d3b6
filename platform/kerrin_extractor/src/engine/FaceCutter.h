// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FlatMesh.h"

#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace kx {

/// A cut edge by the ids of its ends, smaller one first; both are the same where the cut goes through a node.
struct NodeEdge {
  std::size_t a;
  std::size_t b;
  friend bool operator==(const NodeEdge&, const NodeEdge&) = default;
};

/// Splits a simple, possibly concave polygon into triangles of its corner numbers by clipping ears (G. H. Meisters,
/// Polygons have ears, Amer. Math. Monthly 82, 1975), in the plane of its mean normal. Always yields n - 2 triangles;
/// those of a polygon that crosses itself overlap.
void triangulatePolygon(std::span<const KbVec3<double>> corners, std::vector<std::array<std::size_t, 3>>& triangles);

/// Whether no corner of a polygon turns against its mean normal.
bool isConvexPolygon(std::span<const KbVec3<double>> corners);

/// Cuts one face after the other where a field, known at the corners, takes a value.
///
/// Every run of inside corners around a face is cut off by one segment, so that inside corners stay separate: the rule
/// of the isosurfaces, whose traces on the faces of a volume are these lines. A corner with the very value is inside,
/// and the cut goes through it. Concave faces are cut triangle by triangle, since a segment between two of their edges
/// may leave them.
class FaceCutter {
public:
  enum Result { DONE, NOT_FINITE };

  /// Calls `emit(NodeEdge from, NodeEdge to)` for each segment; the inside is on the same side of all of them.
  /// `values` belong to the corners of the face and are finite.
  template <class Emit>
  Result cut(const CellNodeList& face, const double* values, double isovalue, const PointView& points,
             const Emit& emit) {
    const std::size_t n = face.numCorners;
    std::size_t numInside = 0;
    for (std::size_t i = 0; i < n; ++i)
      numInside += values[i] >= isovalue;
    if (numInside == 0 || numInside == n) return DONE;
    m_corners.resize(n);
    for (std::size_t i = 0; i < n; ++i)
      m_corners[i] = points[face.ids[i]];
    if (!isFinite(m_corners)) return NOT_FINITE;
    if (n == 3 || isConvexPolygon(m_corners)) {
      m_order.resize(n);
      for (std::size_t i = 0; i < n; ++i)
        m_order[i] = i;
      cutConvex(m_order, face, values, isovalue, emit);
      return DONE;
    }
    triangulatePolygon(m_corners, m_triangles);
    for (const std::array<std::size_t, 3>& triangle : m_triangles)
      cutConvex(triangle, face, values, isovalue, emit);
    return DONE;
  }

  static bool isFinite(std::span<const KbVec3<double>> corners);

private:
  template <class Corners, class Emit>
  static void cutConvex(const Corners& corners, const CellNodeList& face, const double* values, double isovalue,
                        const Emit& emit) {
    const std::size_t n = corners.size();
    const auto value = [&](std::size_t i) { return values[corners[i % n]]; };
    const auto edge = [&](std::size_t inside, std::size_t outside) {
      const std::size_t a = face.ids[corners[inside % n]];
      const std::size_t b = value(inside) == isovalue ? a : face.ids[corners[outside % n]];
      return a < b ? NodeEdge{a, b} : NodeEdge{b, a};
    };
    for (std::size_t i = 0; i < n; ++i) {
      if (value(i) >= isovalue || !(value(i + 1) >= isovalue)) continue;
      std::size_t last = i + 1;
      while (value(last + 1) >= isovalue)
        ++last;
      const NodeEdge from = edge(i + 1, i);
      const NodeEdge to = edge(last, last + 1);
      if (!(from == to)) emit(from, to);
    }
  }

  std::vector<KbVec3<double>> m_corners;
  std::vector<std::size_t> m_order;
  std::vector<std::array<std::size_t, 3>> m_triangles;
};

/// Numbers edges in the order in which they are first asked for.
class EdgeNumbers {
public:
  /// Forgets everything; `expected` edges will need no growth.
  void reset(std::size_t expected);
  std::size_t numberOf(const NodeEdge& edge);
  const std::vector<NodeEdge>& edges() const { return m_edges; }

private:
  void grow(std::size_t capacity);

  std::vector<std::uint32_t> m_slots; ///< numbers plus one, 0 for none; the size is a power of two
  std::vector<NodeEdge> m_edges;
};

} // namespace kx
