// SPDX-License-Identifier: BSD-3-Clause
#include "LineExtraction.h"

#include "FinitePosition.h"

#include <algorithm>

namespace kx {

void LineExtraction::walk(const FlatMesh& mesh, const KiTessellator* tessellator,
                          const std::vector<std::size_t>* chosen, Faults& faults, const Visit& visit) {
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
