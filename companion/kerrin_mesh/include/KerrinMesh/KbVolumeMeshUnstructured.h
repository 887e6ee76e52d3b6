// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinMesh/KbUnstructuredMesh.h>

/// Tetrahedra, pyramids, wedges, hexahedra, their quadratic forms and polyhedra over the caller's arrays.
///
///     KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::TETRAHEDRON, connectivity});
class KbVolumeMeshUnstructured final : public KbUnstructuredMesh<KiVolumeMeshUnstructured, KbVolumeTopologyExplicitI> {
public:
  /// `coordinates`: x y z of each node, float or double. `dead`: one flag a cell, or none.
  KbVolumeMeshUnstructured(const KbArray& coordinates, const KbCells& cells, const KbSpan<std::uint8_t>& dead = {})
      : KbUnstructuredMesh("KbVolumeMeshUnstructured", coordinates, cells, dead) {}
};
