// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceMesh.h"

#include "ExtractedTopology.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace kx {
namespace {

/// A view of one output polygon.
class PolygonCell final : public KiSurfaceCell {
public:
  void show(const std::int32_t* nodes, std::size_t numNodes) {
    m_nodes = nodes;
    m_numNodes = numNodes;
  }
  std::size_t getNumNodes() const override { return m_numNodes; }
  std::size_t getNodeIndex(std::size_t local) const override { return static_cast<std::size_t>(m_nodes[local]); }

private:
  const std::int32_t* m_nodes = nullptr;
  std::size_t m_numNodes = 0;
};

} // namespace

void SurfaceData::clear() {
  indices.clear();
  vertices.clear();
  edgeBegins.resize(0, 0);
  edgeEnds.resize(0, 0);
  weights.clear();
  inputCells.resize(0, 0);
}

class SurfaceMesh::Topology final : public ExtractedTopology<KeXSurfaceTopologyExplicitI> {
public:
  explicit Topology(const SurfaceData& data)
      : ExtractedTopology(data.inputCells)
      , m_data(data) {}
  Topology(const SurfaceData& data, const Topology& original)
      : ExtractedTopology(data.inputCells, original)
      , m_data(data) {}

  void commit(const InputAddress& input) {
    m_hasOffsets.store(false, std::memory_order_relaxed);
    m_offsets = {};
    ExtractedTopology::commit(input);
  }

  std::size_t getEndNodeId() const override { return m_data.numVertices(); }
  const KiBuffer* getIndexBuffer() const override { return &m_data.indices; }
  const KiSurfaceCell* getCell(std::size_t cell) const override {
    if (cell >= m_data.numCells()) return nullptr;
    thread_local PolygonCell view;
    const std::vector<std::uint32_t>& begins = offsets();
    view.show(m_data.indices.data() + begins[cell], begins[cell + 1] - begins[cell] - 1);
    return &view;
  }

private:
  /// Where each polygon begins in the index list; built at the first question for a cell, since displays never ask.
  const std::vector<std::uint32_t>& offsets() const {
    if (!m_hasOffsets.load(std::memory_order_acquire)) {
      const std::scoped_lock lock(m_mutex);
      if (!m_hasOffsets.load(std::memory_order_relaxed)) {
        m_offsets.assign(1, 0);
        m_offsets.reserve(m_data.numCells() + 1);
        for (std::size_t i = 0; i < m_data.indices.size(); ++i)
          if (m_data.indices[i] < 0) m_offsets.push_back(static_cast<std::uint32_t>(i + 1));
        m_hasOffsets.store(true, std::memory_order_release);
      }
    }
    return m_offsets;
  }

  const SurfaceData& m_data;
  mutable std::mutex m_mutex;
  mutable std::atomic<bool> m_hasOffsets{false};
  mutable std::vector<std::uint32_t> m_offsets;
};

SurfaceMesh::SurfaceMesh()
    : m_topology(std::make_unique<Topology>(m_data))
    , m_geometry(m_data.vertices) {}

SurfaceMesh::SurfaceMesh(const SurfaceMesh& other)
    : KiMesh()
    , KiMeshUnstructured()
    , KeXMeshUnstructured()
    , KeXSurfaceMeshUnstructured()
    , m_data(other.m_data)
    , m_topology(std::make_unique<Topology>(m_data, *other.m_topology))
    , m_geometry(m_data.vertices, other.m_geometry) {}

SurfaceMesh::~SurfaceMesh() = default;

const KeXSurfaceTopologyExplicitI& SurfaceMesh::getTopology() const { return *m_topology; }
const KeXGeometryExplicit& SurfaceMesh::getGeometry() const { return m_geometry; }
KeXSurfaceMeshUnstructured* SurfaceMesh::getNewClone() const { return new SurfaceMesh(*this); }

void SurfaceMesh::commit(const InputAddress& input) {
  m_topology->commit(input);
  m_geometry.commit();
}

std::size_t SurfaceMesh::outputStamp() const { return m_geometry.getTimeStamp(); }

} // namespace kx
