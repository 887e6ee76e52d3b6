// SPDX-License-Identifier: BSD-3-Clause
#include "MeshView.h"

#include <KerrinExtractor/KiRawArrays.h>

#include <algorithm>
#include <limits>

namespace kx {
namespace {

const KiRawArrays* rawArraysOf(const KiTopology& topology) { return dynamic_cast<const KiRawArrays*>(&topology); }

KiRawArray ask(const KiRawArrays* arrays, KiRawArrays::Role role) {
  return arrays ? arrays->getRawArray(role) : KiRawArray{};
}

/// The array-backed view of explicit cells; false when the arrays don't fit together (the virtual operations then
/// decide).
template <class Index>
bool makeRawCells(const KiRawArrays& arrays, const KiVolumeTopologyExplicitI* topology, std::size_t numCells,
                  CellView& view) {
  const KiRawArray connectivity = arrays.getRawArray(KiRawArrays::CONNECTIVITY);
  const KiRawArray offsets = arrays.getRawArray(KiRawArrays::OFFSETS);
  const KiRawArray shapes = arrays.getRawArray(KiRawArrays::SHAPES);
  const auto* indices = static_cast<const Index*>(connectivity.data);
  const bool isHexahedronIjk = topology == nullptr;
  if (!isHexahedronIjk && (shapes.type != KiRawArray::UINT8 || (shapes.size != 1 && shapes.size < numCells)))
    return false;
  const auto* codes = static_cast<const std::uint8_t*>(shapes.data);
  if (!offsets) {
    const std::size_t stride = connectivity.size / numCells;
    const CellCode code = isHexahedronIjk ? HEXAHEDRON : codeOf(codes[0], stride);
    const bool isUniform =
        isHexahedronIjk || std::all_of(codes, codes + shapes.size, [&](auto c) { return c == codes[0]; });
    if (!isUniform || code == UNREADABLE || (isHexahedronIjk && stride != 8)) return false;
    view = UniformCells<Index>{indices, stride, code, topology};
    return true;
  }
  if (isHexahedronIjk || offsets.type != connectivity.type || offsets.size < numCells + 1) return false;
  view = MixedCells<Index>{indices, connectivity.size,          static_cast<const Index*>(offsets.data),
                           codes,   shapes.size == 1 ? 0u : 1u, topology};
  return true;
}

bool makeRawCells(const KiTopology& mesh, const KiVolumeTopologyExplicitI* topology, std::size_t numCells,
                  CellView& view) {
  const KiRawArrays* arrays = rawArraysOf(mesh);
  if (!arrays || numCells == 0) return false;
  switch (arrays->getRawArray(KiRawArrays::CONNECTIVITY).type) {
  case KiRawArray::INT32:
    return makeRawCells<std::int32_t>(*arrays, topology, numCells, view);
  case KiRawArray::INT64:
    return makeRawCells<std::int64_t>(*arrays, topology, numCells, view);
  default:
    return false;
  }
}

std::vector<double> equalSteps(double low, double high, std::size_t numNodes) {
  std::vector<double> steps(numNodes);
  for (std::size_t i = 0; i < numNodes; ++i)
    steps[i] = low + (high - low) * (static_cast<double>(i) / static_cast<double>(numNodes - 1));
  return steps;
}

} // namespace

CellCode codeOf(std::size_t shape, std::size_t numNodes) {
  constexpr std::array<std::uint8_t, 8> NUM_NODES{4, 5, 6, 8, 10, 13, 15, 20};
  if (shape == KiVolumeCell::POLYHEDRON) return POLYHEDRON;
  if (shape >= NUM_NODES.size() || numNodes != NUM_NODES[shape]) return UNREADABLE;
  return static_cast<CellCode>(shape % 4);
}

KbVec3<double> PointView::general(std::size_t id) const {
  switch (kind) {
  case Kind::GEOMETRY_I:
    return geometryI->getCoord(id);
  case Kind::CORNERS: {
    const std::size_t slot = id & 7;
    const auto [i, j, k] = nodes.split(id >> CORNER_SLOT_BITS);
    KbVec3<double> own[8];
    corners->getCellCorners(i - (slot & 1), j - (slot >> 1 & 1), k - (slot >> 2), own);
    return own[CORNER_OF_OFFSET[slot]];
  }
  default: {
    const auto [i, j, k] = nodes.split(id);
    if (kind == Kind::GEOMETRY_IJK) return geometryIjk->getCoord(i, j, k);
    return {axes[0][i], axes[1][j], axes[2][k]};
  }
  }
}

CellCode VirtualCells::load(std::size_t cell, CellNodes& nodes) const {
  const KiVolumeCell* c = topology->getCell(cell);
  if (!c) return UNREADABLE;
  const CellCode code = codeOf(c->getShape(), c->getNumNodes());
  if (code < POLYHEDRON)
    for (std::size_t i = 0; i < NUM_CORNERS[code]; ++i)
      nodes[i] = c->getNodeIndex(i);
  return code;
}

CellCode CornerCells::load(std::size_t cell, CellNodes& ids) const {
  const auto [i, j, k] = cells.split(cell);
  // Corners of the neighbours, fetched when first asked for; the cell itself is in the middle.
  std::array<std::array<KbVec3<double>, 8>, 27> corners;
  std::array<bool, 27> isFetched{};
  const auto cornersOf = [&](std::size_t di, std::size_t dj, std::size_t dk) -> const std::array<KbVec3<double>, 8>& {
    const std::size_t n = di + 3 * (dj + 3 * dk);
    if (!isFetched[n]) {
      geometry->getCellCorners(i + di - 1, j + dj - 1, k + dk - 1, corners[n].data());
      isFetched[n] = true;
    }
    return corners[n];
  };
  const auto exists = [](std::size_t index, std::size_t shift, std::size_t count) {
    return index + shift >= 1 && index + shift - 1 < count;
  };
  const std::array<KbVec3<double>, 8> own = cornersOf(1, 1, 1);
  for (std::size_t offset = 0; offset < 8; ++offset) {
    const std::size_t oi = offset & 1;
    const std::size_t oj = offset >> 1 & 1;
    const std::size_t ok = offset >> 2;
    std::size_t slot = 0;
    for (; slot < offset; ++slot) {
      const std::size_t di = 1 + oi - (slot & 1);
      const std::size_t dj = 1 + oj - (slot >> 1 & 1);
      const std::size_t dk = 1 + ok - (slot >> 2);
      if (!exists(i, di, cells.i) || !exists(j, dj, cells.j) || !exists(k, dk, cells.k)) continue;
      if (cornersOf(di, dj, dk)[CORNER_OF_OFFSET[slot]] == own[CORNER_OF_OFFSET[offset]]) break;
    }
    ids[CORNER_OF_OFFSET[offset]] = nodes.flat(i + oi, j + oj, k + ok) << CORNER_SLOT_BITS | slot;
  }
  return HEXAHEDRON;
}

MeshView::MeshView(const KiVolumeMeshUnstructured& mesh)
    : m_topologyI(&mesh.getTopology()) {
  numCells = m_topologyI->getNumCells();
  beginNode = m_topologyI->getBeginNodeId();
  endNode = m_topologyI->getEndNodeId();
  topologyStamp = m_topologyI->getTimeStamp();
  readDead(*m_topologyI);
  if (!makeRawCells(*m_topologyI, m_topologyI, numCells, cells)) cells = VirtualCells{m_topologyI};
  points.geometryI = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_I);
}

