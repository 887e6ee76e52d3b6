// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "MeshView.h"

#include <algorithm>
#include <vector>

namespace kx {

/// What is asked of the nodes of cells.
enum class Purpose { VALUES, POSITIONS };

/// Reads cells one after the other, for what is asked of their corners, and tells the faults of those that are open.
template <Purpose PURPOSE, class Cells>
class CellReader {
public:
  CellReader(const MeshView& mesh, const Cells& cells, Faults& faults)
      : m_mesh(mesh)
      , m_cells(cells)
      , m_faults(faults)
      , m_hasClosedCells(mesh.hasClosedCells())
      , m_numNodes(mesh.numNodes()) {}

  bool isOpen(std::size_t cell) const { return !m_hasClosedCells || m_mesh.isOpen(cell); }

  /// Calls `corners(code, nodes)` or `polyhedron(faces, nodes)` for an open cell whose nodes exist; false for others.
  template <class Corners, class Polyhedron>
  [[gnu::always_inline]] bool read(std::size_t cell, const Corners& corners, const Polyhedron& polyhedron) {
    return isOpen(cell) && readAny(cell, corners, polyhedron);
  }
  /// The same for closed cells too.
  template <class Corners, class Polyhedron>
  [[gnu::always_inline]] bool readAny(std::size_t cell, const Corners& corners, const Polyhedron& polyhedron) {
    CellNodes nodes{};
    const CellCode code = PURPOSE == Purpose::VALUES ? m_cells.loadForValues(cell, nodes) : m_cells.load(cell, nodes);
    if (code < POLYHEDRON) {
      const std::size_t count = code == HEXAHEDRON ? 8 : NUM_CORNERS[code];
      if (!areNodes(nodes, count)) return refuse(Faults::NODE_OUT_OF_RANGE, cell);
      corners(code, nodes);
      return true;
    }
    if (code == UNREADABLE || !m_mesh.loadPolyhedron(cell, m_faces, m_all))
      return refuse(Faults::UNREADABLE_CELL, cell);
    if (!areNodes(m_all, m_all.size())) return refuse(Faults::NODE_OUT_OF_RANGE, cell);
    polyhedron(m_faces, m_all);
    return true;
  }

private:
  template <class Ids>
  bool areNodes(const Ids& ids, std::size_t count) const {
    std::size_t greatest = 0;
    for (std::size_t i = 0; i < count; ++i)
      greatest = std::max(greatest, (ids[i] >> m_mesh.slotBits) - m_mesh.beginNode);
    return greatest < m_numNodes;
  }
  bool refuse(Faults::Kind fault, std::size_t cell) const {
    if (isOpen(cell)) m_faults.add(fault, cell);
    return false;
  }

  const MeshView& m_mesh;
  const Cells& m_cells;
  Faults& m_faults;
  bool m_hasClosedCells;
  std::size_t m_numNodes;
  std::vector<std::vector<std::size_t>> m_faces;
  std::vector<std::size_t> m_all;
};

} // namespace kx
