// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "elements/KdMeshCache.h"

#include <Nyx/base/NbRefPtr.h>

class KiTessellator;

/// Mesh and tessellator of the state as a node has seen them last.
class KdMeshStateCache {
public:
  /// The tessellator of the state; `isCacheValid` tells whether its stamp is that of the last call.
  KiTessellator* getTessellator(NxState* state, bool& isCacheValid);
  /// The mesh of the state; `unchanged` is false when it is another one than at the last call.
  const KiMesh* getMesh(NxState* state, MeshType& type, bool& unchanged);

private:
  NbRefPtr<KdMeshCache> m_meshCache;
  std::size_t m_tessellatorTimeStamp = static_cast<std::size_t>(-1);
};
