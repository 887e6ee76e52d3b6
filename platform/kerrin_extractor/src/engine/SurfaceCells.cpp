// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceCells.h"

#include <cmath>

namespace kx {

using Vec3 = KbVec3<double>;

SurfaceCells::SurfaceCells(const KiSurfaceMeshUnstructured& mesh)
    : m_topologyI(&mesh.getTopology())
    , m_geometryI(&mesh.getGeometry()) {
  numCells = m_topologyI->getNumCells();
  beginNode = m_topologyI->getBeginNodeId();
  endNode = m_topologyI->getEndNodeId();
  m_hasDeadCells = m_topologyI->hasDeadCells();
}

SurfaceCells::SurfaceCells(const KiSurfaceMeshRegular& mesh) {
  setStructured(mesh.getTopology());
  const Vec3 low = mesh.getGeometry().getMin();
  const Vec3 high = mesh.getGeometry().getMax();
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const std::size_t numSteps = axis == 0 ? cellDims.i : cellDims.j;
    for (std::size_t n = 0; n <= numSteps && numSteps > 0; ++n)
      m_axes[axis].push_back(low[axis] +
                             (high[axis] - low[axis]) * (static_cast<double>(n) / static_cast<double>(numSteps)));
  }
  setPlane({0, 0, 1}, low[2]);
}

SurfaceCells::SurfaceCells(const KiSurfaceMeshRectilinear& mesh) {
  setStructured(mesh.getTopology());
  const KiSurfaceGeometryRectilinear& geometry = mesh.getGeometry();
  for (std::size_t i = 0; i < nodeDims.i && numCells > 0; ++i)
    m_axes[0].push_back(geometry.getX(i));
  for (std::size_t j = 0; j < nodeDims.j && numCells > 0; ++j)
    m_axes[1].push_back(geometry.getY(j));
  setPlane(geometry.getNormal().normalized(), geometry.getDistance());
}

SurfaceCells::SurfaceCells(const KiSurfaceMeshCurvilinear& mesh)
    : m_geometryIj(&mesh.getGeometry()) {
  setStructured(mesh.getTopology());
}

void SurfaceCells::setStructured(const KiTopologyIj& topology) {
  m_topologyIj = &topology;
  isStructured = true;
  cellDims = {topology.getNumCellsI(), topology.getNumCellsJ(), 1};
  numCells = cellDims.count();
  nodeDims = {cellDims.i + 1, cellDims.j + 1, 1};
  endNode = nodeDims.count();
  m_hasDeadCells = topology.hasDeadCells();
}

void SurfaceCells::setPlane(const Vec3& n, double distance) {
  m_origin = n * distance;
  // The shortest turn of z to n (Rodrigues' formula), and half a turn around x when they are opposite.
  if (n[2] <= -1.0 + 1e-12) {
    m_directions = {Vec3(1, 0, 0), Vec3(0, -1, 0)};
    return;
  }
  const double f = 1.0 / (1.0 + n[2]);
  m_directions = {Vec3(1.0 - n[0] * n[0] * f, -n[0] * n[1] * f, -n[0]),
                  Vec3(-n[0] * n[1] * f, 1.0 - n[1] * n[1] * f, -n[1])};
}

bool SurfaceCells::isOpen(std::size_t cell) const {
  if (m_topologyI) return !(m_hasDeadCells && m_topologyI->isDead(cell)) && (!m_filterI || m_filterI->acceptCell(cell));
  const std::size_t i = cell % cellDims.i;
  const std::size_t j = cell / cellDims.i;
  return !(m_hasDeadCells && m_topologyIj->isDead(i, j)) && (!m_filterIj || m_filterIj->acceptCell(i, j));
}

bool SurfaceCells::load(std::size_t cell, std::vector<std::size_t>& nodes, KiSurfaceCell::Shape& shape) const {
  if (m_topologyI) {
    const KiSurfaceCell* c = m_topologyI->getCell(cell);
    if (!c || c->getNumNodes() < 3) return false;
    shape = c->getShape();
    nodes.resize(c->getNumNodes());
    for (std::size_t i = 0; i < nodes.size(); ++i)
      nodes[i] = c->getNodeIndex(i);
    return true;
  }
  shape = KiSurfaceCell::QUADRANGLE;
  const std::size_t node = nodeDims.flat(cell % cellDims.i, cell / cellDims.i, 0);
  nodes = {node, node + 1, node + 1 + nodeDims.i, node + nodeDims.i};
  return true;
}

Vec3 SurfaceCells::point(std::size_t node) const {
  if (m_geometryI) return m_geometryI->getCoord(node);
  const std::size_t i = node % nodeDims.i;
  const std::size_t j = node / nodeDims.i;
  if (m_geometryIj) return m_geometryIj->getCoord(i, j);
  return m_origin + m_directions[0] * m_axes[0][i] + m_directions[1] * m_axes[1][j];
}

} // namespace kx
