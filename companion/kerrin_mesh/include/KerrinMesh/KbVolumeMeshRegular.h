// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinMesh/KbRegularMesh.h>

/// A box of equal cells.
class KbVolumeMeshRegular final : public KbRegularMesh<KiVolumeMeshRegular, KbTopologyIjk, 3> {
public:
  /// `numCells` along each axis; nodes lie at equal steps from `min` to `max`.
  /// `dead`: one flag a cell, i fastest, or none.
  KbVolumeMeshRegular(const KbIndex<3>& numCells, const KbVec3<double>& min, const KbVec3<double>& max,
                      const KbSpan<std::uint8_t>& dead = {})
      : KbRegularMesh("KbVolumeMeshRegular", numCells, min, max, dead) {}
};
