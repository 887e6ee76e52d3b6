// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxAction.h>
#include <Nyx/elements/NxDrawStyleElement.h>
#include <Nyx/elements/NxLightModelElement.h>
#include <Nyx/elements/NxMaterialElement.h>
#include <Nyx/elements/NxPickStyleElement.h>
#include <Nyx/elements/NxPolygonOffsetElement.h>
#include <Nyx/elements/NxShapeHintsElement.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/nodes/NxLightModel.h>
#include <Nyx/nodes/NxMaterial.h>
#include <Nyx/nodes/NxPickStyle.h>
#include <Nyx/nodes/NxPolygonOffset.h>
#include <Nyx/nodes/NxShapeHints.h>

#include "src/nodes/TakeField.h"

using nx::detail::take;
using nx::detail::takeFirst;

NX_NODE_SOURCE(NxMaterial, NxPropertyNode)

NxMaterial::NxMaterial() {
  NX_NODE_CONSTRUCTOR(NxMaterial);
  NX_NODE_ADD_FIELD(ambientColor, (0.2f, 0.2f, 0.2f));
  NX_NODE_ADD_FIELD(diffuseColor, (0.8f, 0.8f, 0.8f));
  NX_NODE_ADD_FIELD(specularColor, (0.f, 0.f, 0.f));
  NX_NODE_ADD_FIELD(emissiveColor, (0.f, 0.f, 0.f));
  NX_NODE_ADD_FIELD(shininess, (0.2f));
  NX_NODE_ADD_FIELD(transparency, (0.f));
  NX_NODE_ADD_FIELD(diffuseOnly, (false));
}
NxMaterial::~NxMaterial() = default;

void NxMaterial::doAction(NxAction* action) {
  NxState* state = action->getState();
  NxMaterialValue value = NxMaterialElement::get(state);
  takeFirst(diffuseColor, value.diffuseColor);
  takeFirst(transparency, value.transparency);
  value.diffuseOnly = diffuseOnly.getValue();
  if (!value.diffuseOnly) {
    takeFirst(ambientColor, value.ambientColor);
    takeFirst(specularColor, value.specularColor);
    takeFirst(emissiveColor, value.emissiveColor);
    takeFirst(shininess, value.shininess);
  }
  NxMaterialElement::set(state, this, value);
}

NX_NODE_SOURCE(NxDrawStyle, NxPropertyNode)

NxDrawStyle::NxDrawStyle() {
  NX_NODE_CONSTRUCTOR(NxDrawStyle);
  NX_NODE_ADD_FIELD(style, (FILLED));
  NX_NODE_ADD_FIELD(pointSize, (1.f));
  NX_NODE_ADD_FIELD(lineWidth, (1.f));
  NX_NODE_ADD_FIELD(linePattern, (0xFFFF));
  NX_NODE_ADD_FIELD(linePatternScaleFactor, (1));
  NX_NODE_DEFINE_ENUM_VALUE(Style, FILLED);
  NX_NODE_DEFINE_ENUM_VALUE(Style, LINES);
  NX_NODE_DEFINE_ENUM_VALUE(Style, POINTS);
  NX_NODE_DEFINE_ENUM_VALUE(Style, INVISIBLE);
  NX_SET_SF_ENUM_TYPE(style, Style);
}
NxDrawStyle::~NxDrawStyle() = default;

void NxDrawStyle::doAction(NxAction* action) {
  NxState* state = action->getState();
  NxDrawStyleValue value = NxDrawStyleElement::get(state);
  take(style, value.style);
  take(pointSize, value.pointSize);
  take(lineWidth, value.lineWidth);
  take(linePattern, value.linePattern);
  take(linePatternScaleFactor, value.linePatternScaleFactor);
  NxDrawStyleElement::set(state, this, value);
}

NX_NODE_SOURCE(NxShapeHints, NxPropertyNode)

