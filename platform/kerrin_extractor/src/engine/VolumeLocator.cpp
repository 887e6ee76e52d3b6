// SPDX-License-Identifier: BSD-3-Clause
#include "VolumeLocator.h"

#include "FinitePosition.h"
#include "NodeBounds.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace kx {
namespace {

using Vec3 = KbVec3<double>;

constexpr double BOX_MARGIN = 1e-8;    ///< of the diagonal: covers `INSIDE_TOLERANCE`
constexpr double CURVED_MARGIN = 0.25; ///< a quarter of the diagonal covers every convex bulge of a quadratic cell

// The number of nodes of a cell, which tells quadratic cells from linear ones.
template <class Index>
std::size_t numNodesOf(const UniformCells<Index>& cells, std::size_t) {
  return cells.stride;
}
template <class Index>
std::size_t numNodesOf(const MixedCells<Index>& cells, std::size_t cell) {
  return static_cast<std::size_t>(cells.offsets[cell + 1] - cells.offsets[cell]);
}
std::size_t numNodesOf(const VirtualCells& cells, std::size_t cell) {
  return cells.topology->getCell(cell)->getNumNodes();
}
std::size_t numNodesOf(const HexahedronIjkCells&, std::size_t) { return 8; }
std::size_t numNodesOf(const GridCells&, std::size_t) { return 8; }
std::size_t numNodesOf(const CornerCells&, std::size_t) { return 8; }

template <class Cells>
const KiVolumeTopologyExplicitI* topologyOf(const Cells& cells) {
  if constexpr (
      requires { cells.geometry; } || requires { cells.cells; })
    return nullptr;
  else
    return cells.topology;
}

/// The box of a linear cell, by positions of three `Scalar`s. Empty, and the reason told, where there is none.
template <class Scalar, class PointAt>
Box cornerBox(const MeshView& mesh, std::size_t cell, const CellNodes& corners, std::size_t numCorners,
              const PointAt& pointAt, Faults& faults) {
  std::size_t greatest = 0;
  for (std::size_t c = 0; c < numCorners; ++c)
    greatest = std::max(greatest, (corners[c] >> mesh.slotBits) - mesh.beginNode);
  if (greatest >= mesh.numNodes()) {
    faults.add(Faults::NODE_OUT_OF_RANGE, cell);
    return {};
  }
  constexpr Scalar INFINITE = std::numeric_limits<Scalar>::infinity();
  std::array<Scalar, 3> low{INFINITE, INFINITE, INFINITE};
  std::array<Scalar, 3> high{-INFINITE, -INFINITE, -INFINITE};
  Scalar notFinite = 0; // becomes NaN
  for (std::size_t c = 0; c < numCorners; ++c) {
    const auto& p = pointAt(corners[c]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const Scalar x = p[axis];
      low[axis] = std::min(low[axis], x);
      high[axis] = std::max(high[axis], x);
      notFinite += x - x;
    }
  }
  Box box;
  double margin = 0.0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    box.low[axis] = static_cast<double>(low[axis]);
    box.high[axis] = static_cast<double>(high[axis]);
    margin += BOX_MARGIN * (box.high[axis] - box.low[axis]);
  }
  if (!(notFinite == 0) || !isFinite(box.low) || !isFinite(box.high)) {
    faults.add(Faults::COORDINATE_NOT_FINITE, cell);
    return {};
  }
  box.grow(margin);
  return box;
}

/// Where a coordinate lies among the ascending or descending positions along an axis: in one interval, or in two when
/// it is the position between them.
struct AxisPlace {
  std::size_t index[2];
  double fraction[2];
  std::size_t count = 0;

  AxisPlace(const std::vector<double>& axis, double x) {
    const std::size_t last = axis.size() - 2;
    const bool isAscending = axis.back() >= axis.front();
    const auto upper = isAscending ? std::upper_bound(axis.begin(), axis.end(), x)
                                   : std::upper_bound(axis.begin(), axis.end(), x, std::greater<>());
    const auto above = static_cast<std::size_t>(upper - axis.begin());
    const std::size_t middle = above == 0 ? 0 : std::min(above - 1, last);
    for (std::size_t i = middle == 0 ? 0 : middle - 1; i <= std::min(middle + 1, last); ++i) {
      const double position = (x - axis[i]) / (axis[i + 1] - axis[i]);
      if (!(position >= -INSIDE_TOLERANCE && position <= 1.0 + INSIDE_TOLERANCE) || count == 2) continue;
      index[count] = i;
      fraction[count] = std::clamp(position, 0.0, 1.0);
      ++count;
    }
  }
};

} // namespace

Changes VolumeLocator::getChanges() const {
  const auto [topology, geometry] = m_readStamps();
  return {!m_isReady || geometry != m_stamps.second, !m_isReady || topology != m_stamps.first, false};
}

std::size_t VolumeLocator::numPhases(const Changes& changes) const {
  const bool hasWork = changes.geometry || changes.topology;
  return hasWork && !m_hasAxes ? CellBins::NUM_PHASES + 1 : 0;
}

