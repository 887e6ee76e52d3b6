// SPDX-License-Identifier: BSD-3-Clause
#include "BoxSkin.h"

#include "Blocks.h"
#include "FaceWriter.h"

#include <atomic>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t ROWS = 64;  // of cells or of nodes in one step
constexpr std::size_t AHEAD = 16; // rows whose ends are fetched before their turn: each is far from the last one

/// The border nodes along one row of a box: all of them, or its two ends.
struct NodeRow {
  std::size_t first; ///< number of the first one
  bool isWhole;
  std::size_t number(std::size_t i) const { return first + (isWhole || i == 0 ? i : 1); }
};

/// Numbers the border nodes of a box of nodes, i fastest.
class BorderNodes {
public:
  explicit BorderNodes(const Dims& nodes)
      : m_nodes(nodes)
      , m_layer(nodes.i * nodes.j)
      , m_ring(2 * nodes.i + 2 * (nodes.j - 2)) {}

  std::size_t count() const { return 2 * m_layer + (m_nodes.k - 2) * m_ring; }
  NodeRow row(std::size_t j, std::size_t k) const {
    const std::size_t layerFirst = k == 0 ? 0 : m_layer + (k - 1) * m_ring;
    if (k == 0 || k + 1 == m_nodes.k) return {layerFirst + m_nodes.i * j, true};
    if (j == 0) return {layerFirst, true};
    return {layerFirst + m_nodes.i + 2 * (j - 1), j + 1 == m_nodes.j};
  }

private:
  Dims m_nodes;
  std::size_t m_layer; ///< nodes of the lowest and of the highest layer
  std::size_t m_ring;  ///< border nodes of a layer between
};

/// Writes the faces of one row of cells after the other.
class RowFaces {
public:
  RowFaces(const MeshView& mesh, const IndexBox& box, const BorderNodes& border, SurfaceData& output)
      : m_mesh(mesh)
      , m_box(box)
      , m_border(border)
      , m_isLeftHanded(FaceWriter::isLeftHanded(mesh))
      , m_output(output) {}

  /// How many faces the rows before this one have.
  std::size_t begin(std::size_t row) const {
    const std::size_t j = row % m_box.counts.j;
    const std::size_t k = row / m_box.counts.j;
    const std::size_t last = (m_box.counts.k - 1) * m_box.counts.j; // first row of the highest layer
    const std::size_t numWhole = k + (j > 0 ? 1 : 0)                // at the lower side of j
                                 + k                                // at its upper side
                                 + std::min(row, m_box.counts.j) + (row > last ? row - last : 0);
    return 2 * row + m_box.counts.i * numWhole;
  }

  void write(std::size_t row) const {
    const Dims& n = m_box.counts;
    const std::size_t j = row % n.j;
    const std::size_t k = row / n.j;
    const NodeRow rows[4]{m_border.row(j, k), m_border.row(j + 1, k), m_border.row(j, k + 1),
                          m_border.row(j + 1, k + 1)};
    Place place{m_output.indices.data() + 5 * begin(row), begin(row),
                m_mesh.cellDims.flat(m_box.begin.i, m_box.begin.j + j, m_box.begin.k + k)};
    writeFaces(rows, HEXAHEDRON_FACE[0][0], 0, 1, place);
    writeFaces(rows, HEXAHEDRON_FACE[0][1], n.i - 1, n.i, place);
    if (j == 0) writeFaces(rows, HEXAHEDRON_FACE[1][0], 0, n.i, place);
    if (j + 1 == n.j) writeFaces(rows, HEXAHEDRON_FACE[1][1], 0, n.i, place);
    if (k == 0) writeFaces(rows, HEXAHEDRON_FACE[2][0], 0, n.i, place);
    if (k + 1 == n.k) writeFaces(rows, HEXAHEDRON_FACE[2][1], 0, n.i, place);
  }

private:
  struct Place {
    std::int32_t* index;
    std::size_t polygon;
    std::size_t firstCell; ///< of the row
  };

