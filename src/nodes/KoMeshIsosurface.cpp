// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMappingP/extractors/KdIsosurfExtract.h>

#include "extraction/KdUndefinedMeshRepresentation.h"

#include <KerrinDataMapping/nodes/KoMeshIsosurface.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoMeshIsosurface, KoMeshSurfaceRepresentation)

KoMeshIsosurface::KoMeshIsosurface() {
  NX_NODE_CONSTRUCTOR(KoMeshIsosurface);
  NX_NODE_ADD_FIELD(isovalue, (0.f));
  NX_NODE_ADD_FIELD(isoScalarSetId, (0));
}

KoMeshIsosurface::KoMeshIsosurface(const KoMeshIsosurface& other)
    : KoMeshIsosurface() {
  copyContents(&other, false);
}

KoMeshIsosurface& KoMeshIsosurface::operator=(const KoMeshIsosurface& other) {
  copyContents(&other, false);
  return *this;
}

KoMeshIsosurface::~KoMeshIsosurface() = default;

void KoMeshIsosurface::doExtract(NxAction* action) {
  NxState* state = action->getState();
  MeshType type = UNDEFINED_MESH_TYPE;
  const KiMesh* mesh = getMeshFromState(state, type);
  if (!mesh) return;
  if (getDriverType() != type) {
    switch (type) {
    case VOLUME_UNSTRUCTURED:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_UNSTRUCTURED>>(*this));
      break;
    case VOLUME_HEXAHEDRON_IJK:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_HEXAHEDRON_IJK>>(*this));
      break;
    case VOLUME_VERTEX_HEXAHEDRON_IJK:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_VERTEX_HEXAHEDRON_IJK>>(*this));
      break;
    case VOLUME_REGULAR:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_REGULAR>>(*this));
      break;
    case VOLUME_RECTILINEAR:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_RECTILINEAR>>(*this));
      break;
    case VOLUME_CURVILINEAR:
      setDriver(type, std::make_unique<KdMeshIsosurface<VOLUME_CURVILINEAR>>(*this));
      break;
    default:
      NxDebugError::postWarning("KdMeshIsosurface::doExtract", "Cannot compute isosurface on this type of mesh.");
      setDriver(type, std::make_unique<KdUndefinedMeshRepresentation>(*this));
    }
  }
  getDriver().doExtract(state, mesh);
}

const KiIsosurfExtractUnstructured* KoMeshIsosurface::getUnstructuredExtractor() const {
  return dynamic_cast<const KiIsosurfExtractUnstructured*>(getDriver().getExtractor());
}

const KiIsosurfExtractHexahedronIjk* KoMeshIsosurface::getHexahedronIjkExtractor() const {
  return dynamic_cast<const KiIsosurfExtractHexahedronIjk*>(getDriver().getExtractor());
}

const KiIsosurfExtractIjk* KoMeshIsosurface::getIjkExtractor() const {
  return dynamic_cast<const KiIsosurfExtractIjk*>(getDriver().getExtractor());
}
