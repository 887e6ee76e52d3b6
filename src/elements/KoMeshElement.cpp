// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoMeshElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoMeshElement, NxReplacedElement)

void KoMeshElement::set(NxState* state, NxNode* node, MeshType type, const KiMesh* mesh,
                        KoMeshRepresentation* representation, std::size_t timeStamp) {
  if (KoMeshElementValue* value = getWritable(state, node)) *value = {mesh, type, timeStamp, representation};
}

const KiMesh* KoMeshElement::getMesh(NxState* state, MeshType& type, std::size_t& timeStamp) {
  type = UNDEFINED_MESH_TYPE;
  const KoMeshElementValue* value = getReadable(state);
  if (!value) return nullptr;
  type = value->type;
  timeStamp = value->timeStamp;
  return value->mesh;
}

KoMeshRepresentation* KoMeshElement::getConnectedRepresentation(NxState* state, MeshType& type) {
  const KoMeshElementValue* value = getReadable(state);
  if (!value) return nullptr;
  type = value->type;
  return value->connectedRepresentation;
}

bool KoMeshElement::matches(const NxElement* element) const {
  return NxReplacedElement::matches(element) && KoReplacedElement::matches(element);
}

NxElement* KoMeshElement::copyMatchInfo() const {
  auto* copy = static_cast<KoMeshElement*>(NxReplacedElement::copyMatchInfo());
  copy->m_value = m_value;
  return copy;
}

void KoMeshElement::print(FILE* file) const {
  NxReplacedElement::print(file);
  fprintf(file, "\t Mesh: (0x%p)\n", static_cast<const void*>(m_value.mesh));
  fprintf(file, "\t MeshType: %d\n", static_cast<int>(m_value.type));
  fprintf(file, "\t KoMeshTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.timeStamp));
  fprintf(file, "\t ConnectFrom: (0x%p)\n", static_cast<const void*>(m_value.connectedRepresentation));
}
