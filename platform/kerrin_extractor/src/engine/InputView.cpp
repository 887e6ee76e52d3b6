// SPDX-License-Identifier: BSD-3-Clause
#include "InputView.h"

#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiTopologyIj.h>
#include <KerrinExtractor/KiTopologyIjk.h>

namespace kx {

RawCells::RawCells(const KiTopology& topology)
    : connectivity(rawArrayOf(topology, KiRawArrays::CONNECTIVITY))
    , offsets(rawArrayOf(topology, KiRawArrays::OFFSETS))
    , shapes(rawArrayOf(topology, KiRawArrays::SHAPES)) {}

bool RawCells::hasShapesOf(std::size_t numCells) const {
  return shapes.type == KiRawArray::UINT8 && (shapes.size == 1 || shapes.size >= numCells);
}

bool RawCells::hasOffsetsOf(std::size_t numCells) const {
  return offsets.type == connectivity.type && offsets.size >= numCells + 1;
}

template <class TopologyGrid, class FilterGrid>
InputAddress InputView<TopologyGrid, FilterGrid>::address() const {
  if constexpr (std::is_same_v<TopologyGrid, KiTopologyIj>)
    return {isStructured, {cellDims.i, cellDims.j, 0}};
  else
    return {isStructured, cellDims};
}

template <class TopologyGrid, class FilterGrid>
bool InputView<TopologyGrid, FilterGrid>::isOpen(std::size_t cell) const {
  if (m_topologyI) {
    if (m_hasDeadCells && (m_dead ? m_dead[cell] != 0 : m_topologyI->isDead(cell))) return false;
    return !m_filterI || m_filterI->acceptCell(cell);
  }
  if (m_hasDeadCells && m_dead && m_dead[cell] != 0) return false;
  const bool asksTopology = m_hasDeadCells && !m_dead;
  if (!asksTopology && !m_filterGrid) return true;
  const auto isOpenAt = [&](auto... index) {
    if (asksTopology && m_topologyGrid->isDead(index...)) return false;
    return !m_filterGrid || m_filterGrid->acceptCell(index...);
  };
  const auto [i, j, k] = cellDims.split(cell);
  if constexpr (std::is_same_v<TopologyGrid, KiTopologyIj>)
    return isOpenAt(i, j);
  else
    return isOpenAt(i, j, k);
}

template <class TopologyGrid, class FilterGrid>
void InputView<TopologyGrid, FilterGrid>::readTopology(const KiTopologyI& topology) {
  m_topologyI = &topology;
  numCells = topology.getNumCells();
  readDead(topology);
}

template <class TopologyGrid, class FilterGrid>
void InputView<TopologyGrid, FilterGrid>::readGrid(const TopologyGrid& topology) {
  m_topologyGrid = &topology;
  isStructured = true;
  cellDims = {topology.getNumCellsI(), topology.getNumCellsJ(), 1};
  if constexpr (std::is_same_v<TopologyGrid, KiTopologyIjk>) cellDims.k = topology.getNumCellsK();
  numCells = cellDims.count();
  readDead(topology);
}

template <class TopologyGrid, class FilterGrid>
void InputView<TopologyGrid, FilterGrid>::readDead(const KiTopology& topology) {
  m_hasDeadCells = topology.hasDeadCells();
  const KiRawArray dead = rawArrayOf(topology, KiRawArrays::DEAD);
  if (dead.type == KiRawArray::UINT8 && dead.size >= numCells) m_dead = static_cast<const std::uint8_t*>(dead.data);
}

template <class TopologyGrid, class FilterGrid>
void InputView<TopologyGrid, FilterGrid>::readCoordinates(const KiGeometry& geometry, PointView::Kind otherwise) {
  points.kind = otherwise;
  const KiRawArray array = rawArrayOf(geometry, KiRawArrays::COORDINATES);
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

template class InputView<KiTopologyIj, KiCellFilterIj>;
template class InputView<KiTopologyIjk, KiCellFilterIjk>;

} // namespace kx
