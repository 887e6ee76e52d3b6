// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KdMesh.h"

#include <KerrinExtractor/KeXMeshUnstructured.h>

class KxUnstrMeshSceneGraph;

/// A display mesh whose cells are lists of node indices.
class KdIndexedMesh : public KdMesh {
public:
  void clear() override;

protected:
  using KdMesh::KdMesh;

  void setIndexedGraph(std::unique_ptr<KxUnstrMeshSceneGraph> graph);
  KxUnstrMeshSceneGraph& indexedGraph() const { return *m_indexedGraph; }
  void fillIndices(const KiTopology& topology) override;

  const KeXMeshUnstructured* getMesh() const { return m_mesh; }
  void setMesh(const KeXMeshUnstructured* mesh) { m_mesh = mesh; }

private:
  KxUnstrMeshSceneGraph* m_indexedGraph = nullptr;
  const KeXMeshUnstructured* m_mesh = nullptr;
};
