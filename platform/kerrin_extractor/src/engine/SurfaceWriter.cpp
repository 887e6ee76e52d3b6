// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceWriter.h"

#include <algorithm>

namespace kx {
namespace {

struct CellRef {
  std::size_t cell;
};

/// The corners of open cells, without repetitions of neighbours.
template <class Cells>
class CellReader {
public:
  struct Corners {
    const std::size_t* ids = nullptr;
    std::size_t count = 0;
  };

  CellReader(const FlatMesh& mesh, const Cells& cells, Faults& faults)
      : m_mesh(mesh)
      , m_cells(cells)
      , m_faults(faults) {}

  /// Without a look at the positions.
  bool readNodes(CellRef ref) {
    if (m_mesh.hasClosedCells() && !m_mesh.isOpen(ref.cell)) return false;
    m_cells.load(ref.cell, m_nodes);
    if (m_nodes.numCorners == 0) return fail(Faults::UNREADABLE_CELL, ref.cell);
    if (!m_mesh.hasValidNodes(m_nodes)) return fail(Faults::NODE_OUT_OF_RANGE, ref.cell);
    return clean();
  }
  bool read(CellRef ref) {
    if (!readNodes(ref)) return false;
    for (std::size_t c = 0; c < corners.count; ++c)
      if (!isFinite(m_mesh.points[corners.ids[c]])) return fail(Faults::COORDINATE_NOT_FINITE, ref.cell);
    return true;
  }
  void readAgain(CellRef ref) {
    m_cells.load(ref.cell, m_nodes);
    clean();
  }
  bool isReversed() const { return false; }
  /// The nodes of the cell that was read last, with the middles of its sides where they are in order. False when a
  /// middle has no position.
  bool describe(FaceNodes& face) {
    face.corners.assign(corners.ids, corners.ids + corners.count);
    face.middles.clear();
    if (m_nodes.isQuadratic() && corners.count == m_nodes.numCorners)
      face.middles.assign(m_nodes.ids.begin() + static_cast<std::ptrdiff_t>(m_nodes.numCorners),
                          m_nodes.ids.begin() + static_cast<std::ptrdiff_t>(m_nodes.numNodes));
    const bool arePlaced = std::all_of(face.middles.begin(), face.middles.end(),
                                       [this](std::size_t node) { return isFinite(m_mesh.points[node]); });
    return arePlaced || fail(Faults::COORDINATE_NOT_FINITE, face.cell);
  }
  Corners corners;

private:
  bool fail(Faults::Kind kind, std::size_t cell) {
    m_faults.add(kind, cell);
    return false;
  }
  bool clean() {
    const std::size_t* ids = m_nodes.ids.data();
    std::size_t count = m_nodes.numCorners;
    bool hasRepeats = false;
    std::size_t last = ids[count - 1];
    for (std::size_t c = 0; c < count; ++c) {
      hasRepeats |= ids[c] == last;
      last = ids[c];
    }
    if (hasRepeats) {
      m_distinct.assign(ids, ids + count);
      m_distinct.erase(std::unique(m_distinct.begin(), m_distinct.end()), m_distinct.end());
      while (m_distinct.size() > 1 && m_distinct.back() == m_distinct.front())
        m_distinct.pop_back();
      ids = m_distinct.data();
      count = m_distinct.size();
    }
    corners = {ids, count};
    return count == 3 || (count == 4 && ids[0] != ids[2] && ids[1] != ids[3]) || count > 4;
  }

  const FlatMesh& m_mesh;
  const Cells& m_cells;
  Faults& m_faults;
  CellNodeList m_nodes;
  std::vector<std::size_t> m_distinct; ///< corners, where some repeat
};

} // namespace

void SurfaceWriter::write(Run& run, const FlatMesh& mesh, SurfaceData& output, Faults& faults) {
  const PolygonWriter writer{run, mesh.points, mesh.endNode, mesh.numCells, output, faults};
  std::visit(
      [&](const auto& cells) {
        writer.write(
            mesh.numCells, [](std::size_t cell) { return CellRef{cell}; },
            [&] { return CellReader(mesh, cells, faults); });
      },
      mesh.cells);
}

std::unique_ptr<PolygonSource> SurfaceWriter::polygons(const FlatMesh& mesh, Faults& faults) {
  return std::visit(
      [&](const auto& cells) {
        return readPolygons(
            mesh.numCells, mesh.endNode, mesh.points, [](std::size_t cell) { return CellRef{cell}; },
            [&mesh, &cells, &faults] { return CellReader(mesh, cells, faults); });
      },
      mesh.cells);
}

FaceSource SurfaceWriter::faces(const FlatMesh& mesh, Faults& faults) {
  const auto makeReader = [&mesh, &faults]() -> FaceSource::Reader {
    return std::visit(
        [&](const auto& cells) -> FaceSource::Reader {
          return [reader = CellReader(mesh, cells, faults)](std::size_t cell, FaceNodes& face) mutable {
            if (!reader.read(CellRef{cell})) return false;
            face.cell = cell;
            return reader.describe(face);
          };
        },
        mesh.cells);
  };
  return {mesh.numCells, makeReader};
}

} // namespace kx
