// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceMesh.h"

#include <KerrinExtractor/KxTimeStamp.h>

#include <atomic>
#include <limits>

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

class SurfaceMesh::Topology final : public KeXSurfaceTopologyExplicitI {
public:
  explicit Topology(const SurfaceData& data)
      : m_data(data) {}
  Topology(const SurfaceData& data, const Topology& other)
      : m_data(data)
      , m_timeStamp(other.m_timeStamp)
      , m_isStructured(other.m_isStructured)
      , m_cellDims(other.m_cellDims) {}

  void commit(bool isStructured, const Dims& cellDims) {
    m_isStructured = isStructured;
    m_cellDims = cellDims;
    m_hasOffsets.store(false, std::memory_order_relaxed);
    m_offsets = {};
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getNumCells() const override { return m_data.numCells(); }
  std::size_t getEndNodeId() const override { return m_data.numVertices(); }
  const KiBuffer* getIndexBuffer() const override { return &m_data.indices; }
  bool hasStructuredInputCells() const override { return m_isStructured; }
  std::size_t getInputCellIndexI(std::size_t cell) const override { return inputCell(cell, 0); }
  std::size_t getInputCellIndexJ(std::size_t cell) const override { return inputCell(cell, 1); }
  std::size_t getInputCellIndexK(std::size_t cell) const override { return inputCell(cell, 2); }

  const KiSurfaceCell* getCell(std::size_t cell) const override {
    if (cell >= m_data.numCells()) return nullptr;
    thread_local PolygonCell view;
    const std::vector<std::uint32_t>& begins = offsets();
    view.show(m_data.indices.data() + begins[cell], begins[cell + 1] - begins[cell] - 1);
    return &view;
  }

private:
  std::size_t inputCell(std::size_t cell, std::size_t axis) const {
    if (cell >= m_data.numCells()) return UNDEFINED_INDEX;
    const std::size_t flat = m_data.inputCells[cell];
    if (m_isStructured) return axis == 2 && m_cellDims.k == 0 ? UNDEFINED_INDEX : m_cellDims.split(flat)[axis];
    return axis == 0 ? flat : UNDEFINED_INDEX;
  }

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
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  bool m_isStructured = false;
  Dims m_cellDims;
  mutable std::mutex m_mutex;
  mutable std::atomic<bool> m_hasOffsets{false};
  mutable std::vector<std::uint32_t> m_offsets;
};

class SurfaceMesh::Geometry final : public KeXGeometryExplicit {
public:
  explicit Geometry(const SurfaceData& data)
      : m_data(data) {}
  Geometry(const SurfaceData& data, const Geometry& other)
      : m_data(data)
      , m_timeStamp(other.m_timeStamp) {}

  void commit() {
    m_hasBox.store(false, std::memory_order_relaxed);
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getNumNodes() const override { return m_data.numVertices(); }
  const KiBuffer* getVertexBuffer() const override { return &m_data.vertices; }
  KbVec3<double> getCoord(std::size_t node) const override {
    const float* p = m_data.vertices.data() + 3 * node;
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
  KbVec3<double> getMin() const override {
    findBox();
    return m_low;
  }
  KbVec3<double> getMax() const override {
    findBox();
    return m_high;
  }

private:
  void findBox() const {
    if (m_hasBox.load(std::memory_order_acquire)) return;
    const std::scoped_lock lock(m_mutex);
    if (m_hasBox.load(std::memory_order_relaxed)) return;
    KbVec3<float> low(std::numeric_limits<float>::infinity());
    KbVec3<float> high(-std::numeric_limits<float>::infinity());
    const float* p = m_data.vertices.data();
    for (std::size_t v = 0; v < m_data.numVertices(); ++v, p += 3) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], p[axis]);
        high[axis] = std::max(high[axis], p[axis]);
      }
    }
    m_low = KbVec3<double>(low);
    m_high = KbVec3<double>(high);
    m_hasBox.store(true, std::memory_order_release);
  }

  const SurfaceData& m_data;
  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  mutable std::mutex m_mutex;
  mutable std::atomic<bool> m_hasBox{false};
  mutable KbVec3<double> m_low;
  mutable KbVec3<double> m_high;
};

SurfaceMesh::SurfaceMesh()
    : m_topology(std::make_unique<Topology>(m_data))
    , m_geometry(std::make_unique<Geometry>(m_data)) {}

SurfaceMesh::SurfaceMesh(const SurfaceMesh& other)
    : KiMesh()
    , KiMeshUnstructured()
    , KeXMeshUnstructured()
    , KeXSurfaceMeshUnstructured()
    , m_data(other.m_data)
    , m_topology(std::make_unique<Topology>(m_data, *other.m_topology))
    , m_geometry(std::make_unique<Geometry>(m_data, *other.m_geometry)) {}

SurfaceMesh::~SurfaceMesh() = default;

const KeXSurfaceTopologyExplicitI& SurfaceMesh::getTopology() const { return *m_topology; }
const KeXGeometryExplicit& SurfaceMesh::getGeometry() const { return *m_geometry; }
KeXSurfaceMeshUnstructured* SurfaceMesh::getNewClone() const { return new SurfaceMesh(*this); }

void SurfaceMesh::commit(bool hasStructuredInput, const Dims& cellDims) {
  m_topology->commit(hasStructuredInput, cellDims);
  m_geometry->commit();
}

std::size_t SurfaceMesh::outputStamp() const { return m_geometry->getTimeStamp(); }

} // namespace kx
