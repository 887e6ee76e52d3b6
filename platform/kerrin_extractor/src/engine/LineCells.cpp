// SPDX-License-Identifier: BSD-3-Clause
#include "LineCells.h"

#include "FinitePosition.h"

#include <algorithm>

namespace kx {
namespace {

/// The shape functions of a three-node line at a parameter in [0, 1].
Stencil pointAt(const CellNodeList& nodes, double t) {
  return {{nodes.ids[0], nodes.ids[1], nodes.ids[2]},
          {(1.0 - t) * (1.0 - 2.0 * t), t * (2.0 * t - 1.0), 4.0 * t * (1.0 - t)}};
}

} // namespace

const std::vector<Stencil>& LineCells::divide(const CellNodeList& nodes) {
  m_points.assign(1, Stencil::node(nodes.ids[0]));
  if (nodes.isQuadratic() && m_tessellator) halve(nodes, 0.0, 1.0, 0);
  m_points.push_back(Stencil::node(nodes.ids[1]));
  return m_points;
}

void LineCells::halve(const CellNodeList& nodes, double begin, double end, std::size_t depth) {
  if (depth >= m_tessellator->getMaxDepth()) return;
  const double middle = 0.5 * (begin + end);
  const Stencil point = pointAt(nodes, middle);
  if (!m_tessellator->isEdgeSplit(position(pointAt(nodes, begin)), position(point), position(pointAt(nodes, end)),
                                  depth))
    return;
  halve(nodes, begin, middle, depth + 1);
  m_points.push_back(point);
  halve(nodes, middle, end, depth + 1);
}

void visitLineCells(const FlatMesh& mesh, const KiTessellator* tessellator, const std::vector<std::size_t>* chosen,
                    Faults& faults, const VisitLineCell& visit) {
  LineCells pieces(mesh, tessellator);
  CellNodeList nodes;
  const auto visitCells = [&](const auto& cells) {
    const auto show = [&](std::size_t cell) {
      if (mesh.hasClosedCells() && !mesh.isOpen(cell)) return;
      cells.load(cell, nodes);
      if (nodes.numCorners == 0) {
        faults.add(Faults::UNREADABLE_CELL, cell);
        return;
      }
      if (!mesh.hasValidNodes(nodes)) {
        faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        return;
      }
      if (!std::all_of(nodes.ids.begin(), nodes.ids.begin() + static_cast<std::ptrdiff_t>(nodes.numNodes),
                       [&mesh](std::size_t node) { return isFinite(mesh.points[node]); })) {
        faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        return;
      }
      visit(cell, nodes, pieces.divide(nodes));
    };
    if (!chosen) {
      for (std::size_t cell = 0; cell < mesh.numCells; ++cell)
        show(cell);
      return;
    }
    for (const std::size_t cell : *chosen)
      if (cell < mesh.numCells) show(cell);
  };
  std::visit(visitCells, mesh.cells);
}

} // namespace kx
