// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFNode.h>
#include <Nyx/shapes/NxShape.h>

class NxVertexProperty;

/// A shape made of vertices.
class NYX_CORE_API NxVertexShape : public NxShape {
  NX_NODE_ABSTRACT_HEADER(NxVertexShape);

public:
  NxSFNode vertexProperty; ///< an NxVertexProperty; null takes the one that was met last in the graph

protected:
  NxVertexShape();
  ~NxVertexShape() override;

  /// The vertices to draw; null when there are none, after a warning when the field holds another kind of node.
  const NxVertexProperty* getVertices(NxState* state) const;
  /// Sets opacity and, for a single packed colour, the diffuse colour of a record whose colour arrays are set.
  static void applyColors(const NxVertexProperty& vertices, nx::render::DrawRecord& record);
};
