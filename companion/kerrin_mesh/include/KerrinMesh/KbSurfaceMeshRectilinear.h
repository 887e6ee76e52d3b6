// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbGridTopology.h>
#include <KerrinMesh/KbMesh.h>
#include <KerrinMesh/KbSurfaceGeometryRectilinear.h>

/// Rectangles in the plane z = `distance` over the caller's positions along x and y.
class KERRIN_MESH_API KbSurfaceMeshRectilinear final
    : public KbMesh<KiSurfaceMeshRectilinear, KbTopologyIj, KbSurfaceGeometryRectilinear> {
public:
  /// Positions along the axes, float or double; there is one cell less than positions. `dead`: one flag a cell, i
  /// fastest, or none.
  KbSurfaceMeshRectilinear(const KbArray& x, const KbArray& y, double distance = 0.0,
                           const KbSpan<std::uint8_t>& dead = {});

  /// Other positions, as many as before. False, with a message and without any change, for another number.
  bool setAxes(const KbArray& x, const KbArray& y, double distance = 0.0);
};
