// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KxStyledIndexedFaceGraph.h"
#include "display/KxUnstrMeshSceneGraph.h"

/// The graph of a surface: its faces, with edges and points of the same vertices as extra styles.
class KxSurfaceSceneGraph final : public KxUnstrMeshSceneGraph {
public:
  explicit KxSurfaceSceneGraph(NxGroup& parent);

  bool updateDrawStyle(NxState* state) override;

  /// Asks for faces and edges in one pass; the preference `KERRIN_USE_SINGLEPASS_OUTLINE` (default true) must agree.
  void setUseSinglePassOutline(bool use);

protected:
  KxStyledIndexedShapeGraph& indexedGraph() const override { return m_faces; }
  bool updateOutline(NxState* state) override;

private:
  KxStyledIndexedFaceGraph& m_faces;
  bool m_singlePassOutline = false;
};
