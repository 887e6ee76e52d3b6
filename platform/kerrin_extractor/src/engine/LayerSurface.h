// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "MeshView.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <vector>

namespace kx {

/// The open cells of a structured mesh with an index along an axis, in flat order; none for an index out of range.
std::vector<std::size_t> openCellsOfLayer(const MeshView& mesh, std::size_t axis, std::size_t index);

/// The surface at a fractional node position along an axis: one quadrangle a cell, with its corners on the cell's four
/// edges along the axis, turned to growing indices. Neighbours share the corners on shared edges; faults stay open.
class LayerSurface {
public:
  static constexpr std::size_t NUM_PHASES = 2;
  /// A position outside [0, number of cells] yields nothing.
  static void write(Run& run, const MeshView& mesh, std::size_t axis, double position, SurfaceData& output,
                    Faults& faults);
  /// The value at an output vertex.
  static auto valueAt(const SurfaceData& data) {
    return [&data](const auto& values, std::size_t vertex) {
      if (data.weights.size() == 0) return values(data.edgeBegins[vertex]); // a layer of faces as they are
      return data.valueOnEdge(values, vertex);
    };
  }
};

} // namespace kx
