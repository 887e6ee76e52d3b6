// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxSurfaceSceneGraph.h"

#include "display/SetIfDifferent.h"

#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <Nyx/base/NxPreferences.h>
#include <Nyx/nodes/NxSeparator.h>

namespace {

NxSeparator& addSeparator(NxGroup& parent, const char* name) {
  auto* separator = new NxSeparator;
  separator->setName(name);
  parent.addChild(separator);
  return *separator;
}

} // namespace

KxSurfaceSceneGraph::KxSurfaceSceneGraph(NxGroup& parent)
    : KxUnstrMeshSceneGraph(parent)
    , m_faces(*new KxStyledIndexedFaceGraph(mainStyle())) {
  m_faceGraph.reset(&m_faces);
  m_primaryGraph = &m_faces;
  m_lineGraph = std::make_unique<KxStyledIndexedShapeGraph>(addSeparator(extraStyles(), "LineStyle"),
                                                            KxStyledShapeGraph::EDGES, m_faces);
  m_pointGraph = std::make_unique<KxStyledIndexedShapeGraph>(addSeparator(extraStyles(), "PointStyle"),
                                                             KxStyledShapeGraph::POINTS, m_faces);
}

bool KxSurfaceSceneGraph::updateDrawStyle(NxState* state) {
  bool faces, edges, points;
  const bool isSet = KoDrawStyleElement::getDrawStyle(state, faces, edges, points);
  const bool enhanced = KoMaterialElement::getEnhancedColoring(state);
  const bool onePass = m_singlePassOutline && edges && faces && !enhanced && isSet;
  if (!onePass || !m_faces.setOutlineActive(true, state)) {
    m_faces.setOutlineActive(false, state);
    m_faces.bypassSinglePassOutline(enhanced || !m_singlePassOutline);
    return showStyles(state);
  }
  m_faces.setVisible(true);
  m_lineGraph->setVisible(false);
  m_pointGraph->setVisible(points);
  kx::setIfDifferent(extraStyles().whichChild, points ? NxSwitch::SWITCH_ALL : NxSwitch::SWITCH_NONE);
  m_faces.setFading(KoDrawStyleElement::getFadingThreshold(state) > 0.f);
  m_faces.bypassSinglePassOutline(false);
  return true;
}

void KxSurfaceSceneGraph::setUseSinglePassOutline(bool use) {
  m_singlePassOutline = use && NxPreferences::getBool("KERRIN_USE_SINGLEPASS_OUTLINE", true);
}

bool KxSurfaceSceneGraph::updateOutline(NxState* state) { return m_faces.updateOutline(state, m_singlePassOutline); }
