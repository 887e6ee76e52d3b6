// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KxStyledShapeGraph.h"

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/shapes/NxIndexedShape.h>

/// A style of an indexed shape.
class KxStyledIndexedShapeGraph : public KxStyledShapeGraph {
public:
  /// A further style of a shape that another one has made.
  KxStyledIndexedShapeGraph(NxGroup& parent, StyleKind kind, const KxStyledIndexedShapeGraph& shared);

  void clear() override;
  bool isShapeOf(const NxPath* path) const override;

  /// Takes the indices by pointer.
  void setCoordIndex(const KxCpuBuffer<int>* buffer);

protected:
  /// A style with a new shape.
  KxStyledIndexedShapeGraph(NxGroup& parent, StyleKind kind, NxIndexedShape* shape);

private:
  NbRefPtr<NxIndexedShape> m_shape;
};
