// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceSubdivider.h"
#include "Faults.h"
#include "Run.h"
#include "SurfaceMesh.h"

namespace kx {

/// Writes faces of which some are quadratic as linear polygons. Vertices are shared, in the order of the nodes' ids.
class FaceTessellator {
public:
  static constexpr std::size_t NUM_PHASES = 4;
  struct Input {
    const KiTessellator& tessellator;
    const PointView& points;
    std::size_t endId; ///< of the mesh's nodes
    std::size_t numCells;
    const FaceSource& faces;
  };
  struct Output {
    SurfaceData& surface; ///< vertices that are added nodes have ids of `blends`
    NodeBlends& blends;
    Array<std::uint32_t>* faceOfPolygon = nullptr; ///< receives the number of each polygon's face
  };
  static void write(Run& run, const Input& input, const Output& output, Faults& faults);

  /// Cells that stand alone, each with vertices of its own, moved towards its centre.
  struct Cells {
    std::size_t count;
    std::function<std::size_t(std::size_t n)> beginOf;        ///< the first of a cell's faces; of `count`, the end
    std::function<KbVec3<double>(std::size_t cell)> centreOf; ///< by the cell's number in the mesh
    double factor;                                            ///< of the distances from the centre
  };
  static constexpr std::size_t NUM_CELL_PHASES = 2;
  static void writeCells(Run& run, const Input& input, const Cells& cells, const Output& output, Faults& faults);
};

} // namespace kx
