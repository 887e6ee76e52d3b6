// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinMesh/KbRegularMesh.h>

/// A rectangle of equal cells across one of the axes.
class KbSurfaceMeshRegular final : public KbRegularMesh<KiSurfaceMeshRegular, KbTopologyIj, 2> {
public:
  /// `numCells` along each axis; nodes lie at equal steps from `min` to `max`, which are the same along one axis.
  /// `dead`: one flag a cell, i fastest, or none.
  KbSurfaceMeshRegular(const KbIndex<2>& numCells, const KbVec3<double>& min, const KbVec3<double>& max,
                       const KbSpan<std::uint8_t>& dead = {})
      : KbRegularMesh("KbSurfaceMeshRegular", numCells, min, max, dead) {}
};
