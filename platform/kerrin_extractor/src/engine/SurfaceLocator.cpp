// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceLocator.h"

#include "FinitePosition.h"
#include "NodeBounds.h"

#include "src/contract/MeanValue.h"
#include "src/contract/ShapeFunctions.h"

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

using Vec3 = KbVec3<double>;

constexpr double CURVED_MARGIN = 0.25; ///< of the diagonal: covers every convex bulge of a quadratic cell

/// The nearest position of a point in a triangle's or quadrangle's reference coordinates, by the Gauss-Newton method.
/// False when it lies outside, or the cell has no area.
bool project(bool isTriangle, const std::vector<Vec3>& p, const Vec3& point, Vec3& x) {
  const Vec3 a1 = p[1] - p[0];
  const Vec3 a2 = (isTriangle ? p[2] : p[3]) - p[0];
  const Vec3 a3 = isTriangle ? Vec3(0.0) : p[0] - p[1] + p[2] - p[3];
  x = isTriangle ? Vec3(1.0 / 3.0, 1.0 / 3.0, 0.0) : Vec3(0.5, 0.5, 0.0);
  for (int i = 0; i < 50; ++i) {
    const Vec3 dr = a1 + a3 * x[1];
    const Vec3 ds = a2 + a3 * x[0];
    const Vec3 residual = point - (p[0] + a1 * x[0] + ds * x[1]);
    const double rr = dr.squaredLength();
    const double ss = ds.squaredLength();
    const double rs = dr.dot(ds);
    const double determinant = rr * ss - rs * rs;
    if (!(determinant > 1e-14 * rr * ss)) return false;
    const double r = dr.dot(residual);
    const double s = ds.dot(residual);
    Vec3 step((r * ss - s * rs) / determinant, (s * rr - r * rs) / determinant, 0.0);
    const double length = std::max(std::abs(step[0]), std::abs(step[1]));
    if (length > 1.0) step /= length;
    x += step;
    if (length > 1e-9) continue;
    const double limit = 1.0 + INSIDE_TOLERANCE;
    if (x[0] < -INSIDE_TOLERANCE || x[1] < -INSIDE_TOLERANCE) return false;
    return isTriangle ? x[0] + x[1] <= limit : x[0] <= limit && x[1] <= limit;
  }
  return false;
}

} // namespace

Changes SurfaceLocator::getChanges() const {
  const auto [topology, geometry] = m_readStamps();
  return {!m_isReady || geometry != m_stamps.second, !m_isReady || topology != m_stamps.first, false};
}

std::size_t SurfaceLocator::numPhases(const Changes& changes) const {
  return changes.geometry || changes.topology ? CellBins::NUM_PHASES + 1 : 0;
}

void SurfaceLocator::update(Run& run, const Changes& changes, Faults& faults) {
  if (!changes.geometry && !changes.topology) return;
  m_isReady = false;
  m_bins.clear();
  m_stamps = m_readStamps();
  m_mesh.emplace(m_makeView());
  if (!m_mesh->fault.empty()) faults.post(m_mesh->fault);
  const Box bounds = findBounds(run, m_mesh->points, m_mesh->beginNode, m_mesh->numCells > 0 ? m_mesh->numNodes() : 0);
  m_tolerance = TOLERANCE * bounds.diagonal();
  m_bins.build(run, m_mesh->numCells, bounds, [&](std::size_t begin, std::size_t end, Box* boxes) {
    for (std::size_t cell = begin; cell < end; ++cell)
      boxes[cell - begin] = boxOf(cell, faults);
  });
  m_isReady = true;
}

Box SurfaceLocator::boxOf(std::size_t cell, Faults& faults) const {
  Box box;
  if (!m_mesh->isOpen(cell)) return box;
  thread_local CellNodeList nodes;
  if (!load(cell, nodes)) {
    faults.add(Faults::UNREADABLE_CELL, cell);
    return box;
  }
  if (!m_mesh->hasValidNodes(nodes)) {
    faults.add(Faults::NODE_OUT_OF_RANGE, cell);
    return box;
  }
  for (std::size_t i = 0; i < nodes.numNodes; ++i) {
    const Vec3 p = m_mesh->points[nodes.ids[i]];
    if (!isFinite(p)) {
      faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return {};
    }
    box.add(p);
  }
  box.grow(m_tolerance * 1.01 + (nodes.isQuadratic() ? CURVED_MARGIN * box.diagonal() : 0.0));
  return box;
}

bool SurfaceLocator::load(std::size_t cell, CellNodeList& nodes) const {
  std::visit([&](const auto& cells) { cells.load(cell, nodes); }, m_mesh->cells);
  return nodes.numCorners > 0;
}

std::vector<std::uint32_t> SurfaceLocator::orderOf(const KbVec3<double>* points, std::uint32_t count) const {
  return m_bins.orderOf(points, count);
}

bool SurfaceLocator::find(const Vec3& point, CellHit& hit) const {
  hit.cell = CellHit::NO_CELL;
  if (!m_isReady || !isFinite(point)) return false;
  hit.cell = m_bins.find(point, [&](std::size_t cell) { return m_mesh->isOpen(cell) && findInCell(cell, point, hit); });
  return hit.isFound();
}

bool SurfaceLocator::findInCell(std::size_t cell, const Vec3& point, CellHit& hit) const {
  thread_local CellNodeList nodes;
  if (!load(cell, nodes)) return false;
  hit.numCorners = 0;
  hit.nodes.assign(nodes.ids.begin(), nodes.ids.begin() + static_cast<std::ptrdiff_t>(nodes.numNodes));
  thread_local std::vector<Vec3> p;
  p.resize(hit.nodes.size());
  for (std::size_t i = 0; i < p.size(); ++i)
    p[i] = m_mesh->points[hit.nodes[i]];
  Vec3 x;
  Vec3 foot;
  switch (nodes.shape) {
  case KiSurfaceCell::TRIANGLE:
    if (!project(true, p, point, x)) return false;
    hit.weights = {1.0 - x[0] - x[1], x[0], x[1]};
    break;
  case KiSurfaceCell::QUADRANGLE:
    if (!project(false, p, point, x)) return false;
    hit.weights = {(1.0 - x[0]) * (1.0 - x[1]), x[0] * (1.0 - x[1]), x[0] * x[1], (1.0 - x[0]) * x[1]};
    break;
  case KiSurfaceCell::POLYGON: {
    const Vec3 normal = polygonNormal(p).normalized();
    Vec3 centre;
    for (const Vec3& corner : p)
      centre += corner / static_cast<double>(p.size());
    foot = point - normal * normal.dot(point - centre);
    if (!isInsidePolygon(p, normal, foot)) return false;
    polygonWeights(p, foot, hit.weights);
    break;
  }
  default: {
    const ReferenceShape reference = nodes.shape == KiSurfaceCell::QUADRATIC_TRIANGLE
                                         ? ReferenceShape::QUADRATIC_TRIANGLE
                                         : ReferenceShape::QUADRATIC_QUADRANGLE;
    if (!invertShape(reference, p.data(), point, x)) return false;
    const ShapeValues n = evaluateShape(reference, x);
    hit.weights.assign(n.value.begin(), n.value.begin() + static_cast<std::ptrdiff_t>(p.size()));
  }
  }
  foot = Vec3(0.0);
  for (std::size_t i = 0; i < p.size(); ++i)
    foot += p[i] * hit.weights[i];
  return (point - foot).length() <= m_tolerance;
}

} // namespace kx