  /// The faces of one direction of the cells [begin, end); along a row the numbers of their corners go up by one.
  void writeFaces(const NodeRow* rows, std::size_t face, std::size_t begin, std::size_t end, Place& place) const {
    std::array<std::int32_t, 4> corners;
    for (std::size_t c = 0; c < 4; ++c) {
      const std::size_t offset =
          OFFSET_OF_CORNER[CELL_FACES[HEXAHEDRON].faces[face].corners[m_isLeftHanded ? 3 - c : c]];
      corners[c] = static_cast<std::int32_t>(rows[offset >> 1].number(begin + (offset & 1)));
    }
    for (std::size_t i = begin; i < end; ++i) {
      for (std::int32_t& corner : corners)
        *place.index++ = corner++;
      *place.index++ = -1;
      m_output.inputCells.set(place.polygon++, place.firstCell + i);
    }
  }

  const MeshView& m_mesh;
  const IndexBox& m_box;
  const BorderNodes& m_border;
  bool m_isLeftHanded;
  SurfaceData& m_output;
};

} // namespace

std::optional<IndexBox> BoxSkin::find(const MeshView& mesh, const CellRanges& ranges) {
  if (!mesh.hasGridNodes || mesh.slotBits > 0 || mesh.hasClosedCells()) return std::nullopt;
  const std::optional<IndexBox> box = ranges.asBox(mesh.cellDims);
  // The general way tells what is too large for 32-bit indices, and knows about nothing at all.
  constexpr auto LIMIT = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  if (!box || box->counts.count() == 0 || mesh.endNode > LIMIT) return std::nullopt;
  return box;
}

bool BoxSkin::write(Run& run, const MeshView& mesh, const IndexBox& box, SurfaceData& output) {
  const Dims nodes{box.counts.i + 1, box.counts.j + 1, box.counts.k + 1};
  const BorderNodes border(nodes);
  const RowFaces faces(mesh, box, border, output);
  const std::size_t numRows = box.counts.j * box.counts.k;
  const std::size_t numFaces = faces.begin(numRows);
  output.indices.resize(5 * numFaces);
  output.inputCells.resize(numFaces, mesh.numCells);
  run.phase("write faces", numBlocksOf(numRows, ROWS), [&](std::size_t step) {
    for (std::size_t row = step * ROWS; row < std::min((step + 1) * ROWS, numRows); ++row)
      faces.write(row);
  });

  const std::size_t numNodeRows = nodes.j * nodes.k;
  output.vertices.resize(3 * border.count());
  output.edgeBegins.resize(border.count(), mesh.endNode);
  output.edgeEnds.resize(0, 0);
  output.weights.resize(0);
  std::atomic<bool> areFinite{true};
  run.phase("write nodes", numBlocksOf(numNodeRows, ROWS), [&](std::size_t step) {
    float notFinite = 0.0f; // found in the output: numbers that are too great for it count as well
    const auto idOf = [&](std::size_t i, std::size_t r) {
      return mesh.nodeDims.flat(box.begin.i + i, box.begin.j + r % nodes.j, box.begin.k + r / nodes.j);
    };
    for (std::size_t r = step * ROWS; r < std::min((step + 1) * ROWS, numNodeRows); ++r) {
      if (r + AHEAD < numNodeRows) {
        mesh.points.prefetch(idOf(0, r + AHEAD));
        mesh.points.prefetch(idOf(box.counts.i, r + AHEAD));
      }
      const std::size_t j = box.begin.j + r % nodes.j;
      const std::size_t k = box.begin.k + r / nodes.j;
      const NodeRow row = border.row(r % nodes.j, r / nodes.j);
      const std::size_t first = idOf(0, r);
      std::size_t vertex = row.first;
      for (std::size_t i = 0; i < nodes.i; i += row.isWhole ? 1 : box.counts.i, ++vertex) {
        const KbVec3<double> p = mesh.points.at(box.begin.i + i, j, k);
        for (std::size_t axis = 0; axis < 3; ++axis) {
          float& out = output.vertices[3 * vertex + axis];
          out = static_cast<float>(p[axis]);
          notFinite += out - out;
        }
        output.edgeBegins.set(vertex, first + i);
      }
    }
    if (notFinite != 0.0f) areFinite.store(false, std::memory_order_relaxed);
  });
  return areFinite.load(std::memory_order_relaxed);
}

} // namespace kx
