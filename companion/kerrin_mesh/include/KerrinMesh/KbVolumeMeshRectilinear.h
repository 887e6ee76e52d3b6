// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinMesh/KbGridTopology.h>
#include <KerrinMesh/KbMesh.h>
#include <KerrinMesh/KbVolumeGeometryRectilinear.h>

/// Cells parallel to the axes over the caller's positions along each axis.
class KERRIN_MESH_API KbVolumeMeshRectilinear final
    : public KbMesh<KiVolumeMeshRectilinear, KbTopologyIjk, KbVolumeGeometryRectilinear> {
public:
  /// Positions along the axes, float or double; there is one cell less than positions. `dead`: one flag a cell, i
  /// fastest, or none.
  KbVolumeMeshRectilinear(const KbArray& x, const KbArray& y, const KbArray& z, const KbSpan<std::uint8_t>& dead = {});

  /// Other positions, as many as before. False, with a message and without any change, for another number.
  bool setAxes(const KbArray& x, const KbArray& y, const KbArray& z);
};
