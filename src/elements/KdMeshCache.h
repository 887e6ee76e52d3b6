// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "elements/KdCache.h"

#include <KerrinDataMapping/elements/MeshType.h>

#include <cstddef>

class KiMesh;

/// Keeps the mesh of the state and tells when the state holds another one.
class KdMeshCache final : public KdCache<KdMeshCache> {
public:
  explicit KdMeshCache(NxState* state);

  const KiMesh* getMesh(MeshType& type) const;
  /// Whether the state's mesh element is the recorded one. When it isn't, `newMesh` says whether the mesh is another
  /// one: the element may also differ in its node or in the representation that the mesh comes from.
  bool isValid(NxState* state, bool& newMesh) const;

private:
  std::size_t m_timeStamp = static_cast<std::size_t>(-1);
  const KiMesh* m_mesh = nullptr;
  MeshType m_meshType = UNDEFINED_MESH_TYPE;
};
