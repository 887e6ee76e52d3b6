// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// Which of the mesh interfaces a `KiMesh` has. `KoMesh::setMesh` finds it by trying them in this order.
enum MeshType : std::int32_t {
  VOLUME_UNSTRUCTURED = 0,
  VOLUME_HEXAHEDRON_IJK = 1,
  VOLUME_VERTEX_HEXAHEDRON_IJK = 2,
  VOLUME_REGULAR = 3,
  VOLUME_RECTILINEAR = 4,
  VOLUME_CURVILINEAR = 5,
  SURFACE_UNSTRUCTURED = 6,
  SURFACE_REGULAR = 7,
  SURFACE_RECTILINEAR = 8,
  SURFACE_CURVILINEAR = 9,
  LINE_UNSTRUCTURED = 10,
  LINE_REGULAR = 11,
  LINE_CURVILINEAR = 12,
  POINT_MESH_TYPE = 13,    ///< Reported by extractions that end in points, never the type of an application's mesh.
  UNDEFINED_MESH_TYPE = 14 ///< No mesh, or an unsupported one.
};
