// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinMesh/KbUnstructuredMesh.h>

/// Segments of two or three nodes over the caller's arrays.
///
///     KbLineMeshUnstructured mesh(coordinates, {KiLineCell::LINE, connectivity});
class KbLineMeshUnstructured final : public KbUnstructuredMesh<KiLineMeshUnstructured, KbLineTopologyExplicitI> {
public:
  /// `coordinates`: x y z of each node, float or double. `dead`: one flag a cell, or none.
  KbLineMeshUnstructured(const KbArray& coordinates, const KbCells& cells, const KbSpan<std::uint8_t>& dead = {})
      : KbUnstructuredMesh("KbLineMeshUnstructured", coordinates, cells, dead) {}
};
