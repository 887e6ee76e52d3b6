// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinMesh/KbRegularMesh.h>

/// Equal segments in a row from `min` to `max`.
class KbLineMeshRegular final : public KbRegularMesh<KiLineMeshRegular, KbTopologyI, 1> {
public:
  /// `numCells` along each axis; nodes lie at equal steps from `min` to `max`.
  /// `dead`: one flag a cell, or none.
  KbLineMeshRegular(const KbIndex<1>& numCells, const KbVec3<double>& min, const KbVec3<double>& max,
                    const KbSpan<std::uint8_t>& dead = {})
      : KbRegularMesh("KbLineMeshRegular", numCells, min, max, dead) {}
};
