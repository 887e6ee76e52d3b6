// SPDX-License-Identifier: BSD-3-Clause
#include "FaceWriter.h"

#include "CellGeometry.h"
#include "PolygonWriter.h"

namespace kx {
namespace {

double sizeOf(const MeshView& mesh, CellCode code, const CellNodes& nodes) {
  std::array<KbVec3<double>, 8> corners;
  for (std::size_t c = 0; c < NUM_CORNERS[code]; ++c)
    corners[c] = mesh.points[nodes[c]];
  return signedSize(code, corners);
}

double sizeOf(const MeshView& mesh, const FaceCorners& corners) {
  if (corners.code != POLYHEDRON) return sizeOf(mesh, corners.code, corners.cellNodes);
  // Six times the volume within the fans of the faces.
  const KbVec3<double> origin = mesh.points[corners.polyhedronNodes[0]];
  const auto at = [&](std::size_t local) { return mesh.points[corners.polyhedronNodes[local]] - origin; };
  double size = 0.0;
  for (const std::vector<std::size_t>& face : corners.polyhedronFaces)
    for (std::size_t i = 1; i + 1 < face.size(); ++i)
      size += at(face[0]).dot(at(face[i]).cross(at(face[i + 1])));
  return size;
}

/// Reads any face: takes doubled corners out (equal positions count as one where corners have positions of their own),
/// looks at the positions and at the cell's orientation.
template <class Cells>
class GeneralReader {
public:
  GeneralReader(const MeshView& mesh, const Cells& cells, bool isLeftHanded, Faults& faults)
      : m_mesh(mesh)
      , m_cells(cells)
      , m_isLeftHanded(isLeftHanded)
      , m_faults(faults) {}

  /// False for a face that is left out.
  bool read(FaceRef ref) { return readNodes(ref) && isFinite(ref.cell); }
  /// Without a look at the positions.
  bool readNodes(FaceRef ref) {
    if (!corners.load(m_mesh, m_cells, ref)) return false;
    if (m_cell != ref.cell) {
      m_cell = ref.cell;
      m_areNodes = areNodes(ref.cell);
    }
    return m_areNodes && clean();
  }
  /// The same, without a look at the positions, for a face that was not left out.
  void readAgain(FaceRef ref) {
    corners.load(m_mesh, m_cells, ref);
    clean();
  }
  bool isReversed() {
    if (m_mesh.hasGridNodes) return m_isLeftHanded;
    if (m_sizedCell != m_cell) {
      m_size = sizeOf(m_mesh, corners);
      m_sizedCell = m_cell;
    }
    return m_size < 0.0 || (!(m_size > 0.0) && m_isLeftHanded);
  }
  FaceCorners corners;

private:
  bool clean() {
    std::vector<std::size_t>& ids = corners.ids;
    std::size_t count = 0;
    for (std::size_t c = 0; c < corners.count; ++c)
      if (count == 0 || !isSame(ids[count - 1], ids[c])) ids[count++] = ids[c];
    while (count > 1 && isSame(ids[count - 1], ids[0]))
      --count;
    corners.count = count;
    return count == 3 || (count == 4 && !isSame(ids[0], ids[2]) && !isSame(ids[1], ids[3])) || count > 4;
  }
  bool isSame(std::size_t a, std::size_t b) const {
    return a == b || (m_mesh.slotBits > 0 && m_mesh.points[a] == m_mesh.points[b]);
  }
  bool areNodes(std::size_t cell) const {
    const auto isNode = [this](std::size_t id) {
      const std::size_t node = id >> m_mesh.slotBits;
      return node >= m_mesh.beginNode && node < m_mesh.endNode;
    };
    const bool are =
        corners.code == POLYHEDRON
            ? std::all_of(corners.polyhedronNodes.begin(), corners.polyhedronNodes.end(), isNode)
            : std::all_of(corners.cellNodes.begin(), corners.cellNodes.begin() + NUM_CORNERS[corners.code], isNode);
    if (!are) m_faults.add(Faults::NODE_OUT_OF_RANGE, cell);
    return are;
  }
  bool isFinite(std::size_t cell) const {
    for (std::size_t c = 0; c < corners.count; ++c) {
      if (kx::isFinite(m_mesh.points[corners.ids[c]])) continue;
      m_faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return false;
    }
    return true;
  }