MeshView::MeshView(const KiVolumeMeshHexahedronIjk& mesh) {
  const KiHexahedronTopologyExplicitIjk& topology = mesh.getTopology();
  setStructured(topology);
  beginNode = topology.getBeginNodeId();
  endNode = topology.getEndNodeId();
  if (!makeRawCells(topology, nullptr, numCells, cells)) cells = HexahedronIjkCells{&topology, cellDims};
  points.geometryI = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_I);
}

MeshView::MeshView(const KiVolumeMeshVertexHexahedronIjk& mesh) {
  readGrid(mesh.getTopology());
  slotBits = CORNER_SLOT_BITS;
  points.corners = &mesh.getGeometry();
  points.kind = PointView::Kind::CORNERS;
  geometryStamp = mesh.getGeometry().getTimeStamp();
  cells = CornerCells{&mesh.getGeometry(), cellDims, nodeDims};
}

MeshView::MeshView(const KiVolumeMeshRegular& mesh) {
  readGrid(mesh.getTopology());
  const KbVec3<double> low = mesh.getGeometry().getMin();
  const KbVec3<double> high = mesh.getGeometry().getMax();
  points.kind = PointView::Kind::AXES;
  geometryStamp = mesh.getGeometry().getTimeStamp();
  if (numCells == 0) return;
  points.axes = {equalSteps(low[0], high[0], nodeDims.i), equalSteps(low[1], high[1], nodeDims.j),
                 equalSteps(low[2], high[2], nodeDims.k)};
}

