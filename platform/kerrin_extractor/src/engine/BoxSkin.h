// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceList.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <optional>

namespace kx {

/// The skin of one box of open cells in a grid whose neighbours share their nodes. Which faces there are and which
/// number a node has is a matter of arithmetic, so that the work is that of writing the output.
class BoxSkin {
public:
  static constexpr std::size_t NUM_PHASES = 2;

  /// The box that the open cells of a mesh are, if they are one.
  static std::optional<IndexBox> find(const MeshView& mesh, const CellRanges& ranges);
  /// Writes the faces by rows of cells, and vertices in the order of the nodes. False, with an output that is not
  /// valid, when a position is not finite.
  static bool write(Run& run, const MeshView& mesh, const IndexBox& box, SurfaceData& output);
};

} // namespace kx
