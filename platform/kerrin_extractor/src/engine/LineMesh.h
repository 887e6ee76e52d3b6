// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExtractedGeometry.h"
#include "InputAddress.h"

#include <KerrinExtractor/KeXLineMeshUnstructured.h>

#include <cstdint>
#include <memory>

namespace kx {

/// The arrays of extracted lines: every cell is one segment between two vertices. A polyline is a run of segments that
/// share their vertices.
struct LineData {
  Array<std::int32_t> indices; ///< two vertices and a -1 for each segment
  Array<float> vertices;
  IndexArray inputCells; ///< the input cell of each segment

  std::size_t numCells() const { return inputCells.size(); }
  std::size_t numVertices() const { return vertices.size() / 3; }
  void setSegment(std::size_t cell, std::size_t begin, std::size_t end) {
    indices[3 * cell] = static_cast<std::int32_t>(begin);
    indices[3 * cell + 1] = static_cast<std::int32_t>(end);
    indices[3 * cell + 2] = -1;
  }
  void clear();
};

/// The line mesh that extractors yield. Geometry and topology are views of one `LineData`, whose arrays exist once.
class LineMesh final : public KeXLineMeshUnstructured {
public:
  LineMesh();
  ~LineMesh() override;
  const KeXLineTopologyExplicitI& getTopology() const override;
  const KeXGeometryExplicit& getGeometry() const override;
  KeXLineMeshUnstructured* getNewClone() const override;

  LineData& data() { return m_data; }
  const LineData& data() const { return m_data; }
  /// Takes new time stamps after the arrays have been rewritten.
  void commit(const InputAddress& input);
  std::size_t outputStamp() const;

private:
  class Topology;

  LineMesh(const LineMesh& other);

  LineData m_data;
  std::unique_ptr<Topology> m_topology;
  ExtractedGeometry m_geometry;
};

} // namespace kx
