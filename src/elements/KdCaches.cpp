// SPDX-License-Identifier: BSD-3-Clause
#include "elements/KdAttributeCache.h"
#include "elements/KdExtractionThreadCache.h"
#include "elements/KdMeshCache.h"

#include <KerrinDataMapping/elements/KoCellFilterElement.h>
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <Nyx/base/NxDebug.h>

KdAttributeCache::KdAttributeCache(NxState* state)
    : KdCache(state) {
  if (state) record<KoDrawStyleElement>(state);
}

KdExtractionThreadCache::KdExtractionThreadCache(NxState* state)
    : KdCache(state) {
  if (state) record<KoCellFilterElement>(state);
}

KdMeshCache::KdMeshCache(NxState* state)
    : KdCache(state) {
  record<KoMeshElement>(state);
  m_mesh = KoMeshElement::getMesh(state, m_meshType, m_timeStamp);
}

const KiMesh* KdMeshCache::getMesh(MeshType& type) const {
  type = m_meshType;
  return m_mesh;
}

bool KdMeshCache::isValid(NxState* state, bool& newMesh) const {
  newMesh = false;
  if (NxCache::isValid(state)) return true;
  const NxElement* invalid = getInvalidElement(state);
  if (!invalid || invalid->getTypeId() != KoMeshElement::getClassTypeId()) return true;
  const std::size_t timeStamp = static_cast<const KoMeshElement*>(invalid)->getTimeStamp();
  newMesh = timeStamp != m_timeStamp;
  if (newMesh && isDebuggingCache()) {
    NxDebug::RTPrintf("CACHE DEBUG: mesh in cache(0x%p) is new", static_cast<const void*>(this));
    NxDebug::RTPrintf(" because timestamp element in %s does not match:\n", invalid->getTypeId().getName().getString());
    NxDebug::RTPrintf("------\nElement timestamp in state: %d\n", static_cast<int>(timeStamp));
    NxDebug::RTPrintf("------\nElement timestamp in cache: %d\n", static_cast<int>(m_timeStamp));
  }
  return false;
}
