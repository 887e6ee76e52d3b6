// SPDX-License-Identifier: BSD-3-Clause
// Structured topologies as explicit ones. Cells are views that each thread has of its own.
#include <KerrinExtractor/KiLineCell.h>
#include <KerrinExtractor/KxLineCellExtract.h>
#include <KerrinExtractor/KxQuadrangleCellImplicitIj.h>
#include <KerrinExtractor/KxSurfaceTopologyExplicitIFromIj.h>
#include <KerrinExtractor/KxVolumeTopologyExplicitIFromHexaIjk.h>
#include <KerrinExtractor/KxVolumeTopologyExplicitIFromIjk.h>

namespace {

class Hexahedron final : public KiVolumeCell {
public:
  std::size_t getNumNodes() const override { return 8; }
  std::size_t getNodeIndex(std::size_t localIndex) const override { return nodes[localIndex]; }
  std::size_t nodes[8] = {};
};

} // namespace

KxQuadrangleCellImplicitIj::KxQuadrangleCellImplicitIj() = default;
KxQuadrangleCellImplicitIj::~KxQuadrangleCellImplicitIj() = default;

void KxQuadrangleCellImplicitIj::set(std::size_t i, std::size_t j, std::size_t numNodesI) {
  m_first = i + numNodesI * j;
  m_numNodesI = numNodesI;
}

std::size_t KxQuadrangleCellImplicitIj::getNodeIndex(std::size_t localIndex) const {
  switch (localIndex) {
  case 0:
    return m_first;
  case 1:
    return m_first + 1;
  case 2:
    return m_first + m_numNodesI + 1;
  default:
    return m_first + m_numNodesI;
  }
}

KxSurfaceTopologyExplicitIFromIj::KxSurfaceTopologyExplicitIFromIj(const KiTopologyIj& source)
    : m_source(source) {
  update();
}

void KxSurfaceTopologyExplicitIFromIj::update() {
  m_numCellsI = m_source.getNumCellsI();
  m_numCellsJ = m_source.getNumCellsJ();
}

bool KxSurfaceTopologyExplicitIFromIj::isDead(std::size_t cell) const {
  return m_source.isDead(cell % m_numCellsI, cell / m_numCellsI);
}

const KiSurfaceCell* KxSurfaceTopologyExplicitIFromIj::getCell(std::size_t cell) const {
  return cell < getNumCells() ? getCell(cell % m_numCellsI, cell / m_numCellsI) : nullptr;
}

const KiSurfaceCell* KxSurfaceTopologyExplicitIFromIj::getCell(std::size_t i, std::size_t j) const {
  if (i >= m_numCellsI || j >= m_numCellsJ) return nullptr;
  thread_local KxQuadrangleCellImplicitIj cell;
  cell.set(i, j, m_numCellsI + 1);
  return &cell;
}

KxVolumeTopologyExplicitIjk::KxVolumeTopologyExplicitIjk(const KiTopologyIjk& source)
    : m_source(source) {
  update();
}

void KxVolumeTopologyExplicitIjk::update() {
  m_numI = m_source.getNumCellsI();
  m_numJ = m_source.getNumCellsJ();
  m_numK = m_source.getNumCellsK();
}

bool KxVolumeTopologyExplicitIjk::isDead(std::size_t cell) const {
  return m_source.isDead(cell % m_numI, cell / m_numI % m_numJ, cell / m_numI / m_numJ);
}

const KiVolumeCell* KxVolumeTopologyExplicitIjk::getCell(std::size_t cell) const {
  return cell < getNumCells() ? getCell(cell % m_numI, cell / m_numI % m_numJ, cell / m_numI / m_numJ) : nullptr;
}

const KiVolumeCell* KxVolumeTopologyExplicitIjk::getCell(std::size_t i, std::size_t j, std::size_t k) const {
  if (i >= m_numI || j >= m_numJ || k >= m_numK) return nullptr;
  thread_local Hexahedron cell;
  getNodes(i, j, k, cell.nodes);
  return &cell;
}

KxVolumeTopologyExplicitIFromIjk::KxVolumeTopologyExplicitIFromIjk(const KiTopologyIjk& source)
    : KxVolumeTopologyExplicitIjk(source) {}

void KxVolumeTopologyExplicitIFromIjk::getNodes(std::size_t i, std::size_t j, std::size_t k,
                                                std::size_t nodeIds[8]) const {
  const std::size_t row = m_numI + 1;
  const std::size_t layer = row * (m_numJ + 1);
  const std::size_t first = i + row * j + layer * k;
  const std::size_t low[4] = {first, first + 1, first + 1 + row, first + row};
  for (std::size_t c = 0; c < 4; ++c) {
    nodeIds[c] = low[c];
    nodeIds[c + 4] = low[c] + layer;
  }
}

KxVolumeTopologyExplicitIFromHexaIjk::KxVolumeTopologyExplicitIFromHexaIjk(
    const KiHexahedronTopologyExplicitIjk& source)
    : KxVolumeTopologyExplicitIjk(source)
    , m_hexahedra(source) {}

void KxVolumeTopologyExplicitIFromHexaIjk::getNodes(std::size_t i, std::size_t j, std::size_t k,
                                                    std::size_t nodeIds[8]) const {
  m_hexahedra.getCellNodeIds(i, j, k, nodeIds);
}

bool KxLineCellExtract::isPointInsideCell(const KiGeometryI& geometry, const KiLineCell* cell,
                                          const KbVec3<double>& point, std::vector<double>& weights) {
  return cell && cell->KiLineCell::isPointInsideCell(geometry, point, weights);
}
