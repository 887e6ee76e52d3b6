// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InputView.h"

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
#include <variant>
#include <vector>

namespace kx {

/// The nodes of one surface or line cell: its corners in order, then the mid-edge nodes of quadratic cells.
struct CellNodeList {
  std::vector<std::size_t> ids; ///< may be longer than `numNodes`
  std::size_t numNodes = 0;
  std::size_t numCorners = 0; ///< 0 for a cell that cannot be read
  std::size_t shape = 0;      ///< of `KiSurfaceCell::Shape` or `KiLineCell::Shape`

  void set(std::size_t count, std::size_t corners, std::size_t code) {
    numNodes = count;
    numCorners = corners;
    shape = code;
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
    if (stride == 4 && numCornersOfAll == 4) { // quadrangles alone: without a loop, and inline
      const Index* p = connectivity + 4 * cell;
      nodes.set(4, 4, shapes[0]);
      std::size_t* ids = nodes.ids.data();
      for (std::size_t i = 0; i < 4; ++i)
        ids[i] = static_cast<std::size_t>(p[i]);
      return;
    }
    loadAny(cell, nodes);
  }

private:
  void loadAny(std::size_t cell, CellNodeList& nodes) const {
    const std::size_t begin = offsets ? static_cast<std::size_t>(offsets[cell]) : cell * stride;
    const std::size_t end = offsets ? static_cast<std::size_t>(offsets[cell + 1]) : begin + stride;
    if (begin > end || end > connectivitySize) {
      nodes.set(0, 0, 0);
      return;
    }
    const std::size_t shape = shapes[cell * shapeStep];
    nodes.set(end - begin, numCornersOfAll > 0 ? numCornersOfAll : numCornersOf(shape, end - begin), shape);
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
    nodes.set(4, 4, KiSurfaceCell::QUADRANGLE);
    nodes.ids[0] = base;
    nodes.ids[1] = base + 1;
    nodes.ids[2] = base + numCellsI + 2;
    nodes.ids[3] = base + numCellsI + 1;
  }
};

/// Segments in a row.
struct SegmentRow {
  void load(std::size_t cell, CellNodeList& nodes) const {
    nodes.set(2, 2, KiLineCell::LINE);
    nodes.ids[0] = cell;
    nodes.ids[1] = cell + 1;
  }
};

using CellListView = std::variant<ArrayCellLists<std::int32_t>, ArrayCellLists<std::int64_t>, VirtualSurfaceCells,
                                  VirtualLineCells, QuadrangleGrid, SegmentRow>;

/// A surface or line mesh of any kind by flat indices, as the algorithms read it during one extraction.
class FlatMesh : public InputView<KiTopologyIj, KiCellFilterIj> {
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

  /// Whether all nodes of a cell exist.
  bool hasValidNodes(const CellNodeList& nodes) const {
    for (std::size_t i = 0; i < nodes.numNodes; ++i)
      if (!hasNode(nodes.ids[i])) return false;
    return true;
  }

private:
  template <class Topology, class VirtualCells>
  void readExplicit(const Topology& topology, const VirtualCells& otherwise,
                    std::size_t (*numCornersOf)(std::size_t, std::size_t));
  void readQuadrangles(const KiTopologyIj& topology);
  void readRow(const KiTopologyI& topology);
  void readPositions(const KiGeometryI& geometry);

  std::shared_ptr<const KiGeometryI> m_ownGeometry; ///< where `points` cannot look at the mesh itself
};

} // namespace kx
