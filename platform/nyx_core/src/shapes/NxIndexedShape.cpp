// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/shapes/NxIndexedShape.h>

#include <Nyx/elements/NxDrawStyleElement.h>
#include <Nyx/elements/NxShapeHintsElement.h>
#include <Nyx/nodes/NxDrawStyle.h>
#include <Nyx/shapes/NxIndexedFaceSet.h>
#include <Nyx/shapes/NxIndexedFaceSetOutline.h>
#include <Nyx/shapes/NxIndexedLineSet.h>

#include "src/shapes/FieldArrays.h"

#include <algorithm>
#include <array>

using nx::detail::Binding;
using nx::detail::GeometryInput;
using nx::detail::IndexedGeometry;
using nx::detail::IndexSpan;
using nx::detail::PrimitiveStyle;

/// What was made from the fields, with the changes that it was made from.
struct NxIndexedShape::Cache {
  /// The arrays: when they change, everything made from them is stale.
  using ArrayKey = std::array<uint64_t, 6>;
  /// What else a layout depends on; two instances of a shape may stand under different hints.
  struct LayoutKey {
    float creaseAngle;
    Binding colorBinding, normalBinding;
    bool hasColors, hasNormals, hasTexCoords;
    bool operator==(const LayoutKey&) const = default;
  };
  struct Layout {
    LayoutKey key;
    std::shared_ptr<IndexedGeometry> geometry;
    std::string problem; ///< the last one that was posted, so that each frame does not post it again
  };

  ArrayKey arrays{};
  std::vector<Layout> layouts;
  std::array<uint64_t, 3> boxKey{};
  NbBox3f box;
};

NX_NODE_ABSTRACT_SOURCE(NxIndexedShape, NxVertexShape)

NxIndexedShape::NxIndexedShape()
    : m_cache(std::make_unique<Cache>()) {
  NX_NODE_CONSTRUCTOR(NxIndexedShape);
  NX_NODE_ADD_EMPTY_FIELD(coordIndex);
  NX_NODE_ADD_EMPTY_FIELD(materialIndex);
  NX_NODE_ADD_EMPTY_FIELD(normalIndex);
  NX_NODE_ADD_EMPTY_FIELD(textureCoordIndex);
}
NxIndexedShape::~NxIndexedShape() = default;

namespace {

IndexSpan span(const NxMFInt32& field) { return {field.getValues(), static_cast<size_t>(field.getNum())}; }

PrimitiveStyle styleFor(NxState* state, bool isFaceSet) {
  const int style = NxDrawStyleElement::get(state).style;
  if (style == NxDrawStyle::POINTS) return PrimitiveStyle::Points;
  return isFaceSet && style != NxDrawStyle::LINES ? PrimitiveStyle::Filled : PrimitiveStyle::Lines;
}

} // namespace

std::shared_ptr<IndexedGeometry> NxIndexedShape::getGeometry(NxState* state, const NxVertexProperty& vertices) {
  GeometryInput input;
  input.isFaceSet = isFaceSet();
  input.coordIndex = span(coordIndex);
  input.materialIndex = span(materialIndex);
  input.normalIndex = span(normalIndex);
  input.texCoordIndex = span(textureCoordIndex);
  input.xyz = nx::detail::coordinates(vertices);
  input.numVertices = static_cast<size_t>(vertices.vertex.getNum());
  input.hasColors = vertices.orderedRGBA.getNum() > 0;
  input.hasNormals = vertices.normal.getNum() > 0;
  input.hasTexCoords = vertices.texCoord.getNum() > 0;
  input.colorBinding = vertices.materialBinding.getValueAs<Binding>();
  input.normalBinding = vertices.normalBinding.getValueAs<Binding>();
  // Computed normals per face are the triangles' own.
  const bool isFlat = input.normalBinding == Binding::PerFace || input.normalBinding == Binding::PerFaceIndexed;
  input.creaseAngle = isFlat ? 0.f : NxShapeHintsElement::get(state).creaseAngle;

  const Cache::ArrayKey arrays{vertices.getRenderSource()->id(), vertices.vertex.getChangeId(),
                               coordIndex.getChangeId(),         materialIndex.getChangeId(),
                               normalIndex.getChangeId(),        textureCoordIndex.getChangeId()};
  if (m_cache->arrays != arrays) m_cache->layouts.clear();
  m_cache->arrays = arrays;
  const Cache::LayoutKey key{input.creaseAngle, input.colorBinding, input.normalBinding,
                             input.hasColors,   input.hasNormals,   input.hasTexCoords};
  const auto found = std::find_if(m_cache->layouts.begin(), m_cache->layouts.end(),
                                  [&key](const Cache::Layout& layout) { return layout.key == key; });
  if (found != m_cache->layouts.end()) {
    std::rotate(m_cache->layouts.begin(), found, found + 1);
    return m_cache->layouts.front().geometry;
  }
  constexpr size_t maxLayouts = 4;
  if (m_cache->layouts.size() == maxLayouts) m_cache->layouts.pop_back();
  auto geometry = std::make_shared<IndexedGeometry>(input);
  if (!geometry->fault().empty()) warn("getGeometry", geometry->fault());
  m_cache->layouts.insert(m_cache->layouts.begin(), Cache::Layout{key, geometry, {}});
  return geometry;
}

