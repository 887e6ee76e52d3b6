// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbUnstructuredMesh.h>

/// Triangles, quadrangles, polygons and their quadratic forms over the caller's arrays.
///
///     KbSurfaceMeshUnstructured mesh(coordinates, {KiSurfaceCell::TRIANGLE, connectivity});
class KbSurfaceMeshUnstructured final
    : public KbUnstructuredMesh<KiSurfaceMeshUnstructured, KbSurfaceTopologyExplicitI> {
public:
  /// `coordinates`: x y z of each node, float or double. `dead`: one flag a cell, or none.
  KbSurfaceMeshUnstructured(const KbArray& coordinates, const KbCells& cells, const KbSpan<std::uint8_t>& dead = {})
      : KbUnstructuredMesh("KbSurfaceMeshUnstructured", coordinates, cells, dead) {}
};
