// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "LineMesh.h"
#include "PolygonSource.h"
#include "Run.h"

#include <cstdint>
#include <functional>

namespace kx {

/// Lines and, for each vertex, the id of the point that it is.
struct OutlineData {
  LineData& lines;
  IndexArray& ids;
};

/// Picks the feature edges of a surface (or all of them): those of one polygon alone, of more than two, of two polygons
/// whose normals differ by more than 30 degrees, and of two polygons on different sides of the index box. Edges between
/// polygons that are parts of one face count for nothing. Edges come out in the order of their smaller id, vertices in
/// the order of their ids; an edge's input cell is that of the first of its polygons.
///
/// Edges are matched at their smaller end, in blocks of ids. The polygons that reach into a block are read for it, so
/// that only the edges of as many blocks as there are threads are in memory at once: polygons whose corners have ids
/// near to each other are read about once, but for each block where ids are at random.
class OutlineTracer {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  enum class Selection { FEATURES, ALL };
  struct Rules {
    Selection selection = Selection::FEATURES;
    /// The side of the index box on which a polygon lies, from 1; 0 for none. Null: there is no box.
    std::function<std::uint8_t(std::size_t polygon)> sideOf;
    /// What a polygon is a part of. Null: every polygon is a face of its own.
    std::function<std::size_t(std::size_t polygon)> faceOf;
  };
  /// Polygons with a position that is not finite are left out and told.
  static void trace(Run& run, const PolygonSource& source, const Rules& rules, std::size_t numInputCells,
                    const OutlineData& output, Faults& faults);
};

} // namespace kx
