// SPDX-License-Identifier: BSD-3-Clause
#include "FlatMesh.h"

#include "FlatForms.h"

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

/// The array-backed view; false when the arrays don't fit together (the virtual operations then decide).
template <class Index>
bool makeArrayCells(const KiRawArrays& arrays, std::size_t numCells,
                    std::size_t (*numCornersOf)(std::size_t, std::size_t), CellListView& view) {
  const KiRawArray connectivity = arrays.getRawArray(KiRawArrays::CONNECTIVITY);
  const KiRawArray offsets = arrays.getRawArray(KiRawArrays::OFFSETS);
  const KiRawArray shapes = arrays.getRawArray(KiRawArrays::SHAPES);
  if (shapes.type != KiRawArray::UINT8 || (shapes.size != 1 && shapes.size < numCells)) return false;
  if (offsets && (offsets.type != connectivity.type || offsets.size < numCells + 1)) return false;
  const auto* codes = static_cast<const std::uint8_t*>(shapes.data);
  const std::size_t stride = connectivity.size / numCells;
  view = ArrayCellLists<Index>{static_cast<const Index*>(connectivity.data),
                               connectivity.size,
                               static_cast<const Index*>(offsets.data),
                               stride,
                               codes,
                               shapes.size == 1 ? 0u : 1u,
                               numCornersOf,
                               !offsets && shapes.size == 1 ? numCornersOf(codes[0], stride) : 0};
  return true;
}

template <class Cell>
void loadVirtual(const Cell* cell, std::size_t (*numCornersOf)(std::size_t, std::size_t), CellNodeList& nodes) {
  if (!cell) {
    nodes.set(0, 0);
    return;
  }
  nodes.set(cell->getNumNodes(), numCornersOf(cell->getShape(), cell->getNumNodes()));
  for (std::size_t i = 0; i < nodes.numNodes; ++i)
    nodes.ids[i] = cell->getNodeIndex(i);
}

/// Nodes on a straight line at equal steps.
class RowGeometry final : public KiGeometryI {
public:
  RowGeometry(const KbVec3<double>& low, const KbVec3<double>& high, std::size_t numCells)
      : m_low(low)
      , m_span(high - low)
      , m_numCells(static_cast<double>(numCells)) {}
  std::size_t getTimeStamp() const override { return 0; }
  KbVec3<double> getCoord(std::size_t node) const override {
    return m_low + m_span * (static_cast<double>(node) / m_numCells);
  }

private:
  KbVec3<double> m_low;
  KbVec3<double> m_span;
  double m_numCells;
};

/// A rectilinear surface in any plane. Its axes are those of the plane z = 0 turned about the line in which that plane
/// and the surface's meet.
class TiltedGeometry final : public KiGeometryI {
public:
  TiltedGeometry(const KiSurfaceGeometryRectilinear& source, std::size_t numNodesI)
      : m_source(source)
      , m_numI(numNodesI) {
    const KbVec3<double> n = source.getNormal().normalized();
    const double c = n[2];
    const double s = c > -1.0 + 1e-12 ? 1.0 / (1.0 + c) : 0.0;
    m_axisX = s > 0.0 ? KbVec3<double>(1.0 - n[0] * n[0] * s, -n[0] * n[1] * s, -n[0]) : KbVec3<double>(1.0, 0.0, 0.0);
    m_axisY = s > 0.0 ? KbVec3<double>(-n[0] * n[1] * s, 1.0 - n[1] * n[1] * s, -n[1]) : KbVec3<double>(0.0, -1.0, 0.0);
    m_origin = n * source.getDistance();
  }
  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  KbVec3<double> getCoord(std::size_t node) const override {
    return m_origin + m_axisX * m_source.getX(node % m_numI) + m_axisY * m_source.getY(node / m_numI);
  }

private:
  const KiSurfaceGeometryRectilinear& m_source;
  std::size_t m_numI;
  KbVec3<double> m_axisX;
  KbVec3<double> m_axisY;
  KbVec3<double> m_origin;
};

std::vector<double> equalSteps(double low, double high, std::size_t numNodes) {
  std::vector<double> steps(numNodes);
  for (std::size_t i = 0; i < numNodes; ++i)
    steps[i] = low + (high - low) * (static_cast<double>(i) / static_cast<double>(numNodes - 1));
  return steps;
}

} // namespace

