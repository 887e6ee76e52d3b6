// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KxMeshSceneGraph.h"

class KeXTopologyExplicitI;
class KxStyledIndexedShapeGraph;

/// The graph of a mesh with indexed cells.
class KxUnstrMeshSceneGraph : public KxMeshSceneGraph {
public:
  /// Takes the cells by pointer to their index list.
  void fillIndices(const KeXTopologyExplicitI& topology);
  void fillPickedPoints(NxRayPickAction* action, const KoMeshRepresentationDetail* detail) override;

protected:
  using KxMeshSceneGraph::KxMeshSceneGraph;

  virtual KxStyledIndexedShapeGraph& indexedGraph() const = 0;
};
