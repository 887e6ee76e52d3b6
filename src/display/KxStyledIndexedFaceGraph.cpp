// SPDX-License-Identifier: BSD-3-Clause
#include "display/KxStyledIndexedFaceGraph.h"

#include "display/SetIfDifferent.h"

#include <KerrinDataMapping/details/KoFaceDetail.h>
#include <KerrinDataMapping/elements/KoMaterialElement.h>
#include <Nyx/shapes/NxIndexedFaceSetOutline.h>

// The shape's colouring modes have the numbers of ours.
static_assert(static_cast<int>(NxIndexedFaceSetOutline::COLOR) == static_cast<int>(KoMaterial::COLOR));
static_assert(static_cast<int>(NxIndexedFaceSetOutline::INHERITED) == static_cast<int>(KoMaterial::CONTOURING));

KxStyledIndexedFaceGraph::KxStyledIndexedFaceGraph(NxGroup& parent)
    : KxStyledIndexedFaceGraph(parent, *new NxIndexedFaceSetOutline) {}

KxStyledIndexedFaceGraph::KxStyledIndexedFaceGraph(NxGroup& parent, NxIndexedFaceSetOutline& shape)
    : KxStyledIndexedShapeGraph(parent, FACES, &shape)
    , m_outlineShape(shape) {
  m_outlineShape.outlineMode.setValue(NxIndexedFaceSetOutline::OFF);
}

void KxStyledIndexedFaceGraph::clear() {
  KxStyledIndexedShapeGraph::clear();
  m_outlineShape.outlineMode.setValue(NxIndexedFaceSetOutline::OFF);
  m_outlineShape.fading.setValue(false);
}

NxDetail* KxStyledIndexedFaceGraph::createDetail(const NxDetail* detail,
                                                 const KoMeshRepresentationDetail* meshDetail) const {
  const auto* face = dynamic_cast<const NxFaceDetail*>(detail);
  // The display passes meshes without dead cells: each face that is drawn is the cell of its number.
  return face ? new KoFaceDetail(face, dynamic_cast<const KoSurfaceMeshDetail*>(meshDetail), nullptr) : nullptr;
}

bool KxStyledIndexedFaceGraph::setOutlineActive(bool active, NxState* state) {
  const bool isActive = active && m_outlineShape.isCompatibleWithState(state);
  kx::setIfDifferent(m_outlineShape.outlineMode,
                     static_cast<int>(isActive ? NxIndexedFaceSetOutline::ACTIVE : NxIndexedFaceSetOutline::OFF));
  return isActive;
}

void KxStyledIndexedFaceGraph::setFading(bool fading) { kx::setIfDifferent(m_outlineShape.fading, fading); }

void KxStyledIndexedFaceGraph::bypassSinglePassOutline(bool bypass) { m_outlineShape.bypassSinglePassOutline(bypass); }

bool KxStyledIndexedFaceGraph::updateOutline(NxState* state, bool withEdges) {
  KoMaterial::ColoringType faceColoring, lineColoring, pointColoring;
  NbColor faceColor, lineColor, pointColor;
  float transparency;
  bool enhancedColoring;
  KoMaterialElement::getMaterial(state, faceColoring, faceColor, lineColoring, lineColor, pointColoring, pointColor,
                                 transparency, enhancedColoring);
  bool changed = kx::setIfDifferent(m_outlineShape.faceColoringMode, static_cast<int>(faceColoring));
  changed |= kx::setIfDifferent(m_outlineShape.faceColor, faceColor);
  changed |= kx::setIfDifferent(m_outlineShape.transparency, transparency);
  if (withEdges) {
    changed |= kx::setIfDifferent(m_outlineShape.edgeColoringMode, static_cast<int>(lineColoring));
    changed |= kx::setIfDifferent(m_outlineShape.edgeColor, lineColor);
  }
  return changed;
}