std::size_t numSurfaceCorners(std::size_t shape, std::size_t numNodes) {
  switch (shape) {
  case KiSurfaceCell::TRIANGLE:
    return numNodes == 3 ? 3 : 0;
  case KiSurfaceCell::QUADRANGLE:
    return numNodes == 4 ? 4 : 0;
  case KiSurfaceCell::POLYGON:
    return numNodes >= 3 ? numNodes : 0;
  case KiSurfaceCell::QUADRATIC_TRIANGLE:
    return numNodes == 6 ? 3 : 0;
  case KiSurfaceCell::QUADRATIC_QUADRANGLE:
    return numNodes == 8 ? 4 : 0;
  default:
    return 0;
  }
}

std::size_t numLineCorners(std::size_t shape, std::size_t numNodes) {
  return shape <= KiLineCell::QUADRATIC_LINE && numNodes == shape + 2 ? 2 : 0;
}

void VirtualSurfaceCells::load(std::size_t cell, CellNodeList& nodes) const {
  loadVirtual(topology->getCell(cell), numSurfaceCorners, nodes);
}

void VirtualLineCells::load(std::size_t cell, CellNodeList& nodes) const {
  loadVirtual(topology->getCell(cell), numLineCorners, nodes);
}

FlatMesh::FlatMesh(const KiSurfaceMeshUnstructured& mesh) {
  readExplicit(mesh.getTopology(), VirtualSurfaceCells{&mesh.getTopology()}, numSurfaceCorners);
  readCoordinates(mesh.getGeometry());
}

FlatMesh::FlatMesh(const KiSurfaceMeshRegular& mesh) {
  readGrid(mesh.getTopology());
  if (numCells == 0) return;
  const KbVec3<double> low = mesh.getGeometry().getMin();
  const KbVec3<double> high = mesh.getGeometry().getMax();
  points.kind = PointView::Kind::AXES;
  points.axes = {equalSteps(low[0], high[0], nodeDims.i), equalSteps(low[1], high[1], nodeDims.j), {low[2]}};
}

FlatMesh::FlatMesh(const KiSurfaceMeshRectilinear& mesh) {
  readGrid(mesh.getTopology());
  if (numCells == 0) return;
  const KiSurfaceGeometryRectilinear& geometry = mesh.getGeometry();
  if (!(geometry.getNormal() == KbVec3<double>(0.0, 0.0, 1.0))) {
    m_ownGeometry = std::make_shared<TiltedGeometry>(geometry, nodeDims.i);
    readCoordinates(*m_ownGeometry);
    return;
  }
  points.kind = PointView::Kind::AXES;
  points.axes[2] = {geometry.getDistance()};
  for (std::size_t i = 0; i < nodeDims.i; ++i)
    points.axes[0].push_back(geometry.getX(i));
  for (std::size_t j = 0; j < nodeDims.j; ++j)
    points.axes[1].push_back(geometry.getY(j));
}

FlatMesh::FlatMesh(const KiSurfaceMeshCurvilinear& mesh) {
  readGrid(mesh.getTopology());
  m_ownGeometry = std::make_shared<FlatGeometryIj>(mesh.getGeometry(), nodeDims.i);
  readCoordinates(*m_ownGeometry);
}

FlatMesh::FlatMesh(const KiLineMeshUnstructured& mesh) {
  readExplicit(mesh.getTopology(), VirtualLineCells{&mesh.getTopology()}, numLineCorners);
  readCoordinates(mesh.getGeometry());
}

FlatMesh::FlatMesh(const KiLineMeshRegular& mesh) {
  readRow(mesh.getTopology());
  if (numCells == 0) return;
  m_ownGeometry = std::make_shared<RowGeometry>(mesh.getGeometry().getMin(), mesh.getGeometry().getMax(), numCells);
  readCoordinates(*m_ownGeometry);
}

FlatMesh::FlatMesh(const KiLineMeshCurvilinear& mesh) {
  readRow(mesh.getTopology());
  readCoordinates(mesh.getGeometry());
}