bool NxIndexedShape::fillGeometry(NxState* state, nx::render::DrawRecord& record) {
  const NxVertexProperty* vertices = getVertices(state);
  if (vertices == nullptr || vertices->vertex.getNum() == 0 || coordIndex.getNum() == 0) return false;
  const std::shared_ptr<IndexedGeometry> geometry = getGeometry(state, *vertices);
  const std::string problem = geometry->fill(record, styleFor(state, isFaceSet()), record.linePattern != 0xFFFF,
                                             nx::detail::vertexArrays(*vertices));
  Cache::Layout& layout = m_cache->layouts.front();
  if (problem != layout.problem) {
    layout.problem = problem;
    if (!problem.empty()) warn("GLRender", problem);
  }
  record.keepAlive = geometry;
  applyColors(*vertices, record);
  return !record.indices.empty();
}

NbBox3f NxIndexedShape::computeBox(NxState* state) {
  const NxVertexProperty* vertices = getVertices(state);
  if (vertices == nullptr) return NbBox3f();
  const std::array<uint64_t, 3> key{vertices->getRenderSource()->id(), vertices->vertex.getChangeId(),
                                    coordIndex.getChangeId()};
  if (m_cache->boxKey == key) return m_cache->box;
  m_cache->boxKey = key;
  NbBox3f box;
  const auto numVertices = static_cast<uint32_t>(vertices->vertex.getNum());
  for (int i = 0; i < coordIndex.getNum(); ++i) {
    if (static_cast<uint32_t>(coordIndex[i]) < numVertices) box.extendBy(vertices->vertex[coordIndex[i]]);
  }
  m_cache->box = box;
  return box;
}

NxShape::PrimitiveCount NxIndexedShape::countPrimitives(NxState* state) {
  PrimitiveCount count;
  const NxVertexProperty* vertices = getVertices(state);
  if (vertices == nullptr || coordIndex.getNum() == 0 || NxDrawStyleElement::get(state).style == NxDrawStyle::INVISIBLE)
    return count;
  const std::shared_ptr<IndexedGeometry> geometry = getGeometry(state, *vertices);
  switch (styleFor(state, isFaceSet())) {
  case PrimitiveStyle::Filled:
    count.triangles = static_cast<int>(geometry->triangles().vertices.size() / 3);
    break;
  case PrimitiveStyle::Lines:
    count.lines = static_cast<int>(geometry->segments().vertices.size() / 2);
    break;
  case PrimitiveStyle::Points:
    count.points = static_cast<int>(geometry->points().vertices.size());
    break;
  }
  return count;
}

NX_NODE_SOURCE(NxIndexedFaceSet, NxIndexedShape)

NxIndexedFaceSet::NxIndexedFaceSet() { NX_NODE_CONSTRUCTOR(NxIndexedFaceSet); }
NxIndexedFaceSet::~NxIndexedFaceSet() = default;

NX_NODE_SOURCE(NxIndexedLineSet, NxIndexedShape)

NxIndexedLineSet::NxIndexedLineSet() { NX_NODE_CONSTRUCTOR(NxIndexedLineSet); }
NxIndexedLineSet::~NxIndexedLineSet() = default;

NX_NODE_SOURCE(NxIndexedFaceSetOutline, NxIndexedFaceSet)

NxIndexedFaceSetOutline::NxIndexedFaceSetOutline() {
  NX_NODE_CONSTRUCTOR(NxIndexedFaceSetOutline);
  NX_NODE_ADD_FIELD(outlineMode, (OFF));
  NX_NODE_ADD_FIELD(edgeColoringMode, (INHERITED));
  NX_NODE_ADD_FIELD(edgeColor, (0.f, 0.f, 0.f));
  NX_NODE_ADD_FIELD(faceColoringMode, (INHERITED));
  NX_NODE_ADD_FIELD(faceColor, (1.f, 1.f, 1.f));
  NX_NODE_ADD_FIELD(fading, (false));
  NX_NODE_ADD_FIELD(transparency, (0.f));
  NX_NODE_DEFINE_ENUM_VALUE(OutlineMode, ACTIVE);
  NX_NODE_DEFINE_ENUM_VALUE(OutlineMode, OFF);
  NX_SET_SF_ENUM_TYPE(outlineMode, OutlineMode);
  NX_NODE_DEFINE_ENUM_VALUE(ColoringMode, COLOR);
  NX_NODE_DEFINE_ENUM_VALUE(ColoringMode, INHERITED);
  NX_SET_SF_ENUM_TYPE(edgeColoringMode, ColoringMode);
  NX_SET_SF_ENUM_TYPE(faceColoringMode, ColoringMode);
}
NxIndexedFaceSetOutline::~NxIndexedFaceSetOutline() = default;

bool NxIndexedFaceSetOutline::isCompatibleWithState(NxState*) const { return false; }
