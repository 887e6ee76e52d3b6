// SPDX-License-Identifier: BSD-3-Clause
#include "LineMesh.h"

#include "ExtractedTopology.h"

namespace kx {
namespace {

/// A view of one output segment.
class SegmentCell final : public KiLineCell {
public:
  void show(const std::int32_t* nodes) { m_nodes = nodes; }
  std::size_t getNumNodes() const override { return 2; }
  std::size_t getNodeIndex(std::size_t local) const override { return static_cast<std::size_t>(m_nodes[local]); }

private:
  const std::int32_t* m_nodes = nullptr;
};

} // namespace

void LineData::clear() {
  indices.clear();
  vertices.clear();
  inputCells.resize(0, 0);
}

class LineMesh::Topology final : public ExtractedTopology<KeXLineTopologyExplicitI> {
public:
  explicit Topology(const LineData& data)
      : ExtractedTopology(data.inputCells)
      , m_data(data) {}
  Topology(const LineData& data, const Topology& original)
      : ExtractedTopology(data.inputCells, original)
      , m_data(data) {}

  std::size_t getEndNodeId() const override { return m_data.numVertices(); }
  const KiBuffer* getIndexBuffer() const override { return &m_data.indices; }
  const KiLineCell* getCell(std::size_t cell) const override {
    if (cell >= m_data.numCells()) return nullptr;
    thread_local SegmentCell view;
    view.show(m_data.indices.data() + 3 * cell);
    return &view;
  }

private:
  const LineData& m_data;
};

LineMesh::LineMesh()
    : m_topology(std::make_unique<Topology>(m_data))
    , m_geometry(m_data.vertices) {}

LineMesh::LineMesh(const LineMesh& other)
    : KiMesh()
    , KiMeshUnstructured()
    , KeXMeshUnstructured()
    , KeXLineMeshUnstructured()
    , m_data(other.m_data)
    , m_topology(std::make_unique<Topology>(m_data, *other.m_topology))
    , m_geometry(m_data.vertices, other.m_geometry) {}

LineMesh::~LineMesh() = default;

const KeXLineTopologyExplicitI& LineMesh::getTopology() const { return *m_topology; }
const KeXGeometryExplicit& LineMesh::getGeometry() const { return m_geometry; }
KeXLineMeshUnstructured* LineMesh::getNewClone() const { return new LineMesh(*this); }

void LineMesh::commit(const InputAddress& input) {
  m_topology->commit(input);
  m_geometry.commit();
}

std::size_t LineMesh::outputStamp() const { return m_geometry.getTimeStamp(); }

} // namespace kx
