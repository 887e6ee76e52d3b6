// SPDX-License-Identifier: BSD-3-Clause
#include "FlatMesh.h"

#include "FlatForms.h"

#include <cmath>

namespace kx {
namespace {

/// The array-backed view; false when the arrays don't fit together (the virtual operations then decide).
template <class Index>
bool makeArrayCells(const RawCells& raw, const Index* indices, std::size_t numCells,
                    std::size_t (*numCornersOf)(std::size_t, std::size_t), CellListView& view) {
  if (!raw.hasShapesOf(numCells) || (raw.offsets && !raw.hasOffsetsOf(numCells))) return false;
  const std::uint8_t* codes = raw.codes();
  const std::size_t stride = raw.connectivity.size / numCells;
  view = ArrayCellLists<Index>{indices,
                               raw.connectivity.size,
                               static_cast<const Index*>(raw.offsets.data),
                               stride,
                               codes,
                               raw.shapes.size == 1 ? 0u : 1u,
                               numCornersOf,
                               !raw.offsets && raw.shapes.size == 1 ? numCornersOf(codes[0], stride) : 0};
  return true;
}

template <class Cell>
void loadVirtual(const Cell* cell, std::size_t (*numCornersOf)(std::size_t, std::size_t), CellNodeList& nodes) {
  if (!cell) {
    nodes.set(0, 0, 0);
    return;
  }
  nodes.set(cell->getNumNodes(), numCornersOf(cell->getShape(), cell->getNumNodes()), cell->getShape());
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

/// A rectangle of equal cells across the first or the second axis.
class UprightGeometry final : public KiGeometryI {
public:
  UprightGeometry(const KbVec3<double>& low, const KbVec3<double>& high, std::size_t across, const Dims& nodes)
      : m_low(low)
      , m_numI(nodes.i) {
    const std::size_t first = across == 0 ? 1 : 0;
    m_stepI[first] = (high[first] - low[first]) / static_cast<double>(nodes.i - 1);
    m_stepJ[2] = (high[2] - low[2]) / static_cast<double>(nodes.j - 1);
  }
  std::size_t getTimeStamp() const override { return 0; }
  KbVec3<double> getCoord(std::size_t node) const override {
    return m_low + m_stepI * static_cast<double>(node % m_numI) + m_stepJ * static_cast<double>(node / m_numI);
  }

private:
  KbVec3<double> m_low;
  KbVec3<double> m_stepI;
  KbVec3<double> m_stepJ;
  std::size_t m_numI;
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
  readPositions(mesh.getGeometry());
}

FlatMesh::FlatMesh(const KiSurfaceMeshRegular& mesh) {
  readQuadrangles(mesh.getTopology());
  if (numCells == 0) return;
  const KbVec3<double> low = mesh.getGeometry().getMin();
  const KbVec3<double> high = mesh.getGeometry().getMax();
  std::size_t across = 2;
  for (const std::size_t axis : {1, 0})
    if (std::abs(high[axis] - low[axis]) < std::abs(high[across] - low[across])) across = axis;
  if (across == 2) {
    points.setAxes(low, high);
  } else {
    m_ownGeometry = std::make_shared<UprightGeometry>(low, high, across, nodeDims);
    readPositions(*m_ownGeometry);
  }
}

FlatMesh::FlatMesh(const KiSurfaceMeshRectilinear& mesh) {
  readQuadrangles(mesh.getTopology());
  if (numCells == 0) return;
  const KiSurfaceGeometryRectilinear& geometry = mesh.getGeometry();
  if (!(geometry.getNormal() == KbVec3<double>(0.0, 0.0, 1.0))) {
    m_ownGeometry = std::make_shared<TiltedGeometry>(geometry, nodeDims.i);
    readPositions(*m_ownGeometry);
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
  readQuadrangles(mesh.getTopology());
  m_ownGeometry = std::make_shared<FlatGeometryIj>(mesh.getGeometry(), nodeDims.i);
  readPositions(*m_ownGeometry);
}

FlatMesh::FlatMesh(const KiLineMeshUnstructured& mesh) {
  readExplicit(mesh.getTopology(), VirtualLineCells{&mesh.getTopology()}, numLineCorners);
  readPositions(mesh.getGeometry());
}

FlatMesh::FlatMesh(const KiLineMeshRegular& mesh) {
  readRow(mesh.getTopology());
  if (numCells == 0) return;
  m_ownGeometry = std::make_shared<RowGeometry>(mesh.getGeometry().getMin(), mesh.getGeometry().getMax(), numCells);
  readPositions(*m_ownGeometry);
}

FlatMesh::FlatMesh(const KiLineMeshCurvilinear& mesh) {
  readRow(mesh.getTopology());
  readPositions(mesh.getGeometry());
}

FlatMesh::FlatMesh(const std::vector<std::int64_t>& connectivity, const std::vector<std::int64_t>& offsets,
                   const std::vector<KbVec3<double>>& nodes) {
  numCells = offsets.size() - 1;
  endNode = nodes.size();
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
  readTopology(topology);
  beginNode = topology.getBeginNodeId();
  endNode = topology.getEndNodeId();
  cells = otherwise;
  const RawCells raw(topology);
  if (numCells > 0)
    raw.visitIndices([&](const auto* indices) { return makeArrayCells(raw, indices, numCells, numCornersOf, cells); });
}

void FlatMesh::readQuadrangles(const KiTopologyIj& topology) {
  readGrid(topology);
  if (numCells > 0) nodeDims = {cellDims.i + 1, cellDims.j + 1, 1}; // a grid without cells asks for no values
  endNode = nodeDims.count();
  points.nodes = nodeDims;
  cells = QuadrangleGrid{cellDims.i};
}

void FlatMesh::readRow(const KiTopologyI& topology) {
  readTopology(topology);
  endNode = numCells > 0 ? numCells + 1 : 0;
  cells = SegmentRow{};
}

void FlatMesh::readPositions(const KiGeometryI& geometry) {
  points.geometryI = &geometry;
  readCoordinates(geometry, PointView::Kind::GEOMETRY_I);
}

} // namespace kx
