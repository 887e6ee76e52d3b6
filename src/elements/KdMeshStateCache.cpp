// SPDX-License-Identifier: BSD-3-Clause
#include "elements/KdMeshStateCache.h"

#include <KerrinDataMapping/elements/KoTessellatorElement.h>

KiTessellator* KdMeshStateCache::getTessellator(NxState* state, bool& isCacheValid) {
  std::size_t timeStamp;
  KiTessellator* tessellator = KoTessellatorElement::getTessellator(state, timeStamp);
  isCacheValid = timeStamp == m_tessellatorTimeStamp;
  m_tessellatorTimeStamp = timeStamp;
  return tessellator;
}

const KiMesh* KdMeshStateCache::getMesh(NxState* state, MeshType& type, bool& unchanged) {
  bool newMesh = m_meshCache.get() == nullptr;
  if (!m_meshCache || !m_meshCache->isValid(state, newMesh)) {
    state->push();
    m_meshCache = new KdMeshCache(state);
    state->pop();
  }
  unchanged = !newMesh;
  return m_meshCache->getMesh(type);
}
