// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxMeshSceneGraph.h"

#include "colors/KdLevelColorMapping.h"
#include "display/SetIfDifferent.h"

#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <KerrinExtractor/KeXGeometryExplicit.h>
#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/base/NxPreferences.h>
#include <Nyx/nodes/NxBBox.h>
#include <Nyx/nodes/NxPickStyle.h>
#include <Nyx/nodes/NxSeparator.h>

#include <algorithm>

namespace {

/// Without the given boxes, bounding-box queries walk all vertices.
const bool useBoundingBoxes = !NxPreferences::getBool("KERRIN_DEACTIVATE_NXBBOX", false);

NbVec3f narrowed(const KbVec3<double>& v) {
  return NbVec3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
}

} // namespace

KxMeshSceneGraph::KxMeshSceneGraph(NxGroup& parent)
    : m_boundingBox(new NxBBox)
    , m_mainStyle(new NxSeparator)
    , m_extraStyles(new NxSwitch) {
  m_boundingBox->mode.setValue(useBoundingBoxes ? NxBBox::AUTO : NxBBox::NO_BOUNDING_BOX);
  parent.addChild(m_boundingBox.get());
  m_mainStyle->setName("MainStyle");
  parent.addChild(m_mainStyle.get());
  m_extraStyles->setName("ExtraStyles");
  kx::setIfDifferent(m_extraStyles->whichChild, NxSwitch::SWITCH_ALL);
  parent.addChild(m_extraStyles.get());

  // Edges and points lie on the faces: a pick shall find the face only.
  auto* unpickable = new NxPickStyle;
  unpickable->style.setValue(NxPickStyle::UNPICKABLE);
  m_extraStyles->addChild(unpickable);
}

KxMeshSceneGraph::~KxMeshSceneGraph() = default;

bool KxMeshSceneGraph::updateDrawStyle(NxState* state) { return showStyles(state); }

bool KxMeshSceneGraph::showStyles(NxState* state) {
  bool faces, edges, points;
  const bool isSet = KoDrawStyleElement::getDrawStyle(state, faces, edges, points);
  m_faceGraph->setVisible(faces);
  m_pointGraph->setVisible(points);
  m_lineGraph->setVisible(edges);
  if (!isSet) m_primaryGraph->ignoreStyle();
  kx::setIfDifferent(m_extraStyles->whichChild, isSet ? NxSwitch::SWITCH_ALL : NxSwitch::SWITCH_NONE);
  return m_faceGraph->isVisible() || m_lineGraph->isVisible() || m_pointGraph->isVisible();
}

void KxMeshSceneGraph::clear() {
  m_boundingBox->mode.setValue(NxBBox::AUTO);
  m_faceGraph->clear();
  m_lineGraph->clear();
  m_pointGraph->clear();
  m_levelTexture.reset();
}

void KxMeshSceneGraph::fillPickedPoints(NxRayPickAction*, const KoMeshRepresentationDetail*) {}

bool KxMeshSceneGraph::updateOutline(NxState*) { return false; }

bool KxMeshSceneGraph::updateMaterial(NxState* state, const SingleMapping* mapping) {
  KoMaterial::ColoringType faceColoring, lineColoring, pointColoring;
  NbColor faceColor, lineColor, pointColor;
  float transparency;
  bool enhancedColoring;
  const bool isSet = KoMaterialElement::getMaterial(state, faceColoring, faceColor, lineColoring, lineColor,
                                                    pointColoring, pointColor, transparency, enhancedColoring);

  if (!m_levelTexture) m_levelTexture = std::make_unique<KxLevelTexture>();
  if (m_levelTexture->update(dynamic_cast<const KdLevelColorMapping*>(mapping), m_opacity))
    for (KxStyledShapeGraph* graph : {m_faceGraph.get(), m_lineGraph.get(), m_pointGraph.get()})
      graph->setTexture(m_levelTexture->getTexture());

  bool changed = updateOutline(state);
  const float shownTransparency = isSet ? transparency : -1.f;
  changed |= !m_faceGraph->setMaterial(faceColoring, faceColor, shownTransparency);
  changed |= !m_lineGraph->setMaterial(lineColoring, lineColor, shownTransparency);
  changed |= !m_pointGraph->setMaterial(pointColoring, pointColor, shownTransparency);

  const float opacity = 1.f - transparency;
  if (isSet != m_styleIsSet || opacity != m_opacity || enhancedColoring != m_enhancedColoring) {
    m_styleIsSet = isSet;
    m_opacity = opacity;
    m_enhancedColoring = enhancedColoring;
    changed = true;
  }
  return changed;
}

