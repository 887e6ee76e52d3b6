// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbHexahedronTopologyExplicitIjk.h>
#include <KerrinMesh/KbTopologyExplicit.h>

#include "KbExtent.h"

#include <algorithm>

namespace {

/// Nodes of each `Shape` in the order of the enumeration; 0 where a cell may have any number.
template <class Cell>
struct Shapes;
template <>
struct Shapes<KiLineCell> {
  static constexpr std::array<std::size_t, 2> nodes{2, 3};
};
template <>
struct Shapes<KiSurfaceCell> {
  static constexpr std::array<std::size_t, 5> nodes{3, 4, 0, 6, 8};
};
template <>
struct Shapes<KiVolumeCell> {
  static constexpr std::array<std::size_t, 9> nodes{4, 5, 6, 8, 10, 13, 15, 20, 0};
};

/// Empty when all indices lie in [0, `numNodes`), else what is wrong.
std::string findFaultInIndices(const KbArray& connectivity, std::size_t numNodes) {
  if (connectivity.empty()) return {};
  if (!connectivity.isIndex()) return "the node indices are no 32- or 64-bit signed integers";
  const auto check = [&](auto* indices) -> std::string {
    using Index = std::remove_const_t<std::remove_pointer_t<decltype(indices)>>;
    std::array<Index, 1> min;
    std::array<Index, 1> max;
    kx::extentOf<1>(indices, connectivity.size(), min, max);
    if (min[0] < 0) return "node index " + std::to_string(min[0]) + " is below 0";
    if (static_cast<std::size_t>(max[0]) >= numNodes)
      return "node index " + std::to_string(max[0]) + " with " + std::to_string(numNodes) + " nodes";
    return {};
  };
  return connectivity.type() == KiRawArray::INT32 ? check(static_cast<const std::int32_t*>(connectivity.raw().data))
                                                  : check(static_cast<const std::int64_t*>(connectivity.raw().data));
}

/// Empty when the offsets grow from 0 or more to `size` or less, else what is wrong.
std::string findFaultInOffsets(const KbArray& offsets, std::size_t size, const std::string& what) {
  if (!offsets.isIndex()) return what + " are no 32- or 64-bit signed integers";
  for (std::size_t c = 0; c < offsets.size(); ++c) {
    const std::size_t offset = offsets.index(c); // a negative one is greater than every size
    if (offset > size || (c > 0 && offset < offsets.index(c - 1)))
      return what + " must grow from 0 to " + std::to_string(size) + ": entry " + std::to_string(c) + " is " +
             std::to_string(static_cast<std::ptrdiff_t>(offset));
  }
  return {};
}

/// The list of indices that a view shows: a range of `array`.
struct IndexRange {
  KbArray array;
  std::size_t begin = 0;
  std::size_t size = 0;

  std::size_t operator[](std::size_t i) const { return array.index(begin + i); }
};

/// The cell that a topology shows at the moment; what doesn't depend on the kind of cell.
template <class Cell>
class CellViewBase : public Cell {
public:
  std::size_t getNumNodes() const override { return nodes.size; }
  std::size_t getNodeIndex(std::size_t localIndex) const override { return nodes[localIndex]; }

  IndexRange nodes;
  IndexRange faces;
  int shape = 0;
};

template <class Cell>
class CellView;

template <>
class CellView<KiLineCell> final : public CellViewBase<KiLineCell> {};

template <>
class CellView<KiSurfaceCell> final : public CellViewBase<KiSurfaceCell> {
public:
  Shape getShape() const override { return static_cast<Shape>(shape); }
};

template <>
class CellView<KiVolumeCell> final : public CellViewBase<KiVolumeCell> {
public:
  Shape getShape() const override { return static_cast<Shape>(shape); }
  std::size_t getNumFacets() const override { return shape == POLYHEDRON ? faces[0] : KiVolumeCell::getNumFacets(); }
  void getFacet(std::size_t facet, std::vector<std::size_t>& localIndices) const override {
    if (shape != POLYHEDRON) return KiVolumeCell::getFacet(facet, localIndices);
    localIndices.clear();
    if (facet >= faces[0]) return;
    std::size_t at = 1;
    for (; facet > 0; --facet)
      at += 1 + faces[at];
    for (std::size_t i = 1; i <= faces[at]; ++i) {
      std::size_t local = 0;
      while (nodes[local] != faces[at + i])
        ++local;
      localIndices.push_back(local);
    }
  }
};

} // namespace

template <class Interface, class Cell>
std::size_t KbTopologyExplicit<Interface, Cell>::beginOf(std::size_t cell) const {
  return m_nodesPerCell != 0 ? cell * m_nodesPerCell : m_cells.offsets().index(cell);
}