  const MeshView& m_mesh;
  const Cells& m_cells;
  bool m_isLeftHanded;
  Faults& m_faults;
  // What holds for all faces of a cell, of which polyhedra may have many, is found out once.
  static constexpr std::size_t NO_CELL = static_cast<std::size_t>(-1);
  std::size_t m_cell = NO_CELL;
  bool m_areNodes = false;
  std::size_t m_sizedCell = NO_CELL;
  double m_size = 0.0;
};

/// Reads faces of a structured grid whose nodes are all in place: corners are a matter of arithmetic. The row of cells
/// is kept from face to face.
class GridReader {
public:
  GridReader(const MeshView& mesh, const GridCells& cells, bool isLeftHanded)
      : m_cells(cells)
      , m_isLeftHanded(isLeftHanded) {
    corners.count = 4;
    const std::size_t layer = mesh.nodeDims.i * mesh.nodeDims.j;
    for (std::size_t f = 0; f < 6; ++f)
      for (std::size_t c = 0; c < 4; ++c) {
        const std::size_t offset = OFFSET_OF_CORNER[CELL_FACES[HEXAHEDRON].faces[f].corners[c]];
        m_steps[f][c] = (offset & 1) + (offset >> 1 & 1) * mesh.nodeDims.i + (offset >> 2) * layer;
      }
  }

  bool read(FaceRef ref) {
    if (ref.cell < m_rowBegin || ref.cell >= m_rowEnd) {
      const std::size_t row = ref.cell / m_cells.cells.i;
      m_rowBegin = row * m_cells.cells.i;
      m_rowEnd = m_rowBegin + m_cells.cells.i;
      m_nodeBegin = m_cells.nodes.flat(0, row % m_cells.cells.j, row / m_cells.cells.j);
    }
    const std::size_t base = m_nodeBegin + (ref.cell - m_rowBegin);
    for (std::size_t c = 0; c < 4; ++c)
      corners.ids[c] = base + m_steps[ref.face][c];
    return true;
  }
  void readAgain(FaceRef ref) { read(ref); }
  bool isReversed() const { return m_isLeftHanded; }
  FaceCorners corners;

private:
  const GridCells& m_cells;
  bool m_isLeftHanded;
  std::array<std::array<std::size_t, 4>, 6> m_steps;
  std::size_t m_rowBegin = 0;
  std::size_t m_rowEnd = 0;
  std::size_t m_nodeBegin = 0;
};

} // namespace

bool FaceWriter::isLeftHanded(const MeshView& mesh) {
  constexpr std::size_t SAMPLES = 63;
  int sum = 0;
  for (std::size_t s = 0; s < std::min(SAMPLES, mesh.numCells); ++s) {
    const std::size_t cell = s * mesh.numCells / std::min(SAMPLES, mesh.numCells);
    CellNodes nodes{};
    std::visit([&](const auto& cells) { cells.load(cell, nodes); }, mesh.cells);
    if (std::any_of(nodes.begin(), nodes.end(), [&](std::size_t id) {
          return (id >> mesh.slotBits) < mesh.beginNode || (id >> mesh.slotBits) >= mesh.endNode;
        }))
      continue;
    const double size = sizeOf(mesh, HEXAHEDRON, nodes);
    sum += (size > 0.0) - (size < 0.0);
  }
  return sum < 0;
}

std::unique_ptr<PolygonSource> FaceWriter::polygons(const MeshView& mesh, const FaceList& faces, Faults& faults) {
  return std::visit(
      [&](const auto& cells) {
        return readPolygons(
            faces.size(), mesh.endNode << mesh.slotBits, mesh.points, [&faces](std::size_t f) { return faces[f]; },
            [&mesh, &cells, &faults] { return GeneralReader(mesh, cells, false, faults); });
      },
      mesh.cells);
}

void FaceWriter::write(Run& run, const MeshView& mesh, const FaceList& faces, SurfaceData& output, Faults& faults) {
  const bool isLeft = mesh.isStructured && isLeftHanded(mesh);
  const PolygonWriter writer{run, mesh.points, mesh.endNode << mesh.slotBits, mesh.numCells, output, faults};
  const auto faceAt = [&](std::size_t f) { return faces[f]; };
  if (const auto* grid = std::get_if<GridCells>(&mesh.cells);
      grid && writer.write(faces.size(), faceAt, [&] { return GridReader(mesh, *grid, isLeft); }))
    return;
  std::visit(
      [&](const auto& cells) {
        writer.write(faces.size(), faceAt, [&] { return GeneralReader(mesh, cells, isLeft, faults); });
      },
      mesh.cells);
}

} // namespace kx
