// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxUnstrMeshSceneGraph.h"

#include "display/KxStyledIndexedShapeGraph.h"

#include <KerrinExtractor/KeXTopologyExplicitI.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/details/NxPickedPoint.h>
#include <Nyx/misc/NxPath.h>

void KxUnstrMeshSceneGraph::fillIndices(const KeXTopologyExplicitI& topology) {
  if (topology.hasDeadCells())
    NxDebugError::postWarning("KxUnstrMeshSceneGraph::fillIndices", "Extracted topology should not have dead cells");
  NbRefPtr<KxCpuBuffer<int>> buffer;
  if (const KiBuffer* source = topology.getIndexBuffer()) buffer = new KxCpuBuffer<int>(*source);
  indexedGraph().setCoordIndex(buffer.get());
}

void KxUnstrMeshSceneGraph::fillPickedPoints(NxRayPickAction* action, const KoMeshRepresentationDetail* detail) {
  for (int i = 0; NxPickedPoint* point = action->getUnsortedPickedPoint(i); ++i) {
    if (!m_primaryGraph->isShapeOf(point->getPath())) continue;
    NxNode* shape = static_cast<NxFullPath*>(point->getPath())->getTail();
    if (NxDetail* own = m_primaryGraph->createDetail(point->getDetail(shape), detail)) point->setDetail(own, shape);
  }
}
