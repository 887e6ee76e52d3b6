// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "elements/KdAttributeCache.h"

#include <KerrinExtractor/KeXDataSetI.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/nodes/NxSeparator.h>

#include <cstddef>
#include <memory>
#include <vector>

class KeXGeometryExplicit;
class KiTopology;
class KxMeshSceneGraph;
class NxState;

/// Stands between one extracted mesh and the shapes that draw it.
///
/// It compares the time stamps of topology, geometry, colour sets and colour mapping with those it shows, and has the
/// shape graph refill only what differs. Indices and vertices stay in the extractor's buffers.
class KdMesh {
public:
  using ExtractedSets = std::vector<const KeXDataSetI<double>*>;

  virtual ~KdMesh();
  KdMesh(const KdMesh&) = delete;
  KdMesh& operator=(const KdMesh&) = delete;

  /// Shows nothing and forgets all stamps.
  virtual void clear();

protected:
  /// Adds the display's root to the group. The derived class makes the shape graph under it.
  explicit KdMesh(NxGroup& parentGroup);

  NxSeparator& separator() const { return *m_separator; }
  void setSceneGraph(std::unique_ptr<KxMeshSceneGraph> graph);

  /// Brings the shapes up to date with a mesh and its sets, which must outlive their display. Costs a few comparisons
  /// when nothing has changed.
  void update(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry,
              const ExtractedSets& colorSets);
  const ExtractedSets& colorSets() const { return m_colorSets; }

  /// Hands the cells to the shape graph, if it has any use for them.
  virtual void fillIndices(const KiTopology& topology) = 0;

private:
  bool checkChanges(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry);
  bool checkColorSets();
  void applyChanges(NxState* state, const KiTopology& topology, const KeXGeometryExplicit& geometry);
  void reset();

  ExtractedSets m_colorSets;
  std::size_t m_topologyTimeStamp = 0;
  std::size_t m_geometryTimeStamp = 0;
  std::vector<std::size_t> m_colorSetTimeStamps;
  std::unique_ptr<KxMeshSceneGraph> m_sceneGraph;
  std::size_t m_colorMapTimeStamp = 0;
  bool m_topologyChanged = true;
  bool m_geometryChanged = true;
  bool m_colorChanged = true;
  NbRefPtr<NxSeparator> m_separator;
  NbRefPtr<KdAttributeCache> m_attributeCache;
};
