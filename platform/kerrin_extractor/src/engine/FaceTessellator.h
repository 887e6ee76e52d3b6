// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EdgeSplitter.h"
#include "Faults.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <functional>

namespace kx {

/// A face by its nodes: corners in order, and for a quadratic face the middle of each side, from the first corner on.
struct FaceNodes {
  std::size_t cell = 0;
  std::vector<std::size_t> corners;
  std::vector<std::size_t> middles; ///< empty for a linear face
  bool isReversed = false;          ///< the corners go round the wrong way
};

/// Faces that are read by their numbers.
struct FaceSource {
  /// Reads a face; false for one that is left out.
  using Reader = std::function<bool(std::size_t face, FaceNodes& nodes)>;

  std::size_t numFaces;
  std::function<Reader()> makeReader; ///< one for each thread
};

/// Writes faces of which some are quadratic as linear polygons. Those of linear faces get a corner for each point that
/// a quadratic neighbour has on a side; a quadratic face that needs no subdivision is one polygon; all others become
/// triangles. Vertices are shared, in the order of the nodes' ids.
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
};

} // namespace kx
