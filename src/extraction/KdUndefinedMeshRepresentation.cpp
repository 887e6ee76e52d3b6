// SPDX-License-Identifier: BSD-3-Clause
#include "extraction/KdUndefinedMeshRepresentation.h"

#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>

void KdUndefinedMeshRepresentation::doExtract(NxState*, const KiMesh*) { m_node.clear(); }

const KiMesh* KdUndefinedMeshRepresentation::getExtractedMesh(MeshType& type) const {
  type = UNDEFINED_MESH_TYPE;
  return nullptr;
}
