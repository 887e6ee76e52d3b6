// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "src/shapes/PolygonList.h"

namespace nx::detail {

/// Normals at the vertices of polygons, smooth up to a crease angle.
struct SmoothNormals {
  /// Three floats a vertex: those of the list first, then one for each entry of `extra`.
  std::vector<float> normals;
  /// Vertices that creases ask for in addition: the number of the vertex each one repeats.
  std::vector<uint32_t> extra;
  /// The vertex of each position of the index list; empty when no crease was found, and the list's own numbers hold.
  std::vector<uint32_t> cornerVertex;
};

/// Two faces at a vertex share a normal when the angle between them is at most \p creaseAngle (radians). A shared
/// normal is the sum of the faces' Newell normals, that is, weighted by their areas. A vertex is repeated only where a
/// crease asks for it. At a vertex with more than 256 faces, creases are not looked for pair by pair: each face that
/// is off the vertex's mean by more than half the angle takes its own normal there.
SmoothNormals makeSmoothNormals(const PolygonList& polygons, float creaseAngle);

} // namespace nx::detail
