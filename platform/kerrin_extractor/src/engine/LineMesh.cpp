// SPDX-License-Identifier: BSD-3-Clause
#include "LineMesh.h"

#include <KerrinExtractor/KxTimeStamp.h>

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

class LineMesh::Topology final : public KeXLineTopologyExplicitI {
public:
  explicit Topology(const LineData& data)
      : m_data(data) {}
  Topology(const LineData& data, const Topology& other)
      : m_data(data)
      , m_timeStamp(other.m_timeStamp)
      , m_input(other.m_input) {}

  void commit(const InputAddress& input) {
    m_input = input;
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getNumCells() const override { return m_data.numCells(); }
  std::size_t getEndNodeId() const override { return m_data.numVertices(); }
  const KiBuffer* getIndexBuffer() const override { return &m_data.indices; }
  bool hasStructuredInputCells() const override { return m_input.isStructured; }
  std::size_t getInputCellIndexI(std::size_t cell) const override { return inputCell(cell, 0); }
  std::size_t getInputCellIndexJ(std::size_t cell) const override { return inputCell(cell, 1); }
  std::size_t getInputCellIndexK(std::size_t cell) const override { return inputCell(cell, 2); }

  const KiLineCell* getCell(std::size_t cell) const override {
    if (cell >= m_data.numCells()) return nullptr;
    thread_local SegmentCell view;
    view.show(m_data.indices.data() + 3 * cell);
    return &view;
  }

private:
  std::size_t inputCell(std::size_t cell, std::size_t axis) const {
    return cell < m_data.numCells() ? m_input.index(m_data.inputCells[cell], axis) : UNDEFINED_INDEX;
  }

  const LineData& m_data;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  InputAddress m_input;
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
