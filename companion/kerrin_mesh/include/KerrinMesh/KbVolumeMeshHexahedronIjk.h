// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbHexahedronTopologyExplicitIjk.h>
#include <KerrinMesh/KbNodeMesh.h>

/// Hexahedra addressed by (i, j, k) with eight explicit nodes each.
class KERRIN_MESH_API KbVolumeMeshHexahedronIjk final
    : public KbNodeMesh<KiVolumeMeshHexahedronIjk, KbHexahedronTopologyExplicitIjk, KbGeometryI> {
public:
  /// `connectivity`: eight node indices a cell in the order of `KiVolumeCell::HEXAHEDRON`, cells with i fastest.
  /// `coordinates`: x y z of each node, float or double. `dead`: one flag a cell, i fastest, or none.
  KbVolumeMeshHexahedronIjk(const KbIndex<3>& numCells, const KbArray& coordinates, const KbArray& connectivity,
                            const KbSpan<std::uint8_t>& dead = {});
};