void VolumeLocator::update(Run& run, const Changes& changes, Faults& faults) {
  if (!changes.geometry && !changes.topology) return;
  m_isReady = false;
  m_bins.clear();
  m_stamps = m_readStamps();
  m_mesh.emplace(m_makeView());
  m_topology = std::visit([](const auto& cells) { return topologyOf(cells); }, m_mesh->cells);
  if (!m_mesh->fault.empty()) faults.post(m_mesh->fault);
  if (m_hasAxes) {
    if (m_mesh->numCells > 0 && !checkAxes(faults)) m_mesh->numCells = 0;
    m_reach = {};
    if (m_mesh->numCells > 0) {
      m_reach.add(m_mesh->points[0]);
      m_reach.add(m_mesh->points[m_mesh->endNode - 1]);
    }
  } else {
    m_hasGeneralCells = false;
    m_reach = findBounds(run, m_mesh->points, m_mesh->beginNode, m_mesh->numCells > 0 ? m_mesh->numNodes() : 0);
    m_bins.build(run, m_mesh->numCells, m_reach,
                 [&](std::size_t begin, std::size_t end, Box* boxes) { findBoxes(begin, end, boxes, faults); });
    m_reach.grow(m_reach.diagonal() * (m_hasGeneralCells ? CURVED_MARGIN : BOX_MARGIN));
  }
  m_isReady = true;
}

bool VolumeLocator::checkAxes(Faults& faults) const {
  static constexpr std::array<const char*, 3> NAMES{"x", "y", "z"};
  for (std::size_t a = 0; a < 3; ++a) {
    const std::vector<double>& axis = m_mesh->points.axes[a];
    const double sign = axis.back() >= axis.front() ? 1.0 : -1.0;
    for (std::size_t i = 0; i + 1 < axis.size(); ++i)
      if (!(sign * (axis[i + 1] - axis[i]) >= 0.0) || !isFinite({axis[i], axis[i + 1], 0.0})) {
        faults.post(std::string("the positions along ") + NAMES[a] + " do not ascend at index " +
                    std::to_string(i + 1) + "; no cell is found");
        return false;
      }
  }
  return true;
}

bool VolumeLocator::isGeneral(std::size_t cell) const {
  if (!m_topology) return false;
  return std::visit(
      [&](const auto& cells) {
        const std::size_t numNodes = numNodesOf(cells, cell);
        if (numNodes > 8 || numNodes < 4 || numNodes == 7) return true;
        CellNodes nodes;
        return cells.load(cell, nodes) == POLYHEDRON;
      },
      m_mesh->cells);
}

void VolumeLocator::findBoxes(std::size_t begin, std::size_t end, Box* boxes, Faults& faults) {
  const MeshView& mesh = *m_mesh;
  const bool hasClosedCells = mesh.hasClosedCells();
  const auto findAll = [&]<class Scalar>(const auto& cells, const auto& pointAt) {
    for (std::size_t cell = begin; cell < end; ++cell) {
      Box& box = boxes[cell - begin];
      box = {};
      if (hasClosedCells && !mesh.isOpen(cell)) continue;
      CellNodes corners;
      const CellCode code = cells.load(cell, corners);
      if (code == UNREADABLE)
        faults.add(Faults::UNREADABLE_CELL, cell);
      else if (code == POLYHEDRON || numNodesOf(cells, cell) != NUM_CORNERS[code])
        box = generalBox(cell, code, faults);
      else
        box = cornerBox<Scalar>(mesh, cell, corners, NUM_CORNERS[code], pointAt, faults);
    }
  };
  std::visit(
      [&](const auto& cells) {
        if (mesh.points.kind == PointView::Kind::FLOATS) {
          const auto* array = static_cast<const float*>(mesh.points.array);
          findAll.template operator()<float>(cells, [array](std::size_t id) { return array + 3 * id; });
        } else {
          findAll.template operator()<double>(cells, [&](std::size_t id) { return mesh.points[id]; });
        }
      },
      mesh.cells);
}

Box VolumeLocator::generalBox(std::size_t cell, CellCode code, Faults& faults) {
  m_hasGeneralCells.store(true, std::memory_order_relaxed);
  const KiVolumeCell* general = m_topology->getCell(cell);
  Box box;
  for (std::size_t i = 0; i < general->getNumNodes(); ++i) {
    const std::size_t node = general->getNodeIndex(i);
    if (!m_mesh->hasNode(node)) {
      faults.add(Faults::NODE_OUT_OF_RANGE, cell);
      return {};
    }
    const Vec3 p = m_mesh->points[node];
    if (!isFinite(p)) {
      faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return {};
    }
    box.add(p);
  }
  box.grow(box.diagonal() * (code == POLYHEDRON ? BOX_MARGIN : CURVED_MARGIN));
  return box;
}

