// SPDX-License-Identifier: BSD-3-Clause
#include "FaceWriter.h"

#include "CellGeometry.h"
#include "NodeNumbers.h"

#include <atomic>
#include <cmath>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 2048; // faces of one step
constexpr std::size_t WORDS = 128;  // words of node bits of one step
constexpr std::uint16_t REVERSED = 0x8000;

bool isFinite(const KbVec3<double>& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

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

/// Whether a structured mesh is left-handed: what most of a sample of its cells say.
bool isLeftHanded(const MeshView& mesh) {
  constexpr std::size_t SAMPLES = 255;
  int sum = 0;
  for (std::size_t s = 0; s < std::min(SAMPLES, mesh.numCells); ++s) {
    const std::size_t cell = s * mesh.numCells / std::min(SAMPLES, mesh.numCells);
    CellNodes nodes;
    std::visit([&](const auto& cells) { cells.load(cell, nodes); }, mesh.cells);
    const double size = sizeOf(mesh, HEXAHEDRON, nodes);
    sum += (size > 0.0) - (size < 0.0);
  }
  return sum < 0;
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
  bool read(FaceRef ref) { return corners.load(m_mesh, m_cells, ref) && clean() && isFinite(ref.cell); }
  /// The same, without a look at the positions, for a face that was not left out.
  void readAgain(FaceRef ref) {
    corners.load(m_mesh, m_cells, ref);
    clean();
  }
  bool isReversed() const {
    if (m_mesh.hasGridNodes) return m_isLeftHanded;
    const double size = sizeOf(m_mesh, corners);
    return size < 0.0 || (!(size > 0.0) && m_isLeftHanded);
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
};

/// Reads faces of a structured grid whose nodes are all in place: corners are a matter of arithmetic. The row of cells
/// is kept from face to face.
class GridReader {
public:
  GridReader(const MeshView& mesh, const GridCells& cells, bool isLeftHanded, Faults&)
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

/// Writes the faces as `makeReader()` reads them. False when a written position is not finite.
template <class MakeReader>
bool writeFaces(Run& run, const MeshView& mesh, const FaceList& faces, const MakeReader& makeReader,
                SurfaceData& output, Faults& faults) {
  const std::size_t numChunks = (faces.size() + CHUNK - 1) / CHUNK;
  const std::size_t endId = mesh.endNode << mesh.slotBits;
  NodeNumbers numbers(endId);
  Array<std::uint16_t> kinds; // number of corners, 0 for a face that is left out, and whether it is reversed
  kinds.resize(faces.size());
  struct Count {
    std::size_t polygons = 0;
    std::size_t indices = 0;
  };
  std::vector<Count> begins(numChunks + 1);

  run.phase("number nodes", numChunks, [&](std::size_t chunk) {
    auto reader = makeReader();
    Count count;
    for (std::size_t f = chunk * CHUNK; f < std::min((chunk + 1) * CHUNK, faces.size()); ++f) {
      kinds[f] = 0;
      if (!reader.read(faces[f])) continue;
      const std::size_t n = std::min<std::size_t>(reader.corners.count, REVERSED - 1u);
      for (std::size_t c = 0; c < n; ++c)
        numbers.mark(reader.corners.ids[c]);
      kinds[f] = static_cast<std::uint16_t>(n | (reader.isReversed() ? REVERSED : 0u));
      ++count.polygons;
      count.indices += n + 1;
    }
    begins[chunk + 1] = count;
  });
  for (std::size_t chunk = 0; chunk < numChunks; ++chunk) {
    begins[chunk + 1].polygons += begins[chunk].polygons;
    begins[chunk + 1].indices += begins[chunk].indices;
  }
  numbers.finish();
  if (numbers.count() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    faults.post("the surface has " + std::to_string(numbers.count()) + " nodes, too many for 32-bit indices");
    output.clear();
    return true;
  }

  output.indices.resize(begins.back().indices);
  output.inputCells.resize(begins.back().polygons, mesh.numCells);
  run.phase("write faces", numChunks, [&](std::size_t chunk) {
    auto reader = makeReader();
    std::size_t polygon = begins[chunk].polygons;
    std::int32_t* index = output.indices.data() + begins[chunk].indices;
    for (std::size_t f = chunk * CHUNK; f < std::min((chunk + 1) * CHUNK, faces.size()); ++f) {
      if (kinds[f] == 0) continue;
      reader.readAgain(faces[f]);
      const std::size_t n = kinds[f] & (REVERSED - 1u);
      const bool isReversed = (kinds[f] & REVERSED) != 0;
      for (std::size_t c = 0; c < n; ++c)
        *index++ = static_cast<std::int32_t>(numbers[reader.corners.ids[isReversed ? n - 1 - c : c]]);
      *index++ = -1;
      output.inputCells.set(polygon++, faces[f].cell);
    }
  });

  output.vertices.resize(3 * numbers.count());
  output.edgeBegins.resize(numbers.count(), endId);
  output.edgeEnds.resize(numbers.count(), endId);
  output.weights.resize(numbers.count());
  std::atomic<bool> areFinite{true};
  run.phase("write nodes", (numbers.numWords() + WORDS - 1) / WORDS, [&](std::size_t step) {
    double notFinite = 0.0;
    for (std::size_t w = step * WORDS; w < std::min((step + 1) * WORDS, numbers.numWords()); ++w)
      numbers.visitWord(w, [&](std::size_t id, std::size_t vertex) {
        const KbVec3<double> p = mesh.points[id];
        for (std::size_t axis = 0; axis < 3; ++axis) {
          output.vertices[3 * vertex + axis] = static_cast<float>(p[axis]);
          notFinite += p[axis] - p[axis];
        }
        output.edgeBegins.set(vertex, id);
        output.edgeEnds.set(vertex, id);
        output.weights[vertex] = 0.0f;
      });
    if (!(notFinite == 0.0)) areFinite.store(false, std::memory_order_relaxed);
  });
  return areFinite.load(std::memory_order_relaxed);
}

} // namespace

void FaceWriter::write(Run& run, const MeshView& mesh, const FaceList& faces, SurfaceData& output, Faults& faults) {
  const bool isLeft = mesh.isStructured && isLeftHanded(mesh);
  if (const auto* grid = std::get_if<GridCells>(&mesh.cells);
      grid && writeFaces(
                  run, mesh, faces, [&] { return GridReader(mesh, *grid, isLeft, faults); }, output, faults))
    return;
  std::visit(
      [&](const auto& cells) {
        writeFaces(
            run, mesh, faces, [&] { return GeneralReader(mesh, cells, isLeft, faults); }, output, faults);
      },
      mesh.cells);
}

} // namespace kx
