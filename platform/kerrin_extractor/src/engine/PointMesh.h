// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExtractedGeometry.h"

#include <KerrinExtractor/KeXPointMeshCurvilinear.h>

#include <memory>

namespace kx {

/// The points that extractors yield; cell i of the topology is point i.
class PointMesh final : public KeXPointMeshCurvilinear {
public:
  PointMesh();
  ~PointMesh() override;
  const KeXTopologyI& getTopology() const override;
  const KeXGeometryExplicit& getGeometry() const override { return m_geometry; }

  Array<float>& vertices() { return m_vertices; }
  IndexArray& inputCells() { return m_inputCells; } ///< the input cell of each point
  const IndexArray& inputCells() const { return m_inputCells; }
  void clear();
  /// Takes new time stamps after the arrays have been rewritten.
  void commit(const InputAddress& input);
  std::size_t outputStamp() const { return m_geometry.getTimeStamp(); }

private:
  class Topology;

  Array<float> m_vertices;
  IndexArray m_inputCells;
  std::unique_ptr<Topology> m_topology;
  ExtractedGeometry m_geometry;
};

} // namespace kx
