// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbCurvilinearMesh.h>

/// A structured grid of hexahedra over the caller's coordinates.
class KbVolumeMeshCurvilinear final
    : public KbCurvilinearMesh<KiVolumeMeshCurvilinear, KbTopologyIjk, KbGeometryIjk, 3> {
public:
  /// `numCells` along each axis; there is one node more. `coordinates`: x y z of each node, i fastest, float or double.
  /// `dead`: one flag a cell, i fastest, or none.
  KbVolumeMeshCurvilinear(const KbIndex<3>& numCells, const KbArray& coordinates, const KbSpan<std::uint8_t>& dead = {})
      : KbCurvilinearMesh("KbVolumeMeshCurvilinear", numCells, coordinates, dead) {}
};