template <class Interface, class Cell>
std::size_t KbTopologyExplicit<Interface, Cell>::endOf(std::size_t cell) const {
  return m_nodesPerCell != 0 ? (cell + 1) * m_nodesPerCell : m_cells.offsets().index(cell + 1);
}

template <class Interface, class Cell>
const Cell* KbTopologyExplicit<Interface, Cell>::getCell(std::size_t cell) const {
  if (cell >= m_numCells) return nullptr;
  thread_local CellView<Cell> view;
  const std::size_t begin = beginOf(cell);
  view.nodes = {m_cells.connectivity(), begin, endOf(cell) - begin};
  view.shape = shapeOf(cell);
  if constexpr (std::is_same_v<Cell, KiVolumeCell>) {
    if (view.shape == KiVolumeCell::POLYHEDRON) {
      const std::size_t first = m_cells.faceOffsets().index(cell);
      view.faces = {m_cells.faces(), first, m_cells.faceOffsets().index(cell + 1) - first};
    }
  }
  return &view;
}

template <class Interface, class Cell>
KiRawArray KbTopologyExplicit<Interface, Cell>::getRawArray(Role role) const {
  switch (role) {
  case CONNECTIVITY:
    return m_cells.connectivity().raw();
  case OFFSETS:
    return m_cells.offsets().raw();
  case SHAPES:
    if (m_numCells == 0) return {};
    return m_cells.shape() < 0 ? KbArray(m_cells.shapes()).raw() : KbArray(&m_shape, 1).raw();
  default:
    return KbTopologyState::getRawArray(role);
  }
}

template <class Interface, class Cell>
std::string KbTopologyExplicit<Interface, Cell>::findFault(const KbCells& cells, std::size_t numNodes) {
  constexpr auto& nodes = Shapes<Cell>::nodes;
  if (cells.shape() >= static_cast<int>(nodes.size())) return "shape " + std::to_string(cells.shape()) + " is unknown";
  if (std::string fault = findFaultInIndices(cells.connectivity(), numNodes); !fault.empty()) return fault;

  m_cells = cells;
  m_numNodes = numNodes;
  m_nodesPerCell = 0;
  m_numCells = 0;
  if (cells.offsets().empty()) {
    if (cells.shape() < 0) {
      return cells.shapes().empty() && cells.connectivity().empty()
                 ? std::string()
                 : std::string("cells of several shapes need offsets");
    }
    m_shape = static_cast<std::uint8_t>(cells.shape());
    m_nodesPerCell = nodes[static_cast<std::size_t>(cells.shape())];
    if (m_nodesPerCell == 0) return "cells of shape " + std::to_string(cells.shape()) + " need offsets";
    m_numCells = cells.connectivity().size() / m_nodesPerCell;
    if (cells.connectivity().size() % m_nodesPerCell == 0) return {};
    return std::to_string(cells.connectivity().size()) + " node indices are no multiple of " +
           std::to_string(m_nodesPerCell);
  }
  m_shape = static_cast<std::uint8_t>(std::max(cells.shape(), 0));
  m_numCells = cells.offsets().size() - 1;
  if (std::string fault = findFaultInOffsets(cells.offsets(), cells.connectivity().size(), "offsets"); !fault.empty())
    return fault;
  if (cells.shape() < 0 && cells.shapes().size() != m_numCells)
    return std::to_string(cells.shapes().size()) + " shapes for " + std::to_string(m_numCells) + " cells";
  return findFaultInCells();
}

template <class Interface, class Cell>
std::string KbTopologyExplicit<Interface, Cell>::findFaultInCells() const {
  constexpr auto& nodes = Shapes<Cell>::nodes;
  bool facesChecked = false;
  for (std::size_t cell = 0; cell < m_numCells; ++cell) {
    const auto shape = static_cast<std::size_t>(shapeOf(cell));
    if (shape >= nodes.size())
      return "shape " + std::to_string(shape) + " of cell " + std::to_string(cell) + " is unknown";
    const std::size_t size = endOf(cell) - beginOf(cell);
    if (nodes[shape] != 0 ? size != nodes[shape] : size < 3)
      return std::to_string(size) + " nodes in cell " + std::to_string(cell) + " of shape " + std::to_string(shape);
    if constexpr (std::is_same_v<Cell, KiVolumeCell>) {
      if (shape != KiVolumeCell::POLYHEDRON) continue;
      if (!facesChecked) {
        if (m_cells.faceOffsets().size() != m_numCells + 1)
          return std::to_string(m_cells.faceOffsets().size()) + " face offsets for " + std::to_string(m_numCells) +
                 " cells with polyhedra";
        if (!m_cells.faces().isIndex()) return "the faces are no 32- or 64-bit signed integers";
        if (std::string fault = findFaultInOffsets(m_cells.faceOffsets(), m_cells.faces().size(), "face offsets");
            !fault.empty())
          return fault;
        facesChecked = true;
      }
      if (std::string fault = findFaultInFaces(cell); !fault.empty()) return fault;
    }
  }
  return {};
}

