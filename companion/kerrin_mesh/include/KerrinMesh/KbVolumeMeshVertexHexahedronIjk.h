// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinMesh/KbGeometryHexahedronIjk.h>
#include <KerrinMesh/KbGridTopology.h>
#include <KerrinMesh/KbMesh.h>

/// A corner-point grid over the caller's pillars and corner depths, as reservoir models store them (COORD, ZCORN,
/// ACTNUM).
class KERRIN_MESH_API KbVolumeMeshVertexHexahedronIjk final
    : public KbMesh<KiVolumeMeshVertexHexahedronIjk, KbTopologyIjk, KbGeometryHexahedronIjk> {
public:
  /// - `coord`: for each pillar, i fastest, x y z of its two ends: 6 (nI + 1) (nJ + 1) numbers, float or double;
  /// - `zcorn`: z of the corners, two along each axis for each cell, i fastest: 8 nI nJ nK numbers;
  /// - `dead`: one flag a cell, i fastest, or none. (ACTNUM says the opposite: 0 for dead.)
  KbVolumeMeshVertexHexahedronIjk(const KbIndex<3>& numCells, const KbArray& coord, const KbArray& zcorn,
                                  const KbSpan<std::uint8_t>& dead = {});

  /// Other pillars and depths for the same cells. False, with a message and without any change, for other sizes.
  bool setPillars(const KbArray& coord, const KbArray& zcorn);
};
