// SPDX-License-Identifier: BSD-3-Clause
#include "display/KdSurfaceMesh.h"

#include "display/KxSurfaceSceneGraph.h"

#include <KerrinDataMapping/details/KoSurfaceMeshDetail.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <Nyx/base/NxPreferences.h>
#include <Nyx/nodes/NxPolygonOffset.h>

KdSurfaceMesh::KdSurfaceMesh(NxGroup& parentGroup)
    : KdIndexedMesh(parentGroup) {
  separator().setName("SurfaceMesh_Display");
  auto* offset = new NxPolygonOffset;
  offset->styles.setValue(NxPolygonOffset::FILLED);
  offset->factor = 0.5f;
  offset->units = 15.f;
  offset->on = NxPreferences::getBool("KERRIN_POLYGON_OFFSET", true);
  separator().addChild(offset);

  auto graph = std::make_unique<KxSurfaceSceneGraph>(separator());
  m_surfaceGraph = graph.get();
  setIndexedGraph(std::move(graph));
}

KdSurfaceMesh::~KdSurfaceMesh() = default;

void KdSurfaceMesh::setSurfaceMesh(NxState* state, const KeXSurfaceMeshUnstructured* mesh,
                                   const ExtractedSets& colorSets) {
  if (!mesh) {
    clear();
    return;
  }
  setMesh(mesh);
  update(state, mesh->getTopology(), mesh->getGeometry(), colorSets);
}

void KdSurfaceMesh::setUseSinglePassOutline(bool use) { m_surfaceGraph->setUseSinglePassOutline(use); }

void KdSurfaceMesh::fillPickedPoints(NxRayPickAction* action) {
  const auto* mesh = dynamic_cast<const KeXSurfaceMeshUnstructured*>(getMesh());
  if (!mesh || mesh->getTopology().getNumCells() == 0) return;
  // Earlier picks point at the detail: it stays as long as it is true.
  if (!m_detail || m_detail->getExtractedMesh() != mesh || m_detail->getExtractedColorScalarSets() != colorSets())
    m_detail = std::make_unique<KoSurfaceMeshDetail>(mesh, colorSets());
  indexedGraph().fillPickedPoints(action, m_detail.get());
}

void KdSurfaceMesh::clear() {
  KdIndexedMesh::clear();
  m_detail.reset();
}
