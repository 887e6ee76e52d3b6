// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InputAddress.h"

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kx {

/// The nodes of one surface or line cell: its corners in order, then the mid-edge nodes of quadratic cells.
struct CellNodeList {
  std::vector<std::size_t> ids; ///< may be longer than `numNodes`
  std::size_t numNodes = 0;
  std::size_t numCorners = 0; ///< 0 for a cell that cannot be read

  void set(std::size_t count, std::size_t corners) {
    numNodes = count;
    numCorners = corners;
    if (ids.size() < count) ids.resize(count);
  }
  bool isQuadratic() const { return numNodes > numCorners; }
};

/// How many of a cell's nodes are corners; 0 when shape and number of nodes don't fit.
std::size_t numSurfaceCorners(std::size_t shape, std::size_t numNodes);
std::size_t numLineCorners(std::size_t shape, std::size_t numNodes);

// Each view below offers `load(cell, nodes)`.

/// Explicit cells in plain arrays.
template <class Index>
struct ArrayCellLists {
  const Index* connectivity;
  std::size_t connectivitySize;
  const Index* offsets; ///< null: `stride` nodes a cell
  std::size_t stride;
  const std::uint8_t* shapes;
  std::size_t shapeStep; ///< 0 when one entry serves all cells
  std::size_t (*numCornersOf)(std::size_t shape, std::size_t numNodes);
  std::size_t numCornersOfAll; ///< 0 when it differs from cell to cell

  void load(std::size_t cell, CellNodeList& nodes) const {
    const std::size_t begin = offsets ? static_cast<std::size_t>(offsets[cell]) : cell * stride;
    const std::size_t end = offsets ? static_cast<std::size_t>(offsets[cell + 1]) : begin + stride;
    if (begin > end || end > connectivitySize) {
      nodes.set(0, 0);
      return;
    }
    nodes.set(end - begin, numCornersOfAll > 0 ? numCornersOfAll : numCornersOf(shapes[cell * shapeStep], end - begin));
    for (std::size_t i = 0; i < nodes.numNodes; ++i)
      nodes.ids[i] = static_cast<std::size_t>(connectivity[begin + i]);
  }
};

/// Explicit cells read through the topology's virtual operations.
struct VirtualSurfaceCells {
  const KiSurfaceTopologyExplicitI* topology;
  void load(std::size_t cell, CellNodeList& nodes) const;
};
struct VirtualLineCells {
  const KiLineTopologyExplicitI* topology;
  void load(std::size_t cell, CellNodeList& nodes) const;
};

/// Quadrangles of a structured surface.
struct QuadrangleGrid {
  std::size_t numCellsI;
  void load(std::size_t cell, CellNodeList& nodes) const {
    const std::size_t base = cell + cell / numCellsI;
    nodes.set(4, 4);
    nodes.ids[0] = base;
    nodes.ids[1] = base + 1;
    nodes.ids[2] = base + numCellsI + 2;
    nodes.ids[3] = base + numCellsI + 1;
  }
};

/// Segments in a row.
struct SegmentRow {
  void load(std::size_t cell, CellNodeList& nodes) const {
    nodes.set(2, 2);
    nodes.ids[0] = cell;
    nodes.ids[1] = cell + 1;
  }
};

using CellListView = std::variant<ArrayCellLists<std::int32_t>, ArrayCellLists<std::int64_t>, VirtualSurfaceCells,
                                  VirtualLineCells, QuadrangleGrid, SegmentRow>;

/// A surface or line mesh of any kind by flat indices, as the algorithms read it during one extraction.
class FlatMesh {
public:
  explicit FlatMesh(const KiSurfaceMeshUnstructured& mesh);
  explicit FlatMesh(const KiSurfaceMeshRegular& mesh);
  explicit FlatMesh(const KiSurfaceMeshRectilinear& mesh);
  explicit FlatMesh(const KiSurfaceMeshCurvilinear& mesh);
  explicit FlatMesh(const KiLineMeshUnstructured& mesh);
  explicit FlatMesh(const KiLineMeshRegular& mesh);
  explicit FlatMesh(const KiLineMeshCurvilinear& mesh);
  /// Polygons in plain arrays, all of them open; the arrays must outlive the view.
  FlatMesh(const std::vector<std::int64_t>& connectivity, const std::vector<std::int64_t>& offsets,
           const std::vector<KbVec3<double>>& nodes);

  CellListView cells;
  PointView points;
  std::size_t numCells = 0;
  std::size_t beginNode = 0; ///< node ids lie in [beginNode, endNode)
  std::size_t endNode = 0;
  InputAddress address;
  Dims cellDims; ///< structured surfaces; `k` is 1
  Dims nodeDims;
  /// Why the mesh cannot be read at all (such a view has no cells); empty when it can.
  std::string fault;

  void setFilter(const KiCellFilterI* filter) { m_filterI = filter; }
  void setFilter(const KiCellFilterIj* filter) { m_filterIj = filter; }
  bool hasClosedCells() const { return m_hasDeadCells || m_filterI || m_filterIj; }
  /// Whether a cell is alive and accepted.
  bool isOpen(std::size_t cell) const;
  /// Whether all nodes of a cell exist.
  bool hasValidNodes(const CellNodeList& nodes) const {
    for (std::size_t i = 0; i < nodes.numNodes; ++i)
      if (nodes.ids[i] < beginNode || nodes.ids[i] >= endNode) return false;
    return true;
  }

private:
  template <class Topology, class VirtualCells>
  void readExplicit(const Topology& topology, const VirtualCells& otherwise,
                    std::size_t (*numCornersOf)(std::size_t, std::size_t));
  void readGrid(const KiTopologyIj& topology);
  void readRow(const KiTopologyI& topology);
  void readDead(const KiTopology& topology);
  void readCoordinates(const KiGeometryI& geometry);

  const KiTopologyI* m_topologyI = nullptr;
  const KiTopologyIj* m_topologyIj = nullptr;
  bool m_hasDeadCells = false;
  const std::uint8_t* m_dead = nullptr;
  const KiCellFilterI* m_filterI = nullptr;
  const KiCellFilterIj* m_filterIj = nullptr;
  std::shared_ptr<const KiGeometryI> m_ownGeometry; ///< where `points` cannot look at the mesh itself
};

} // namespace kx
