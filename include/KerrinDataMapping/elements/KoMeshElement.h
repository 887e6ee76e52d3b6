// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>
#include <KerrinDataMapping/elements/MeshType.h>

#include <cstddef>

class KiMesh;
class KoMeshRepresentation;

/// The mesh of a `KoMeshElement`.
struct KoMeshElementValue {
  const KiMesh* mesh = nullptr;
  MeshType type = UNDEFINED_MESH_TYPE;
  std::size_t timeStamp = static_cast<std::size_t>(-1);
  KoMeshRepresentation* connectedRepresentation = nullptr;

  bool matches(const KoMeshElementValue& o) const {
    return mesh == o.mesh && type == o.type && timeStamp == o.timeStamp &&
           connectedRepresentation == o.connectedRepresentation;
  }
};

/// The mesh above, and the representation whose output it is, if it is one.
class KERRIN_DATAMAPPING_API KoMeshElement : public KoReplacedElement<KoMeshElement, KoMeshElementValue> {
  NX_ELEMENT_HEADER(KoMeshElement);

public:
  static void set(NxState* state, NxNode* node, MeshType type, const KiMesh* mesh, KoMeshRepresentation* representation,
                  std::size_t timeStamp);
  /// Null and `UNDEFINED_MESH_TYPE` without a mesh; `timeStamp` is left as it is when there is no element.
  static const KiMesh* getMesh(NxState* state, MeshType& type, std::size_t& timeStamp);
  /// Null when the mesh is the application's; `type` is left as it is when there is no element.
  static KoMeshRepresentation* getConnectedRepresentation(NxState* state, MeshType& type);

  std::size_t getTimeStamp() const { return m_value.timeStamp; }

  /// Unlike the other elements, this one also asks for the same node.
  bool matches(const NxElement* element) const override;
  NxElement* copyMatchInfo() const override;
  void print(FILE* file) const override;
};
