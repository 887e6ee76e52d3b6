// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/elements/NxBoundingBoxElement.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/elements/NxTextureElement.h>
#include <Nyx/elements/NxVertexPropertyElement.h>
#include <Nyx/nodes/NxBBox.h>
#include <Nyx/nodes/NxTexture2.h>
#include <Nyx/nodes/NxVertexProperty.h>

#include "render/DrawRecord.h"

#include <algorithm>

NX_NODE_SOURCE(NxBBox, NxPropertyNode)

NxBBox::NxBBox() {
  NX_NODE_CONSTRUCTOR(NxBBox);
  NX_NODE_ADD_FIELD(mode, (AUTO));
  NX_NODE_ADD_EMPTY_FIELD(boundingBox);
  NX_NODE_DEFINE_ENUM_VALUE(Mode, NO_BOUNDING_BOX);
  NX_NODE_DEFINE_ENUM_VALUE(Mode, AUTO);
  NX_NODE_DEFINE_ENUM_VALUE(Mode, USER_DEFINED);
  NX_SET_SF_ENUM_TYPE(mode, Mode);
}
NxBBox::~NxBBox() = default;

void NxBBox::doAction(NxAction* action) {
  NxBoundingBoxElement::set(action->getState(), this, {mode.getValue() == USER_DEFINED});
}

void NxBBox::getBoundingBox(NxGetBoundingBoxAction* action) {
  doAction(action);
  if (mode.getValue() == USER_DEFINED)
    action->extendBy(boundingBox.getValue(), NxModelMatrixElement::get(action->getState()));
}

NX_NODE_SOURCE(NxTexture2, NxPropertyNode)

NxTexture2::NxTexture2()
    : m_source(std::make_shared<nx::render::Source>()) {
  NX_NODE_CONSTRUCTOR(NxTexture2);
  NX_NODE_ADD_EMPTY_FIELD(image);
  NX_NODE_ADD_FIELD(wrapS, (REPEAT));
  NX_NODE_ADD_FIELD(wrapT, (REPEAT));
  NX_NODE_ADD_FIELD(minFilter, (LINEAR));
  NX_NODE_ADD_FIELD(magFilter, (LINEAR));
  NX_NODE_DEFINE_ENUM_VALUE(Wrap, REPEAT);
  NX_NODE_DEFINE_ENUM_VALUE(Wrap, CLAMP);
  NX_NODE_DEFINE_ENUM_VALUE(Wrap, CLAMP_TO_EDGE);
  NX_NODE_DEFINE_ENUM_VALUE(Wrap, MIRRORED_REPEAT);
  NX_SET_SF_ENUM_TYPE(wrapS, Wrap);
  NX_SET_SF_ENUM_TYPE(wrapT, Wrap);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, NEAREST);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, LINEAR);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, NEAREST_MIPMAP_NEAREST);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, LINEAR_MIPMAP_NEAREST);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, NEAREST_MIPMAP_LINEAR);
  NX_NODE_DEFINE_ENUM_VALUE(Filter, LINEAR_MIPMAP_LINEAR);
  NX_SET_SF_ENUM_TYPE(minFilter, Filter);
  NX_SET_SF_ENUM_TYPE(magFilter, Filter);
}
NxTexture2::~NxTexture2() = default;

void NxTexture2::doAction(NxAction* action) {
  if (!image.isIgnored()) NxTextureElement::set(action->getState(), this, {this, getNodeId()});
}

bool NxTexture2::isTranslucent() const {
  if (m_scannedChange == getNodeId()) return m_isTranslucent;
  m_scannedChange = getNodeId();
  m_isTranslucent = false;
  NbVec2i32 size;
  int components = 0;
  const uint8_t* pixels = image.getValue(size, components);
  if (pixels == nullptr || components % 2 != 0) return false;
  const auto step = static_cast<size_t>(components);
  const size_t numBytes = static_cast<size_t>(size[0]) * static_cast<size_t>(size[1]) * step;
  for (size_t i = step - 1; i < numBytes && !m_isTranslucent; i += step)
    m_isTranslucent = pixels[i] != 255;
  return m_isTranslucent;
}

NX_NODE_SOURCE(NxVertexProperty, NxPropertyNode)

NxVertexProperty::NxVertexProperty()
    : m_source(std::make_shared<nx::render::Source>()) {
  NX_NODE_CONSTRUCTOR(NxVertexProperty);
  NX_NODE_ADD_EMPTY_FIELD(vertex);
  NX_NODE_ADD_EMPTY_FIELD(texCoord);
  NX_NODE_ADD_EMPTY_FIELD(normal);
  NX_NODE_ADD_FIELD(normalBinding, (PER_VERTEX_INDEXED));
  NX_NODE_ADD_EMPTY_FIELD(orderedRGBA);
  NX_NODE_ADD_FIELD(materialBinding, (OVERALL));
  NX_NODE_ADD_EMPTY_FIELD(tangent);
  NX_NODE_ADD_FIELD(tangentBinding, (OVERALL));
  NX_NODE_DEFINE_ENUM_VALUE(Binding, OVERALL);
  NX_NODE_DEFINE_ENUM_VALUE(Binding, PER_FACE);
  NX_NODE_DEFINE_ENUM_VALUE(Binding, PER_FACE_INDEXED);
  NX_NODE_DEFINE_ENUM_VALUE(Binding, PER_VERTEX);
  NX_NODE_DEFINE_ENUM_VALUE(Binding, PER_VERTEX_INDEXED);
  NX_SET_SF_ENUM_TYPE(normalBinding, Binding);
  NX_SET_SF_ENUM_TYPE(materialBinding, Binding);
  NX_SET_SF_ENUM_TYPE(tangentBinding, Binding);
}
NxVertexProperty::~NxVertexProperty() = default;

void NxVertexProperty::doAction(NxAction* action) {
  NxVertexPropertyElement::set(action->getState(), this, {this, getNodeId()});
}

int NxVertexProperty::getTranslucency() const {
  if (orderedRGBA.getNum() == 0) return 0;
  // Change ids grow through the process: the larger one tells of a change of either.
  const uint64_t change = std::max(orderedRGBA.getChangeId(), materialBinding.getChangeId());
  if (m_scannedChange == change) return m_translucency;
  m_scannedChange = change;
  const uint32_t* colors = orderedRGBA.getValues();
  const bool overall = materialBinding.getValue() == OVERALL;
  const int count = overall ? 1 : orderedRGBA.getNum();
  bool hasOpaque = false, hasTranslucent = false;
  for (int i = 0; i < count; ++i) {
    const bool opaque = (colors[i] & 0xFF) == 0xFF;
    hasOpaque |= opaque;
    hasTranslucent |= !opaque;
  }
  m_translucency = !hasTranslucent ? 0 : hasOpaque ? 1 : 2;
  return m_translucency;
}
