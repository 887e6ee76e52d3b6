// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxStyledIndexedShapeGraph.h"

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/nodes/NxGroup.h>

KxStyledIndexedShapeGraph::KxStyledIndexedShapeGraph(NxGroup& parent, StyleKind kind, NxIndexedShape* shape)
    : KxStyledShapeGraph(parent, kind, nullptr)
    , m_shape(shape) {
  shape->vertexProperty.setValue(&vertexProperty());
  parent.addChild(shape);
  KxStyledIndexedShapeGraph::clear();
}

KxStyledIndexedShapeGraph::KxStyledIndexedShapeGraph(NxGroup& parent, StyleKind kind,
                                                     const KxStyledIndexedShapeGraph& shared)
    : KxStyledShapeGraph(parent, kind, &shared.vertexProperty())
    , m_shape(shared.m_shape) {
  parent.addChild(m_shape.get());
}

void KxStyledIndexedShapeGraph::clear() {
  KxStyledShapeGraph::clear();
  m_shape->coordIndex.setNum(0);
  m_shape->materialIndex.setNum(0);
}

bool KxStyledIndexedShapeGraph::isShapeOf(const NxPath* path) const {
  return path && static_cast<const NxFullPath*>(path)->getTail() == m_shape.get();
}

void KxStyledIndexedShapeGraph::setCoordIndex(const KxCpuBuffer<int>* buffer) {
  if (!buffer) {
    m_shape->coordIndex.setNum(0);
    NxDebugError::postWarning("KxStyledIndexedShapeGraph::setCoordIndex",
                              "Buffer is NULL, no index set in NxIndexedShape");
    return;
  }
  m_shape->coordIndex.setValuesPointer(static_cast<int>(buffer->getNum()), buffer->getValues());
}
