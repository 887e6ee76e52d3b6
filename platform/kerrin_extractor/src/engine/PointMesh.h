// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExtractedGeometry.h"
#include "InputAddress.h"

#include <KerrinExtractor/KeXPointMeshCurvilinear.h>

#include <memory>

namespace kx {

/// The arrays of extracted points.
struct PointData {
  Array<float> vertices;
  IndexArray inputCells; ///< the input cell of each point

  std::size_t numCells() const { return inputCells.size(); }
  std::size_t numVertices() const { return inputCells.size(); }
  void clear() {
    vertices.clear();
    inputCells.resize(0, 0);
  }
};

/// The points that extractors yield; cell i of the topology is point i.
class PointMesh final : public KeXPointMeshCurvilinear {
public:
  PointMesh();
  ~PointMesh() override;
  const KeXTopologyI& getTopology() const override;
  const KeXGeometryExplicit& getGeometry() const override { return m_geometry; }

  PointData& data() { return m_data; }
  const PointData& data() const { return m_data; }
  /// Takes new time stamps after the arrays have been rewritten.
  void commit(const InputAddress& input);
  std::size_t outputStamp() const { return m_geometry.getTimeStamp(); }

private:
  class Topology;

  PointData m_data;
  std::unique_ptr<Topology> m_topology;
  ExtractedGeometry m_geometry;
};

} // namespace kx