NxShapeHints::NxShapeHints() {
  NX_NODE_CONSTRUCTOR(NxShapeHints);
  NX_NODE_ADD_FIELD(vertexOrdering, (UNKNOWN_ORDERING));
  NX_NODE_ADD_FIELD(shapeType, (UNKNOWN_SHAPE_TYPE));
  NX_NODE_ADD_FIELD(faceType, (CONVEX));
  NX_NODE_ADD_FIELD(creaseAngle, (0.5f));
  NX_NODE_DEFINE_ENUM_VALUE(VertexOrdering, UNKNOWN_ORDERING);
  NX_NODE_DEFINE_ENUM_VALUE(VertexOrdering, CLOCKWISE);
  NX_NODE_DEFINE_ENUM_VALUE(VertexOrdering, COUNTERCLOCKWISE);
  NX_SET_SF_ENUM_TYPE(vertexOrdering, VertexOrdering);
  NX_NODE_DEFINE_ENUM_VALUE(ShapeType, UNKNOWN_SHAPE_TYPE);
  NX_NODE_DEFINE_ENUM_VALUE(ShapeType, SOLID);
  NX_SET_SF_ENUM_TYPE(shapeType, ShapeType);
  NX_NODE_DEFINE_ENUM_VALUE(FaceType, UNKNOWN_FACE_TYPE);
  NX_NODE_DEFINE_ENUM_VALUE(FaceType, CONVEX);
  NX_SET_SF_ENUM_TYPE(faceType, FaceType);
}
NxShapeHints::~NxShapeHints() = default;

void NxShapeHints::doAction(NxAction* action) {
  NxState* state = action->getState();
  NxShapeHintsValue value = NxShapeHintsElement::get(state);
  take(vertexOrdering, value.vertexOrdering);
  take(shapeType, value.shapeType);
  take(faceType, value.faceType);
  take(creaseAngle, value.creaseAngle);
  NxShapeHintsElement::set(state, this, value);
}

NX_NODE_SOURCE(NxPolygonOffset, NxPropertyNode)

NxPolygonOffset::NxPolygonOffset() {
  NX_NODE_CONSTRUCTOR(NxPolygonOffset);
  NX_NODE_ADD_FIELD(factor, (1.f));
  NX_NODE_ADD_FIELD(units, (1.f));
  NX_NODE_ADD_FIELD(styles, (FILLED));
  NX_NODE_ADD_FIELD(on, (true));
}
NxPolygonOffset::~NxPolygonOffset() = default;

void NxPolygonOffset::doAction(NxAction* action) {
  NxState* state = action->getState();
  NxPolygonOffsetValue value = NxPolygonOffsetElement::get(state);
  take(factor, value.factor);
  take(units, value.units);
  take(styles, value.styles);
  take(on, value.on);
  NxPolygonOffsetElement::set(state, this, value);
}

NX_NODE_SOURCE(NxPickStyle, NxPropertyNode)

NxPickStyle::NxPickStyle() {
  NX_NODE_CONSTRUCTOR(NxPickStyle);
  NX_NODE_ADD_FIELD(style, (SHAPE));
  NX_NODE_DEFINE_ENUM_VALUE(Style, SHAPE);
  NX_NODE_DEFINE_ENUM_VALUE(Style, BOUNDING_BOX);
  NX_NODE_DEFINE_ENUM_VALUE(Style, UNPICKABLE);
  NX_SET_SF_ENUM_TYPE(style, Style);
}
NxPickStyle::~NxPickStyle() = default;

void NxPickStyle::doAction(NxAction* action) {
  if (!style.isIgnored()) NxPickStyleElement::set(action->getState(), this, style.getValue());
}

NX_NODE_SOURCE(NxLightModel, NxPropertyNode)

NxLightModel::NxLightModel() {
  NX_NODE_CONSTRUCTOR(NxLightModel);
  NX_NODE_ADD_FIELD(model, (PHONG));
  NX_NODE_DEFINE_ENUM_VALUE(Model, BASE_COLOR);
  NX_NODE_DEFINE_ENUM_VALUE(Model, PHONG);
  NX_SET_SF_ENUM_TYPE(model, Model);
}
NxLightModel::~NxLightModel() = default;

void NxLightModel::doAction(NxAction* action) {
  if (!model.isIgnored()) NxLightModelElement::set(action->getState(), this, {model.getValue()});
}
