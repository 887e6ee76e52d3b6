// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/shapes/NxShape.h>

#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/elements/NxBoundingBoxElement.h>
#include <Nyx/elements/NxDrawStyleElement.h>
#include <Nyx/elements/NxLightModelElement.h>
#include <Nyx/elements/NxMaterialElement.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/elements/NxPolygonOffsetElement.h>
#include <Nyx/elements/NxShapeHintsElement.h>
#include <Nyx/elements/NxTextureElement.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxLightModel.h>
#include <Nyx/nodes/NxPolygonOffset.h>
#include <Nyx/nodes/NxShapeHints.h>
#include <Nyx/nodes/NxTexture2.h>

#include "render/DrawRecord.h"

#include <algorithm>

NX_NODE_ABSTRACT_SOURCE(NxShape, NxNode)

NxShape::NxShape() { NX_NODE_CONSTRUCTOR(NxShape); }
NxShape::~NxShape() = default;

namespace {

std::array<float, 3> toArray(const NbColor& c) { return {c[0], c[1], c[2]}; }

void setMaterial(const NxMaterialValue& value, nx::render::DrawRecord& record) {
  nx::render::Material& material = record.material;
  const NbColor& diffuse = value.diffuseColor;
  const float opacity = 1.f - std::clamp(value.transparency, 0.f, 1.f);
  material.ambient = toArray(value.ambientColor);
  material.diffuse = {diffuse[0], diffuse[1], diffuse[2], opacity};
  material.specular = toArray(value.specularColor);
  material.emissive = toArray(value.emissiveColor);
  material.shininess = value.shininess;
  if (opacity < 1.f) record.opacity = nx::render::Opacity::Translucent;
}

void setTexture(const NxTextureValue& value, nx::render::DrawRecord& record) {
  if (value.node == nullptr) return;
  const NxTexture2& node = *value.node;
  NbVec2i32 size;
  nx::render::Texture& texture = record.texture;
  texture.pixels = node.image.getValue(size, texture.components);
  if (texture.components < 1) {
    texture.pixels = nullptr;
    return;
  }
  // Clamping to a border colour left OpenGL with its core profile; the edge is what images are clamped to.
  const auto wrap = [](int mode) { return mode == NxTexture2::CLAMP ? NxTexture2::CLAMP_TO_EDGE : mode; };
  texture.source = node.getRenderSource();
  texture.change = value.change;
  texture.width = size[0];
  texture.height = size[1];
  texture.wrapS = wrap(node.wrapS.getValue());
  texture.wrapT = wrap(node.wrapT.getValue());
  texture.minFilter = node.minFilter.getValue();
  texture.magFilter = node.magFilter.getValue() == NxTexture2::NEAREST ? NxTexture2::NEAREST : NxTexture2::LINEAR;
}

/// The offset acts on the draw styles that it names, which is known when the geometry has been filled in.
void setOffset(const NxPolygonOffsetValue& value, nx::render::DrawRecord& record) {
  const int style = record.primitive == nx::render::Primitive::Triangles  ? NxPolygonOffset::FILLED
                    : record.primitive == nx::render::Primitive::Segments ? NxPolygonOffset::LINES
                                                                          : NxPolygonOffset::POINTS;
  record.offset = value.on && (value.styles & style) != 0;
  record.offsetFactor = value.factor;
  record.offsetUnits = value.units;
}

} // namespace

void NxShape::GLRender(NxGLRenderAction* action) {
  NxState* state = action->getState();
  const NxDrawStyleValue& style = NxDrawStyleElement::get(state);
  if (style.style == NxDrawStyle::INVISIBLE) return;

  nx::render::DrawRecord record;
  const NxMaterialValue& material = NxMaterialElement::get(state);
  setMaterial(material, record);
  record.lit = NxLightModelElement::get(state).model == NxLightModel::PHONG;
  record.pointSize = style.pointSize > 0.f ? style.pointSize : 1.f;
  record.lineWidth = style.lineWidth > 0.f ? style.lineWidth : 1.f;
  record.linePattern = style.linePattern;
  record.linePatternScale = style.linePatternScaleFactor;
  const NxShapeHintsValue& hints = NxShapeHintsElement::get(state);
  record.clockwise = hints.vertexOrdering == NxShapeHints::CLOCKWISE;
  record.cullBack = hints.shapeType == NxShapeHints::SOLID && hints.vertexOrdering != NxShapeHints::UNKNOWN_ORDERING;
  const NbMatrix& model = NxModelMatrixElement::get(state);
  std::copy_n(model.getValue(), 16, record.model.begin());
  const NxTextureValue& texture = NxTextureElement::get(state);
  setTexture(texture, record);

  if (!fillGeometry(state, record)) return;
  if (material.diffuseOnly) {
    record.color = record.faceColor = {};
    record.opacity = nx::render::Opacity::Opaque;
    setMaterial(material, record);
  }
  setOffset(NxPolygonOffsetElement::get(state), record);
  if (record.texCoord.empty())
    record.texture.pixels = nullptr;
  else if (!record.texture.empty() && record.opacity == nx::render::Opacity::Opaque && texture.node->isTranslucent())
    record.opacity = nx::render::Opacity::Mixed;
  action->addRecord(std::move(record));
}

void NxShape::getBoundingBox(NxGetBoundingBoxAction* action) {
  NxState* state = action->getState();
  if (!NxBoundingBoxElement::get(state).isGiven) action->extendBy(computeBox(state), NxModelMatrixElement::get(state));
}

void NxShape::getPrimitiveCount(NxGetPrimitiveCountAction* action) {
  const PrimitiveCount count = countPrimitives(action->getState());
  action->addNumTriangles(count.triangles);
  action->addNumLines(count.lines);
  action->addNumPoints(count.points);
}

void NxShape::warn(const char* operation, const std::string& text) const {
  const std::string origin = std::string(getTypeId().getName().getString()) + "::" + operation;
  NxDebugError::postWarning(origin.c_str(), "%s", text.c_str());
}
