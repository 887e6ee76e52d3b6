// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KxStyledIndexedShapeGraph.h"

class NxIndexedFaceSetOutline;
class NxState;

/// The faces of a mesh; its shape can also draw the edges in the same pass.
class KxStyledIndexedFaceGraph final : public KxStyledIndexedShapeGraph {
public:
  explicit KxStyledIndexedFaceGraph(NxGroup& parent);

  void clear() override;
  NxDetail* createDetail(const NxDetail* detail, const KoMeshRepresentationDetail* meshDetail) const override;

  /// Switches the outline of the shape on or off; on only where the shape can draw it in this state. Returns whether it
  /// is on.
  bool setOutlineActive(bool active, NxState* state);
  /// Whether the outline fades with the size of the cells on the screen.
  void setFading(bool fading);
  void bypassSinglePassOutline(bool bypass);
  /// Mirrors the material of the state into the shape, edges only if `withEdges`; returns whether something has
  /// changed.
  bool updateOutline(NxState* state, bool withEdges);

private:
  KxStyledIndexedFaceGraph(NxGroup& parent, NxIndexedFaceSetOutline& shape);

  NxIndexedFaceSetOutline& m_outlineShape;
};
