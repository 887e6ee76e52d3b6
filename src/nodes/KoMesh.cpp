// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoMeshElement.h>
#include <KerrinDataMapping/nodes/KoMesh.h>
#include <KerrinDataMapping/nodes/KoMeshRepresentation.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NxDebugError.h>

NX_NODE_SOURCE(KoMesh, KoActionNode)

namespace {

/// The place of the first of the interfaces that the mesh has, or their number.
template <class... Interface>
int firstInterface(const KiMesh* mesh) {
  int place = 0;
  const bool found = ((dynamic_cast<const Interface*>(mesh) != nullptr || (++place, false)) || ...);
  return found ? place : static_cast<int>(sizeof...(Interface));
}

MeshType typeOf(const KiMesh* mesh) {
  // In the order of the values of MeshType: a class with two interfaces counts as the earlier one.
  const int place =
      firstInterface<KiVolumeMeshUnstructured, KiVolumeMeshHexahedronIjk, KiVolumeMeshVertexHexahedronIjk,
                     KiVolumeMeshRegular, KiVolumeMeshRectilinear, KiVolumeMeshCurvilinear, KiSurfaceMeshUnstructured,
                     KiSurfaceMeshRegular, KiSurfaceMeshRectilinear, KiSurfaceMeshCurvilinear, KiLineMeshUnstructured,
                     KiLineMeshRegular, KiLineMeshCurvilinear>(mesh);
  return place <= LINE_CURVILINEAR ? static_cast<MeshType>(place) : UNDEFINED_MESH_TYPE;
}

} // namespace

KoMesh::KoMesh() { NX_NODE_CONSTRUCTOR(KoMesh); }

KoMesh::~KoMesh() = default;

void KoMesh::setMesh(const KiMesh* mesh) {
  m_mesh = mesh;
  m_timeStamp = KxTimeStamp::getTimeStamp();
  m_connectedRepresentation = nullptr;
  m_meshType = mesh ? typeOf(mesh) : UNDEFINED_MESH_TYPE;
  if (mesh && m_meshType == UNDEFINED_MESH_TYPE) {
    NxDebugError::postWarning("KoMesh::setMesh", "Not supported mesh type.");
    m_mesh = nullptr;
  }
  touch();
}

void KoMesh::reset() {
  m_mesh = nullptr;
  m_timeStamp = KxTimeStamp::getTimeStamp();
  m_meshType = UNDEFINED_MESH_TYPE;
  m_connectedRepresentation = nullptr;
  touch();
}

void KoMesh::connectFrom(KoMeshRepresentation* representation) {
  m_connectedRepresentation = representation;
  touch();
}

const KiMesh* KoMesh::getMesh(MeshType& type) {
  if (m_connectedRepresentation) {
    m_timeStamp = m_connectedRepresentation->getTimeStamp();
    return m_connectedRepresentation->getExtractedMesh(type);
  }
  type = m_meshType;
  return m_mesh;
}

void KoMesh::doAction(NxAction* action) {
  MeshType type = UNDEFINED_MESH_TYPE;
  const KiMesh* mesh = getMesh(type);
  KoMeshElement::set(action->getState(), this, type, mesh, m_connectedRepresentation, m_timeStamp);
}

void KoMesh::copyContents(const NxFieldContainer* from, bool copyConnections) {
  KoActionNode::copyContents(from, copyConnections);
  const auto& other = *static_cast<const KoMesh*>(from);
  m_mesh = other.m_mesh;
  m_meshType = other.m_meshType;
  m_connectedRepresentation = other.m_connectedRepresentation;
  m_timeStamp = other.m_timeStamp;
}
