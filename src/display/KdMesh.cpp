// SPDX-License-Identifier: BSD-3-Clause
#include "display/KdMesh.h"

#include "display/KxMeshSceneGraph.h"

#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinExtractor/KeXGeometryExplicit.h>
#include <KerrinExtractor/KiTopology.h>
#include <Nyx/misc/NxState.h>

#include <utility>

namespace {

constexpr auto NO_STAMP = static_cast<std::size_t>(-1);

/// Stores the stamp; whether it was another one.
bool replace(std::size_t& stored, std::size_t current) {
  if (stored == current) return false;
  stored = current;
  return true;
}

} // namespace

KdMesh::KdMesh(NxGroup& parentGroup)
    : m_separator(new NxSeparator)
    , m_attributeCache(new KdAttributeCache(nullptr)) {
  reset();
  parentGroup.addChild(m_separator.get());
}

KdMesh::~KdMesh() = default;

void KdMesh::setSceneGraph(std::unique_ptr<KxMeshSceneGraph> graph) { m_sceneGraph = std::move(graph); }

void KdMesh::clear() {
  reset();
  m_sceneGraph->clear();
}

void KdMesh::reset() {
  m_colorSets.clear();
  m_topologyTimeStamp = NO_STAMP;
  m_geometryTimeStamp = NO_STAMP;
  m_colorSetTimeStamps.clear();
  m_colorMapTimeStamp = NO_STAMP;
  m_topologyChanged = true;
  m_geometryChanged = true;
  m_colorChanged = true;
  m_attributeCache->invalidate();
}

void KdMesh::update(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry,
                    const ExtractedSets& colorSets) {
  m_colorSets = colorSets;
  const bool wasNotifying = m_separator->enableNotify(false);
  const bool changed = checkChanges(state, topology, geometry);
  if (changed) applyChanges(state, topology, geometry);
  m_separator->enableNotify(wasNotifying);
  if (!changed && m_attributeCache->isValid(state)) return;

  m_separator->touch();
  // The push gives the recording a level of its own.
  state->push();
  m_attributeCache = new KdAttributeCache(state);
  state->pop();
}

bool KdMesh::checkChanges(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry) {
  const bool topologyDiffers = topology.getTimeStamp() != m_topologyTimeStamp;
  const bool geometryDiffers = geometry.getTimeStamp() != m_geometryTimeStamp;
  if (!m_sceneGraph->updateDrawStyle(state)) {
    // A hidden mesh takes no changes over: they still differ when it is shown again. But the shapes must not keep
    // pointers into buffers that the extractor has replaced.
    if ((topologyDiffers || geometryDiffers) && m_geometryTimeStamp != NO_STAMP) {
      reset();
      m_sceneGraph->clear();
    }
    return false;
  }

  m_topologyTimeStamp = topology.getTimeStamp();
  m_topologyChanged |= topologyDiffers;
  m_geometryTimeStamp = geometry.getTimeStamp();
  m_geometryChanged |= geometryDiffers;
  m_colorChanged |= checkColorSets();

  const auto* single = KoColorMappingElement::getColorMapping(state);
  const auto* combine = KoCombineColorMappingElement::getColorMapping(state);
  const std::size_t stamp = combine ? combine->getTimeStamp() : single ? single->getTimeStamp() : NO_STAMP;
  m_colorChanged |= m_sceneGraph->updateMaterial(state, single);
  m_colorChanged |= replace(m_colorMapTimeStamp, stamp);
  return m_topologyChanged || m_geometryChanged || m_colorChanged;
}

bool KdMesh::checkColorSets() {
  bool changed = m_colorSetTimeStamps.size() != m_colorSets.size();
  m_colorSetTimeStamps.resize(m_colorSets.size(), NO_STAMP);
  for (std::size_t i = 0; i < m_colorSets.size(); ++i)
    changed |= replace(m_colorSetTimeStamps[i], m_colorSets[i] ? m_colorSets[i]->getTimeStamp() : NO_STAMP);
  return changed;
}

void KdMesh::applyChanges(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry) {
  if (m_topologyChanged) fillIndices(topology);
  if (m_geometryChanged) m_sceneGraph->fillVertices(geometry);
  if (m_colorChanged) m_sceneGraph->fillColors(state, m_colorSets);
  m_topologyChanged = m_geometryChanged = m_colorChanged = false;
}