MeshView::MeshView(const KiVolumeMeshRectilinear& mesh) {
  readGrid(mesh.getTopology());
  const KiVolumeGeometryRectilinear& geometry = mesh.getGeometry();
  points.kind = PointView::Kind::AXES;
  geometryStamp = geometry.getTimeStamp();
  if (numCells == 0) return;
  for (std::size_t i = 0; i < nodeDims.i; ++i)
    points.axes[0].push_back(geometry.getX(i));
  for (std::size_t j = 0; j < nodeDims.j; ++j)
    points.axes[1].push_back(geometry.getY(j));
  for (std::size_t k = 0; k < nodeDims.k; ++k)
    points.axes[2].push_back(geometry.getZ(k));
}

MeshView::MeshView(const KiVolumeMeshCurvilinear& mesh) {
  readGrid(mesh.getTopology());
  points.geometryIjk = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_IJK);
}

void MeshView::setStructured(const KiTopologyIjk& topology) {
  m_topologyIjk = &topology;
  isStructured = true;
  cellDims = {topology.getNumCellsI(), topology.getNumCellsJ(), topology.getNumCellsK()};
  numCells = cellDims.count();
  topologyStamp = topology.getTimeStamp();
  readDead(topology);
}

void MeshView::readGrid(const KiTopologyIjk& topology) {
  setStructured(topology);
  hasGridNodes = true;
  nodeDims = {cellDims.i + 1, cellDims.j + 1, cellDims.k + 1};
  endNode = nodeDims.count();
  points.nodes = nodeDims;
  cells = GridCells{cellDims, nodeDims};
}

void MeshView::readDead(const KiTopology& topology) {
  m_hasDeadCells = topology.hasDeadCells();
  const KiRawArray dead = ask(rawArraysOf(topology), KiRawArrays::DEAD);
  if (dead.type == KiRawArray::UINT8 && dead.size >= numCells) m_dead = static_cast<const std::uint8_t*>(dead.data);
}

void MeshView::readCoordinates(const KiGeometry& geometry, PointView::Kind otherwise) {
  geometryStamp = geometry.getTimeStamp();
  points.kind = otherwise;
  const KiRawArray array = ask(dynamic_cast<const KiRawArrays*>(&geometry), KiRawArrays::COORDINATES);
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

bool MeshView::isOpen(std::size_t cell) const {
  if (m_topologyI) {
    if (m_hasDeadCells && (m_dead ? m_dead[cell] != 0 : m_topologyI->isDead(cell))) return false;
    return !m_filterI || m_filterI->acceptCell(cell);
  }
  if (m_hasDeadCells && m_dead && m_dead[cell] != 0) return false;
  const bool asksTopology = m_hasDeadCells && !m_dead;
  if (!asksTopology && !m_filterIjk) return true;
  const auto [i, j, k] = cellDims.split(cell);
  if (asksTopology && m_topologyIjk->isDead(i, j, k)) return false;
  return !m_filterIjk || m_filterIjk->acceptCell(i, j, k);
}

bool MeshView::loadPolyhedron(std::size_t cell, std::vector<std::vector<std::size_t>>& faces,
                              std::vector<std::size_t>& nodes) const {
  const KiVolumeCell* c = m_topologyI ? m_topologyI->getCell(cell) : nullptr;
  if (!c || c->getNumFacets() < 4) return false;
  nodes.resize(c->getNumNodes());
  for (std::size_t i = 0; i < nodes.size(); ++i)
    nodes[i] = c->getNodeIndex(i);
  faces.resize(c->getNumFacets());
  for (std::size_t f = 0; f < faces.size(); ++f) {
    c->getFacet(f, faces[f]);
    for (const std::size_t local : faces[f])
      if (local >= nodes.size()) return false;
  }
  return true;
}

} // namespace kx
