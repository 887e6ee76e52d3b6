// SPDX-License-Identifier: BSD-3-Clause
#include "display/KdSurfaceMesh.h"

#include <KerrinDataMapping/nodes/KoMeshSurfaceRepresentation.h>

NX_NODE_ABSTRACT_SOURCE(KoMeshSurfaceRepresentation, KoMeshRepresentation)

KoMeshSurfaceRepresentation::KoMeshSurfaceRepresentation()
    : m_surfaceDisplay(std::make_unique<KdSurfaceMesh>(getInternalGroup())) {
  NX_NODE_CONSTRUCTOR(KoMeshSurfaceRepresentation);
}

KoMeshSurfaceRepresentation::~KoMeshSurfaceRepresentation() = default;

void KoMeshSurfaceRepresentation::clear() {
  KoMeshRepresentation::clear();
  m_surfaceDisplay->clear();
}
