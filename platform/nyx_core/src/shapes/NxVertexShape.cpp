// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/shapes/NxVertexShape.h>

#include <Nyx/base/NbColorRGBA.h>
#include <Nyx/elements/NxVertexPropertyElement.h>
#include <Nyx/nodes/NxVertexProperty.h>

#include "render/DrawRecord.h"

NX_NODE_ABSTRACT_SOURCE(NxVertexShape, NxShape)

NxVertexShape::NxVertexShape() {
  NX_NODE_CONSTRUCTOR(NxVertexShape);
  NX_NODE_ADD_EMPTY_FIELD(vertexProperty);
}
NxVertexShape::~NxVertexShape() = default;

const NxVertexProperty* NxVertexShape::getVertices(NxState* state) const {
  const NxNode* node = vertexProperty.getValue();
  if (node == nullptr) return NxVertexPropertyElement::get(state).node;
  if (node->isOfType(NxVertexProperty::getClassTypeId())) return static_cast<const NxVertexProperty*>(node);
  warn("getVertices", std::string("vertexProperty holds a node of type ") + node->getTypeId().getName().getString() +
                          " in place of NxVertexProperty");
  return nullptr;
}

void NxVertexShape::applyColors(const NxVertexProperty& vertices, nx::render::DrawRecord& record) {
  using nx::render::Opacity;
  const bool hasArray = !record.color.empty() || !record.faceColor.empty();
  const bool isOverall = vertices.materialBinding.getValue() == NxVertexProperty::OVERALL;
  if (vertices.orderedRGBA.getNum() == 0 || (!hasArray && !isOverall)) return;
  if (isOverall) {
    const NbColorRGBA color(vertices.orderedRGBA[0]);
    record.material.diffuse = {color[0], color[1], color[2], color[3]};
  }
  static constexpr Opacity opacities[] = {Opacity::Opaque, Opacity::Mixed, Opacity::Translucent};
  record.opacity = opacities[vertices.getTranslucency()];
}
