// SPDX-License-Identifier: BSD-3-Clause
#include "display/KdIndexedMesh.h"

#include "display/KxUnstrMeshSceneGraph.h"

#include <KerrinExtractor/KeXTopologyExplicitI.h>

void KdIndexedMesh::clear() {
  KdMesh::clear();
  m_mesh = nullptr;
}

void KdIndexedMesh::setIndexedGraph(std::unique_ptr<KxUnstrMeshSceneGraph> graph) {
  m_indexedGraph = graph.get();
  setSceneGraph(std::move(graph));
}

void KdIndexedMesh::fillIndices(const KiTopology& topology) {
  m_indexedGraph->fillIndices(dynamic_cast<const KeXTopologyExplicitI&>(topology));
}
