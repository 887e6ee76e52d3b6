// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceTessellator.h"
#include "Faults.h"
#include "FlatMesh.h"
#include "PolygonSource.h"
#include "PolygonWriter.h"
#include "Run.h"
#include "SurfaceMesh.h"

namespace kx {

/// Writes the open cells of a surface mesh as polygons, quadratic ones by their corners, in the order of the cells.
class SurfaceWriter {
public:
  static constexpr std::size_t NUM_PHASES = PolygonWriter::NUM_PHASES;
  /// Cells with fewer than three distinct corners are left out; so are, with a message, those that cannot be read.
  static void write(Run& run, const FlatMesh& mesh, SurfaceData& output, Faults& faults);
  /// The cells as faces with all their nodes. Mesh and faults must outlive the source.
  static FaceSource faces(const FlatMesh& mesh, Faults& faults);
  /// The polygons that `write` writes. Mesh and faults must outlive the source.
  static std::unique_ptr<PolygonSource> polygons(const FlatMesh& mesh, Faults& faults);
};

} // namespace kx