template <class Interface, class Cell>
std::string KbTopologyExplicit<Interface, Cell>::findFaultInFaces(std::size_t cell) const {
  const std::string where = "the faces of polyhedron " + std::to_string(cell);
  std::size_t at = m_cells.faceOffsets().index(cell);
  const std::size_t end = m_cells.faceOffsets().index(cell + 1);
  if (at == end) return where + " are missing";
  const IndexRange own{m_cells.connectivity(), beginOf(cell), endOf(cell) - beginOf(cell)};
  std::size_t numFaces = m_cells.faces().index(at++);
  for (; numFaces > 0; --numFaces) {
    if (at == end) return where + " end too early";
    const std::size_t size = m_cells.faces().index(at++);
    if (size < 3 || size > end - at)
      return where + " don't fill their range: a face of " + std::to_string(size) + " nodes";
    for (const std::size_t next = at + size; at < next; ++at) {
      const std::size_t node = m_cells.faces().index(at);
      std::size_t local = 0;
      while (local < own.size && own[local] != node)
        ++local;
      if (local == own.size) return where + " use node " + std::to_string(node) + ", which is none of its nodes";
    }
  }
  return at == end ? std::string() : where + " end too early";
}

template <class Interface, class Cell>
bool KbTopologyExplicit<Interface, Cell>::setCells(const KbCells& cells, std::size_t numNodes) {
  const std::string fault = findFault(cells, numNodes);
  if (!fault.empty()) {
    clear();
    return refuse("setCells", fault);
  }
  assignDead({}, 0);
  renewStamp();
  return true;
}

template <class Interface, class Cell>
bool KbTopologyExplicit<Interface, Cell>::setDead(const KbSpan<std::uint8_t>& dead) {
  if (!assignDead(dead, m_numCells)) return false;
  renewStamp();
  return true;
}

template <class Interface, class Cell>
void KbTopologyExplicit<Interface, Cell>::touch() {
  const KbSpan<std::uint8_t> dead = m_dead;
  if (setCells(KbCells(m_cells), m_numNodes)) assignDead(dead, m_numCells);
}

template <class Interface, class Cell>
void KbTopologyExplicit<Interface, Cell>::clear() {
  m_cells = KbCells();
  m_numCells = m_numNodes = m_nodesPerCell = 0;
  assignDead({}, 0);
  renewStamp();
}

template class KbTopologyExplicit<KiLineTopologyExplicitI, KiLineCell>;
template class KbTopologyExplicit<KiSurfaceTopologyExplicitI, KiSurfaceCell>;
template class KbTopologyExplicit<KiVolumeTopologyExplicitI, KiVolumeCell>;

void KbHexahedronTopologyExplicitIjk::getCellNodeIds(std::size_t i, std::size_t j, std::size_t k,
                                                     std::size_t nodeIds[8]) const {
  const std::size_t cell = KbFlatIndex(m_counts, {i, j, k});
  for (std::size_t n = 0; n < 8; ++n)
    nodeIds[n] = m_connectivity.index(8 * cell + n);
}

KiRawArray KbHexahedronTopologyExplicitIjk::getRawArray(Role role) const {
  return role == CONNECTIVITY ? m_connectivity.raw() : KbTopologyState::getRawArray(role);
}

bool KbHexahedronTopologyExplicitIjk::setCells(const KbIndex<3>& counts, const KbArray& connectivity,
                                               std::size_t numNodes) {
  std::string fault = findFaultInIndices(connectivity, numNodes);
  const std::size_t numCells = KbProduct(counts);
  if (fault.empty() && (connectivity.size() % 8 != 0 || connectivity.size() / 8 != numCells))
    fault = std::to_string(connectivity.size()) + " node indices instead of 8 for each of " + std::to_string(numCells) +
            " cells";
  const bool right = fault.empty();
  m_connectivity = right ? connectivity : KbArray();
  m_numNodes = right ? numNodes : 0;
  setCounts(right ? counts : KbIndex<3>{});
  return right || refuse("setCells", fault);
}

void KbHexahedronTopologyExplicitIjk::touch() {
  const KbSpan<std::uint8_t> dead = m_dead;
  if (setCells(KbIndex<3>(m_counts), KbArray(m_connectivity), m_numNodes)) setDead(dead);
}

void KbHexahedronTopologyExplicitIjk::clear() { setCells({}, {}, 0); }