bool VolumeLocator::find(const Vec3& point, CellHit& hit) const {
  hit.cell = CellHit::NO_CELL;
  if (!m_isReady || m_mesh->numCells == 0) return false;
  if (m_hasAxes) return findOnAxes(point, hit);
  for (std::size_t axis = 0; axis < 3; ++axis)
    if (!(point[axis] >= m_reach.low[axis] && point[axis] <= m_reach.high[axis])) return false;
  const bool isClosable = m_mesh->hasClosedCells();
  hit.cell = m_bins.find(
      point, [&](std::size_t cell) { return (!isClosable || m_mesh->isOpen(cell)) && findInCell(cell, point, hit); });
  return hit.isFound();
}

std::vector<std::uint32_t> VolumeLocator::orderOf(const Vec3* points, std::uint32_t count) const {
  if (!m_hasAxes) return m_bins.orderOf(points, count);
  std::vector<std::uint32_t> order(count);
  std::iota(order.begin(), order.end(), 0u);
  return order;
}

bool VolumeLocator::findNear(const Vec3& point, CellHit& hit) const {
  if (hit.isFound() && hit.mappedCell == hit.cell && hit.map.invert(point, hit.position)) {
    hit.map.getWeights(hit.position, hit.cornerWeights);
    return true;
  }
  hit.mappedCell = CellHit::NO_CELL;
  return find(point, hit);
}

bool VolumeLocator::findOnAxes(const Vec3& point, CellHit& hit) const {
  const auto& axes = m_mesh->points.axes;
  const std::array<AxisPlace, 3> places{AxisPlace(axes[0], point[0]), AxisPlace(axes[1], point[1]),
                                        AxisPlace(axes[2], point[2])};
  for (std::size_t k = 0; k < places[2].count; ++k)
    for (std::size_t j = 0; j < places[1].count; ++j)
      for (std::size_t i = 0; i < places[0].count; ++i) {
        const std::size_t cell = m_mesh->cellDims.flat(places[0].index[i], places[1].index[j], places[2].index[k]);
        if (m_mesh->hasClosedCells() && !m_mesh->isOpen(cell)) continue;
        hit.cell = cell;
        hit.numCorners = 8;
        GridCells{m_mesh->cellDims, m_mesh->nodeDims}.load(cell, hit.corners);
        const double r = places[0].fraction[i];
        const double s = places[1].fraction[j];
        const double t = places[2].fraction[k];
        const double base[4] = {(1.0 - r) * (1.0 - s), r * (1.0 - s), r * s, (1.0 - r) * s};
        for (std::size_t c = 0; c < 4; ++c) {
          hit.cornerWeights[c] = base[c] * (1.0 - t);
          hit.cornerWeights[c + 4] = base[c] * t;
        }
        return true;
      }
  return false;
}

bool VolumeLocator::findInCell(std::size_t cell, const Vec3& point, CellHit& hit) const {
  if (m_hasGeneralCells.load(std::memory_order_relaxed) && isGeneral(cell)) return findInGeneralCell(cell, point, hit);
  std::array<Vec3, 8> p;
  const CellCode code = std::visit([&](const auto& cells) { return cells.load(cell, hit.corners); }, m_mesh->cells);
  for (std::size_t i = 0; i < NUM_CORNERS[code]; ++i)
    p[i] = m_mesh->points[hit.corners[i]];
  hit.map = CellMap(code, p);
  hit.mappedCell = cell;
  hit.position = hit.map.centre();
  if (!hit.map.invert(point, hit.position)) return false;
  hit.numCorners = NUM_CORNERS[code];
  hit.map.getWeights(hit.position, hit.cornerWeights);
  return true;
}

void VolumeLocator::loadNodes(std::size_t cell, CellHit& hit) const {
  hit.cell = cell;
  if (m_hasGeneralCells.load(std::memory_order_relaxed) && isGeneral(cell)) {
    const KiVolumeCell* general = m_topology->getCell(cell);
    hit.numCorners = 0;
    hit.nodes.resize(general->getNumNodes());
    for (std::size_t i = 0; i < hit.nodes.size(); ++i)
      hit.nodes[i] = general->getNodeIndex(i);
    return;
  }
  const CellCode code = std::visit([&](const auto& cells) { return cells.load(cell, hit.corners); }, m_mesh->cells);
  hit.numCorners = NUM_CORNERS[code];
}

Box VolumeLocator::cellBox(std::size_t cell) const {
  Box box;
  CellHit hit;
  loadNodes(cell, hit);
  for (std::size_t i = 0; i < hit.numNodes(); ++i)
    box.add(m_mesh->points[hit.node(i)]);
  return box;
}

bool VolumeLocator::findInGeneralCell(std::size_t cell, const Vec3& point, CellHit& hit) const {
  const KiVolumeCell* general = m_topology->getCell(cell);
  if (!general->isPointInsideCell(*m_mesh->points.geometryI, point, hit.weights)) return false;
  loadNodes(cell, hit);
  return true;
}

} // namespace kx
