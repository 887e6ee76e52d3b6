// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InputAddress.h"
#include "MappedSets.h"

namespace kx {

/// An output mesh with the sets that are mapped onto it. `Mesh` is `SurfaceMesh`, `LineMesh` or `PointMesh`.
template <class Mesh>
struct Output {
  Mesh mesh;
  MappedSets sets;

  void clear() { mesh.data().clear(); }
  /// Gives the mesh new time stamps after it has been rewritten.
  void commit(const InputAddress& input) { mesh.commit(input); }
  /// Forgets sets of earlier outputs than the present one.
  void dropUnusedSets() { sets.dropUnused(mesh.outputStamp()); }
};

} // namespace kx
