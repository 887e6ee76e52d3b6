// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinMesh/KbRegularMesh.h>

/// A rectangle of equal cells, parallel to x and y.
class KbSurfaceMeshRegular final : public KbRegularMesh<KiSurfaceMeshRegular, KbTopologyIj, 2> {
public:
  /// `numCells` along each axis; nodes lie at equal steps from `min` to `max`. `min` and `max` have the same z.
  /// `dead`: one flag a cell, i fastest, or none.
  KbSurfaceMeshRegular(const KbIndex<2>& numCells, const KbVec3<double>& min, const KbVec3<double>& max,
                       const KbSpan<std::uint8_t>& dead = {})
      : KbRegularMesh("KbSurfaceMeshRegular", numCells, min, max, dead) {}
};
