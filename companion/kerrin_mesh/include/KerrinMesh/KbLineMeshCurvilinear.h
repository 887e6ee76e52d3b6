// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinMesh/KbCurvilinearMesh.h>

/// Segments in a row over the caller's coordinates.
class KbLineMeshCurvilinear final : public KbCurvilinearMesh<KiLineMeshCurvilinear, KbTopologyI, KbGeometryI, 1> {
public:
  /// `numCells` along each axis; there is one node more. `coordinates`: x y z of each node, float or double.
  /// `dead`: one flag a cell, or none.
  KbLineMeshCurvilinear(const KbIndex<1>& numCells, const KbArray& coordinates, const KbSpan<std::uint8_t>& dead = {})
      : KbCurvilinearMesh("KbLineMeshCurvilinear", numCells, coordinates, dead) {}
};
