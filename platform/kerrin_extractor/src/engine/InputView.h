// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InputAddress.h"
#include "PointView.h"

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KiTopologyI.h>

#include <cstdint>
#include <string>

namespace kx {

/// A plain array of a mesh or a set; an empty one where `object` does not offer any.
template <class Object>
KiRawArray rawArrayOf(const Object& object, KiRawArrays::Role role) {
  const auto* arrays = dynamic_cast<const KiRawArrays*>(&object);
  return arrays ? arrays->getRawArray(role) : KiRawArray{};
}

/// The plain arrays of explicit cells.
struct RawCells {
  explicit RawCells(const KiTopology& topology);

  KiRawArray connectivity;
  KiRawArray offsets; ///< none where all cells have as many nodes
  KiRawArray shapes;  ///< one for each cell, or one for all

  const std::uint8_t* codes() const { return static_cast<const std::uint8_t*>(shapes.data); }
  bool hasShapesOf(std::size_t numCells) const;
  bool hasOffsetsOf(std::size_t numCells) const;
  /// Calls `use(indices)` with the connectivity as the 32- or 64-bit numbers that it is; false for any other type.
  template <class Use>
  bool visitIndices(const Use& use) const {
    if (connectivity.type == KiRawArray::INT32) return use(static_cast<const std::int32_t*>(connectivity.data));
    if (connectivity.type == KiRawArray::INT64) return use(static_cast<const std::int64_t*>(connectivity.data));
    return false;
  }
};

/// What the views of all meshes have in common: positions, the range of nodes, and which cells are alive and accepted.
/// `TopologyGrid` and `FilterGrid` are the forms of structured meshes, Ij or Ijk; their cells have flat indices too, i
/// fastest.
template <class TopologyGrid, class FilterGrid>
class InputView {
public:
  PointView points;
  std::size_t numCells = 0;
  std::size_t beginNode = 0; ///< node ids (without slot bits) lie in [beginNode, endNode)
  std::size_t endNode = 0;
  bool isStructured = false; ///< cells are addressed by more than one index
  Dims cellDims;             ///< of structured meshes; `k` is 1 in surfaces
  Dims nodeDims;             ///< of meshes whose nodes are addressed by more than one index
  /// Why the mesh cannot be read at all (such a view has no cells); empty when it can.
  std::string fault;

  void setFilter(const KiCellFilterI* filter) { m_filterI = filter; }
  void setFilter(const FilterGrid* filter) { m_filterGrid = filter; }
  bool hasClosedCells() const { return m_hasDeadCells || m_filterI || m_filterGrid; }
  /// Whether a cell is alive and accepted.
  bool isOpen(std::size_t cell) const;
  bool hasNode(std::size_t node) const { return node >= beginNode && node < endNode; }
  std::size_t numNodes() const { return endNode > beginNode ? endNode - beginNode : 0; }
  InputAddress address() const;

protected:
  InputView() = default;
  /// Cells with one index.
  void readTopology(const KiTopologyI& topology);
  /// Cells with two or three.
  void readGrid(const TopologyGrid& topology);
  /// Positions in plain arrays where there are some, and by `otherwise` where there are none.
  void readCoordinates(const KiGeometry& geometry, PointView::Kind otherwise);

private:
  void readDead(const KiTopology& topology);

  const KiTopologyI* m_topologyI = nullptr;
  const TopologyGrid* m_topologyGrid = nullptr;
  bool m_hasDeadCells = false;
  const std::uint8_t* m_dead = nullptr;
  const KiCellFilterI* m_filterI = nullptr;
  const FilterGrid* m_filterGrid = nullptr;
};

} // namespace kx
