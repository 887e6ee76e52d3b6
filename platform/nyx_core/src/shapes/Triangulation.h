// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/shapes/PolygonList.h"

namespace nx::detail {

/// Splits single polygons into triangles: a fan when the polygon is convex, ear clipping otherwise.
///
/// Ear clipping follows G. H. Meisters, "Polygons have ears", The American Mathematical Monthly 82 (1975). The polygon
/// is seen along its Newell normal, so it may lie anywhere in space and be slightly warped. A polygon of n corners
/// always gives n - 2 triangles: where no ear is left (a self-crossing or degenerate polygon) the flattest corner is
/// clipped, so that the work ends. The object keeps its scratch memory from call to call.
class PolygonTriangulator {
public:
  /// Appends triples of local corner numbers 0..numCorners-1, in the polygon's own orientation.
  /// \param corners vertex numbers into \p xyz
  void triangulate(const float* xyz, const int32_t* corners, size_t numCorners, std::vector<uint32_t>& triples);

private:
  struct Point {
    double x, y;
  };
  bool project(const float* xyz, const int32_t* corners, size_t numCorners);
  bool isConvex() const;
  bool isEar(uint32_t corner) const;
  double turn(uint32_t corner) const;

  std::vector<Point> m_points;
  std::vector<uint32_t> m_next, m_previous;
};

/// Primitives made from a polygon list: vertex numbers, and the face that each primitive belongs to.
struct PrimitiveList {
  std::vector<uint32_t> vertices; ///< 3 a triangle, 2 a segment, 1 a point
  std::vector<uint32_t> faces;    ///< face number of each primitive; empty when `perFace` tells it
  uint32_t perFace = 0;           ///< not 0: primitive i belongs to face i / perFace
};

/// Triangles of all usable faces. \p cornerVertex gives the vertex number to write for each position of the index
/// list; null stands for the list's own numbers.
PrimitiveList makeTriangles(const PolygonList& polygons, const uint32_t* cornerVertex);

/// The edges of polygons (\p closed) or the segments of polylines. With \p unique an edge that several faces share
/// comes once, and no face numbers are given.
PrimitiveList makeSegments(const PolygonList& polygons, const uint32_t* cornerVertex, bool closed, bool unique);

/// The corners as points. With \p unique a vertex that several faces share comes once, and no face numbers are given.
PrimitiveList makePoints(const PolygonList& polygons, const uint32_t* cornerVertex, bool unique);

} // namespace nx::detail
