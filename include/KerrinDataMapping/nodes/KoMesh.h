// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinDataMapping/nodes/KoActionNode.h>

#include <cstddef>

class KiMesh;
class KoMeshRepresentation;

/// Hands a mesh to the representations below: one of the application's, or the output of another representation.
///
/// The mesh is not owned and must outlive its last traversal.
class KERRIN_DATAMAPPING_API KoMesh : public KoActionNode {
  NX_NODE_HEADER(KoMesh);

public:
  KoMesh();

  /// Takes a mesh of one of the thirteen kinds, ends a connection and counts as a change even when the mesh is the same
  /// object: setting it again is the way to say that it is another one now. A mesh of no known kind posts a warning and
  /// leaves the node empty.
  virtual void setMesh(const KiMesh* mesh);
  /// Takes mesh and connection away.
  virtual void reset();
  /// From now on the mesh is what the representation extracts; null shows the stored mesh again.
  virtual void connectFrom(KoMeshRepresentation* representation);
  /// The mesh and its type; null and `UNDEFINED_MESH_TYPE` when there is none.
  virtual const KiMesh* getMesh(MeshType& type);

  void doAction(NxAction* action) override;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

protected:
  ~KoMesh() override;

private:
  const KiMesh* m_mesh = nullptr;
  MeshType m_meshType = UNDEFINED_MESH_TYPE;
  KoMeshRepresentation* m_connectedRepresentation = nullptr;
  std::size_t m_timeStamp = static_cast<std::size_t>(-1);
};
