// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxStyledShapeGraph.h"

#include "display/SetIfDifferent.h"

#include <Nyx/base/NxDebugError.h>
#include <Nyx/nodes/NxGroup.h>

namespace {

constexpr float NO_MATERIAL = -1.f;

} // namespace

KxStyledShapeGraph::KxStyledShapeGraph(NxGroup& parent, StyleKind kind, NxVertexProperty* sharedProperty)
    : m_vertexProperty(sharedProperty ? sharedProperty : new NxVertexProperty)
    , m_drawStyle(new NxDrawStyle)
    , m_uniformColorSwitch(new NxSwitch)
    , m_material(new NxMaterial)
    , m_levelTextureSwitch(new NxSwitch)
    , m_styleKind(kind) {
  m_levelTextureSwitch->setName("LevelTexture");
  kx::setIfDifferent(m_levelTextureSwitch->whichChild, NxSwitch::SWITCH_NONE);
  parent.addChild(m_levelTextureSwitch.get());

  m_drawStyle->style = NxDrawStyle::INVISIBLE;
  m_drawStyle->pointSize.setIgnored(true);
  m_drawStyle->lineWidth.setIgnored(true);
  m_drawStyle->linePattern.setIgnored(true);
  m_drawStyle->linePatternScaleFactor.setIgnored(true);
  parent.addChild(m_drawStyle.get());

  m_uniformColorSwitch->setName("UniformColor");
  kx::setIfDifferent(m_uniformColorSwitch->whichChild, NxSwitch::SWITCH_ALL);
  m_material->ambientColor.setIgnored(true);
  m_material->specularColor.setIgnored(true);
  m_material->emissiveColor.setIgnored(true);
  m_material->shininess.setIgnored(true);
  m_material->diffuseOnly = true;
  m_uniformColorSwitch->addChild(m_material.get());
  parent.addChild(m_uniformColorSwitch.get());
}

KxStyledShapeGraph::~KxStyledShapeGraph() = default;

void KxStyledShapeGraph::clear() {
  m_vertexProperty->vertex.setNum(0);
  m_vertexProperty->orderedRGBA.setNum(0);
  m_vertexProperty->texCoord.setNum(0);
  m_vertexProperty->normal.setNum(0);
  m_vertexProperty->tangent.setNum(0);
  m_vertexProperty->materialBinding.setValue(OVERALL);
  m_vertexProperty->normalBinding.setValue(PER_VERTEX_INDEXED);
  m_levelTextureSwitch->removeAllChildren();
  kx::setIfDifferent(m_levelTextureSwitch->whichChild, NxSwitch::SWITCH_NONE);
}

bool KxStyledShapeGraph::isShapeOf(const NxPath*) const { return false; }

NxDetail* KxStyledShapeGraph::createDetail(const NxDetail*, const KoMeshRepresentationDetail*) const { return nullptr; }

void KxStyledShapeGraph::setVisible(bool visible) {
  m_isVisible = visible;
  if (m_drawStyle->style.isIgnored()) m_drawStyle->style.setIgnored(false);
  kx::setIfDifferent(m_drawStyle->style,
                     visible ? static_cast<int>(m_styleKind) : static_cast<int>(NxDrawStyle::INVISIBLE));
}

void KxStyledShapeGraph::ignoreStyle() {
  m_isVisible = true;
  if (!m_drawStyle->style.isIgnored()) m_drawStyle->style.setIgnored(true);
}

void KxStyledShapeGraph::setVertices(const KxCpuBuffer<KbVec3<float>>* buffer) {
  if (!buffer) {
    m_vertexProperty->vertex.setNum(0);
    NxDebugError::postWarning("KxStyledShapeGraph::setVertices", "Buffer is NULL, no index set in NxVertexProperty");
    return;
  }
  const void* triples = buffer->getValues();
  m_vertexProperty->vertex.setValuesPointer(static_cast<int>(buffer->getNum()), static_cast<const NbVec3f*>(triples));
}

void KxStyledShapeGraph::setColors(const std::vector<NbVec2f>& textureCoordinates,
                                   const std::vector<std::uint32_t>& colors, Binding binding) {
  const bool contouring = m_coloring == KoMaterial::CONTOURING;
  NxVertexProperty& property = *m_vertexProperty;
  if (textureCoordinates.empty()) {
    kx::setIfDifferent(m_levelTextureSwitch->whichChild, NxSwitch::SWITCH_NONE);
    property.texCoord.setNum(0);
    if (colors.empty()) {
      property.orderedRGBA.setNum(0);
    } else {
      property.orderedRGBA.setValuesPointer(static_cast<int>(colors.size()), colors.data());
      property.materialBinding.setValue(binding);
    }
  } else {
    property.orderedRGBA.setNum(0);
    property.materialBinding.setValue(OVERALL);
    property.texCoord.setValuesPointer(static_cast<int>(textureCoordinates.size()), textureCoordinates.data());
    kx::setIfDifferent(m_levelTextureSwitch->whichChild, contouring ? NxSwitch::SWITCH_ALL : NxSwitch::SWITCH_NONE);
  }
  const bool hasData = !textureCoordinates.empty() || !colors.empty();
  const bool uniform = (!hasData || !contouring) && m_material->transparency[0] != NO_MATERIAL;
  kx::setIfDifferent(m_uniformColorSwitch->whichChild, uniform ? NxSwitch::SWITCH_ALL : NxSwitch::SWITCH_NONE);
}

void KxStyledShapeGraph::setTexture(NxTexture2* texture) {
  m_levelTextureSwitch->removeAllChildren();
  if (!texture) return;
  // The texture is modulated by the material, which therefore has to be white.
  auto* white = new NxMaterial;
  white->diffuseColor.setValue(NbColor(1.f, 1.f, 1.f));
  m_levelTextureSwitch->addChild(white);
  m_levelTextureSwitch->addChild(texture);
}

bool KxStyledShapeGraph::setMaterial(KoMaterial::ColoringType coloring, const NbColor& color, float transparency) {
  if (!m_isVisible) return true;
  if (m_coloring == coloring && m_material->diffuseColor[0] == color && m_material->transparency[0] == transparency)
    return true;
  m_coloring = coloring;
  m_material->diffuseColor.setValue(color);
  m_material->transparency.setValue(transparency);
  return false;
}