void KxMeshSceneGraph::fillVertices(const KeXGeometryExplicit& geometry) {
  NbRefPtr<KxCpuBuffer<KbVec3<float>>> buffer;
  if (const KiBuffer* source = geometry.getVertexBuffer()) buffer = new KxCpuBuffer<KbVec3<float>>(*source);
  m_primaryGraph->setVertices(buffer.get());

  if (m_boundingBox->mode.getValue() == NxBBox::NO_BOUNDING_BOX) return;
  if (geometry.getNumNodes() == 0) {
    m_boundingBox->mode.setValue(NxBBox::AUTO);
    return;
  }
  m_boundingBox->mode.setValue(NxBBox::USER_DEFINED);
  m_boundingBox->boundingBox.setValue(NbBox3f(narrowed(geometry.getMin()), narrowed(geometry.getMax())));
}

void KxMeshSceneGraph::fillColors(NxState* state, const ExtractedSets& colorSets) {
  const SingleMapping* single = KoColorMappingElement::getColorMapping(state);
  const CombineMapping* combine = KoCombineColorMappingElement::getColorMapping(state);
  const auto graphs = {m_faceGraph.get(), m_lineGraph.get(), m_pointGraph.get()};
  const bool contouring =
      std::any_of(graphs.begin(), graphs.end(), [](const KxStyledShapeGraph* graph) { return graph->isContouring(); });
  const bool valid = !colorSets.empty() && std::find(colorSets.begin(), colorSets.end(), nullptr) == colorSets.end();

  m_colors.clear();
  m_textureCoordinates.clear();
  auto binding = KxStyledShapeGraph::OVERALL;
  if (contouring && valid && (single || combine)) {
    const KeXDataSetI<double>& first = *colorSets.front();
    const bool perNode = first.getBinding() == DataBinding::PER_NODE;
    if (perNode && m_levelTexture && m_levelTexture->getTexture()) {
      fillTextureCoordinates(first);
    } else {
      binding = perNode ? KxStyledShapeGraph::PER_VERTEX_INDEXED : KxStyledShapeGraph::PER_FACE;
      if (single)
        fillPackedColors(*single, first);
      else
        fillPackedColors(*combine, colorSets);
    }
  }
  for (KxStyledShapeGraph* graph : graphs)
    graph->setColors(m_textureCoordinates, m_colors, binding);
}

void KxMeshSceneGraph::fillTextureCoordinates(const KeXDataSetI<double>& set) {
  m_textureCoordinates.resize(set.getSize());
  for (std::size_t i = 0; i < m_textureCoordinates.size(); ++i)
    m_textureCoordinates[i] = NbVec2f(m_levelTexture->toTextureCoordinate(set.get(i)), 0.f);
}

void KxMeshSceneGraph::fillPackedColors(const SingleMapping& mapping, const KeXDataSetI<double>& set) {
  m_colors.resize(set.getSize());
  const double* values = set.getValues();
  for (std::size_t i = 0; i < m_colors.size(); ++i)
    m_colors[i] = packed(mapping.getColor(values ? values[i] : set.get(i)));
}

void KxMeshSceneGraph::fillPackedColors(const CombineMapping& mapping, const ExtractedSets& sets) {
  const DataBinding binding = sets.front()->getBinding();
  if (std::any_of(sets.begin(), sets.end(), [binding](const auto* set) { return set->getBinding() != binding; })) {
    NxDebugError::postWarning("KoCombineColorMapping", "Can not combine scalarsets with different bindings");
    return;
  }
  m_colors.resize(sets.front()->getSize());
  std::vector<double> values(sets.size());
  for (std::size_t i = 0; i < m_colors.size(); ++i) {
    std::transform(sets.begin(), sets.end(), values.begin(), [i](const auto* set) { return set->get(i); });
    m_colors[i] = packed(mapping.getColor(values));
  }
}

std::uint32_t KxMeshSceneGraph::packed(NbColorRGBA color) const {
  color[3] *= m_opacity;
  return color.getPackedValue();
}