FlatMesh::FlatMesh(const std::vector<std::int64_t>& connectivity, const std::vector<std::int64_t>& offsets,
                   const std::vector<KbVec3<double>>& nodes)
    : numCells(offsets.size() - 1)
    , endNode(nodes.size()) {
  static constexpr std::uint8_t POLYGON = KiSurfaceCell::POLYGON;
  cells = ArrayCellLists<std::int64_t>{
      connectivity.data(), connectivity.size(), offsets.data(), 0, &POLYGON, 0, numSurfaceCorners, 0};
  static_assert(sizeof(KbVec3<double>) == 3 * sizeof(double));
  points.kind = PointView::Kind::DOUBLES;
  points.array = nodes.data();
}

template <class Topology, class VirtualCells>
void FlatMesh::readExplicit(const Topology& topology, const VirtualCells& otherwise,
                            std::size_t (*numCornersOf)(std::size_t, std::size_t)) {
  m_topologyI = &topology;
  numCells = topology.getNumCells();
  beginNode = topology.getBeginNodeId();
  endNode = topology.getEndNodeId();
  readDead(topology);
  cells = otherwise;
  const auto* arrays = dynamic_cast<const KiRawArrays*>(&topology);
  if (!arrays || numCells == 0) return;
  switch (arrays->getRawArray(KiRawArrays::CONNECTIVITY).type) {
  case KiRawArray::INT32:
    makeArrayCells<std::int32_t>(*arrays, numCells, numCornersOf, cells);
    break;
  case KiRawArray::INT64:
    makeArrayCells<std::int64_t>(*arrays, numCells, numCornersOf, cells);
    break;
  default:
    break;
  }
}

void FlatMesh::readGrid(const KiTopologyIj& topology) {
  m_topologyIj = &topology;
  cellDims = {topology.getNumCellsI(), topology.getNumCellsJ(), 1};
  address = {true, {cellDims.i, cellDims.j, 0}};
  numCells = cellDims.count();
  if (numCells > 0) nodeDims = {cellDims.i + 1, cellDims.j + 1, 1}; // a grid without cells asks for no values
  endNode = nodeDims.count();
  points.nodes = nodeDims;
  readDead(topology);
  cells = QuadrangleGrid{cellDims.i};
}

void FlatMesh::readRow(const KiTopologyI& topology) {
  m_topologyI = &topology;
  numCells = topology.getNumCells();
  endNode = numCells > 0 ? numCells + 1 : 0;
  readDead(topology);
  cells = SegmentRow{};
}

void FlatMesh::readDead(const KiTopology& topology) {
  m_hasDeadCells = topology.hasDeadCells();
  const KiRawArray dead = rawArrayOf(dynamic_cast<const KiRawArrays*>(&topology), KiRawArrays::DEAD);
  if (dead.type == KiRawArray::UINT8 && dead.size >= numCells) m_dead = static_cast<const std::uint8_t*>(dead.data);
}

void FlatMesh::readCoordinates(const KiGeometryI& geometry) {
  points.kind = PointView::Kind::GEOMETRY_I;
  points.geometryI = &geometry;
  const KiRawArray array = rawArrayOf(dynamic_cast<const KiRawArrays*>(&geometry), KiRawArrays::COORDINATES);
  if (array.type != KiRawArray::FLOAT32 && array.type != KiRawArray::FLOAT64) return;
  if (numCells > 0 && array.size < 3 * endNode) {
    fault = "the geometry has " + std::to_string(array.size / 3) + " nodes, the topology uses node ids up to " +
            std::to_string(endNode - 1);
    numCells = 0;
    return;
  }
  points.kind = array.type == KiRawArray::FLOAT32 ? PointView::Kind::FLOATS : PointView::Kind::DOUBLES;
  points.array = array.data;
}

bool FlatMesh::isOpen(std::size_t cell) const {
  if (m_topologyI) {
    if (m_hasDeadCells && (m_dead ? m_dead[cell] != 0 : m_topologyI->isDead(cell))) return false;
    return !m_filterI || m_filterI->acceptCell(cell);
  }
  if (m_hasDeadCells && m_dead && m_dead[cell] != 0) return false;
  const bool asksTopology = m_hasDeadCells && !m_dead;
  if (!asksTopology && !m_filterIj) return true;
  const std::size_t i = cell % cellDims.i;
  const std::size_t j = cell / cellDims.i;
  if (asksTopology && m_topologyIj->isDead(i, j)) return false;
  return !m_filterIj || m_filterIj->acceptCell(i, j);
}

} // namespace kx
