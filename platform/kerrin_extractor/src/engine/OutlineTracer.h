// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "LineMesh.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <cstdint>
#include <functional>

namespace kx {

/// Lines with, for each vertex, the input node that it is, and its number among the surface's vertices where asked for.
struct OutlineData {
  LineData& lines;
  IndexArray& nodes;
  IndexArray* vertices = nullptr;
};

/// Picks the feature edges of a surface (or all of them): those of one polygon alone, of more than two, of two polygons
/// whose normals differ by more than 30 degrees, and of two polygons on different sides of the index box. Edges between
/// polygons that are parts of one face count for nothing. Edges come out in the order of their smaller vertex, vertices
/// in the order of the surface's; an edge's input cell is that of the first of its polygons.
class OutlineTracer {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  /// The side of the index box on which a polygon of the surface lies, from 1; 0 for none. Null: there is no box.
  using SideOf = std::function<std::uint8_t(std::size_t polygon)>;
  /// What a polygon is a part of. Null: every polygon is a face of its own.
  using FaceOf = std::function<std::size_t(std::size_t polygon)>;
  enum class Selection { FEATURES, ALL };
  static void trace(Run& run, const SurfaceData& surface, const SideOf& sideOf, std::size_t numInputCells,
                    std::size_t endId, const OutlineData& output, Selection selection = Selection::FEATURES,
                    const FaceOf& faceOf = {});
};

} // namespace kx
