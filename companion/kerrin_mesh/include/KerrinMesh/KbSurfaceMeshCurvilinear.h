// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbCurvilinearMesh.h>

/// A structured surface of quadrangles over the caller's coordinates.
class KbSurfaceMeshCurvilinear final
    : public KbCurvilinearMesh<KiSurfaceMeshCurvilinear, KbTopologyIj, KbGeometryIj, 2> {
public:
  /// `numCells` along each axis; there is one node more. `coordinates`: x y z of each node, i fastest, float or double.
  /// `dead`: one flag a cell, i fastest, or none.
  KbSurfaceMeshCurvilinear(const KbIndex<2>& numCells, const KbArray& coordinates,
                           const KbSpan<std::uint8_t>& dead = {})
      : KbCurvilinearMesh("KbSurfaceMeshCurvilinear", numCells, coordinates, dead) {}
};
