// SPDX-License-Identifier: BSD-3-Clause
#include "LayerSurface.h"

#include "Blocks.h"
#include "FaceWriter.h"
#include "PolygonWriter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {
namespace {

constexpr std::size_t STEP = 4096; // cells or vertices of one step

std::size_t countAlong(const Dims& dims, std::size_t axis) { return axis == 0 ? dims.i : axis == 1 ? dims.j : dims.k; }

/// An edge along the axis by its two nodes; a whole position takes one node for both.
using Edge = std::pair<std::size_t, std::size_t>;
using Quad = std::array<Edge, 4>;

/// Finds the edges that the surface's corners lie on.
class QuadReader {
public:
  QuadReader(const MeshView& mesh, std::size_t axis, Faults& faults)
      : m_mesh(mesh)
      , m_axis(axis)
      , m_isReversed(FaceWriter::isLeftHanded(mesh))
      , m_faults(faults) {}

  /// `weight` is the position between the two nodes of an edge. False, and told, for a cell that cannot be used.
  bool read(std::size_t cell, double weight, Quad& quad) const {
    CellNodes nodes;
    std::visit([&](const auto& view) { view.load(cell, nodes); }, m_mesh.cells);
    if (!std::all_of(nodes.begin(), nodes.end(), [&](std::size_t n) { return m_mesh.hasNode(n); })) {
      m_faults.add(Faults::NODE_OUT_OF_RANGE, cell);
      return false;
    }
    const CellFace& face = CELL_FACES[HEXAHEDRON].faces[HEXAHEDRON_FACE[m_axis][1]];
    bool areFinite = true;
    for (std::size_t c = 0; c < 4; ++c) {
      const std::size_t corner = face.corners[m_isReversed ? 3 - c : c];
      const std::size_t upper = nodes[corner];
      const std::size_t lower = nodes[CORNER_OF_OFFSET[OFFSET_OF_CORNER[corner] & ~(std::size_t{1} << m_axis)]];
      quad[c] = {weight == 1.0 ? upper : lower, weight == 0.0 ? lower : upper};
      areFinite = areFinite && isFinite(m_mesh.points[quad[c].first]) && isFinite(m_mesh.points[quad[c].second]);
    }
    if (!areFinite) m_faults.add(Faults::COORDINATE_NOT_FINITE, cell);
    return areFinite;
  }

private:
  const MeshView& m_mesh;
  std::size_t m_axis;
  bool m_isReversed;
  Faults& m_faults;
};

void writeVertex(const MeshView& mesh, std::size_t vertex, const Edge& edge, double weight, SurfaceData& output) {
  const auto [lower, upper] = edge;
  const double w = lower == upper ? 0.0 : weight;
  const KbVec3<double> a = mesh.points[lower];
  const KbVec3<double> p = w == 0.0 ? a : a + (mesh.points[upper] - a) * w;
  setPosition(output.vertices, vertex, p);
  output.edgeBegins.set(vertex, lower);
  output.edgeEnds.set(vertex, upper);
  output.weights[vertex] = static_cast<float>(w);
}

/// Adds the open cells below those of a layer that are closed: a surface between two layers is that of either.
void addOpenBelowClosed(const MeshView& mesh, std::size_t axis, std::size_t layer, std::vector<std::size_t>& cells) {
  const Dims& dims = mesh.cellDims;
  const std::size_t step = axis == 0 ? 1 : axis == 1 ? dims.i : dims.i * dims.j;
  for (const std::size_t cell : openCellsOfLayer(mesh, axis, layer - 1))
    if (!mesh.isOpen(cell + step)) cells.push_back(cell);
}

} // namespace

std::vector<std::size_t> openCellsOfLayer(const MeshView& mesh, std::size_t axis, std::size_t index) {
  std::vector<std::size_t> cells;
  const Dims& dims = mesh.cellDims;
  if (axis > 2 || index >= countAlong(dims, axis)) return cells;
  const auto from = [&](std::size_t a) { return a == axis ? index : 0; };
  const auto to = [&](std::size_t a) { return a == axis ? index + 1 : countAlong(dims, a); };
  for (std::size_t k = from(2); k < to(2); ++k)
    for (std::size_t j = from(1); j < to(1); ++j)
      for (std::size_t i = from(0); i < to(0); ++i)
        if (const std::size_t cell = dims.flat(i, j, k); mesh.isOpen(cell)) cells.push_back(cell);
  return cells;
}

void LayerSurface::write(Run& run, const MeshView& mesh, std::size_t axis, double position, SurfaceData& output,
                         Faults& faults) {
  const std::size_t numLayers = axis > 2 ? 0 : countAlong(mesh.cellDims, axis);
  if (!(position >= 0.0 && position <= static_cast<double>(numLayers))) {
    if (std::isnan(position)) faults.post("the position nan along the axis is not a number");
    run.phase("find edges", 0, [](std::size_t) {});
    run.phase("write", 0, [](std::size_t) {});
    output.clear();
    return;
  }
  const std::size_t layer = std::min(static_cast<std::size_t>(position), numLayers - 1);
  const double weight = position - static_cast<double>(layer);
  std::vector<std::size_t> cells = openCellsOfLayer(mesh, axis, layer);
  const std::size_t numCells = cells.size();
  if (weight == 0.0 && layer > 0) addOpenBelowClosed(mesh, axis, layer, cells);
  const QuadReader reader(mesh, axis, faults);
  Array<Quad> quads;
  Array<std::uint8_t> isUsable;
  quads.resize(cells.size());
  isUsable.resize(cells.size());
  run.phase("find edges", numBlocksOf(cells.size(), STEP), [&](std::size_t step) {
    for (std::size_t q = step * STEP; q < std::min((step + 1) * STEP, cells.size()); ++q)
      isUsable[q] = reader.read(cells[q], q < numCells ? weight : 1.0, quads[q]);
  });

  std::vector<Edge> edges;
  std::vector<std::size_t> used;
  for (std::size_t q = 0; q < cells.size(); ++q) {
    if (isUsable[q] == 0) continue;
    used.push_back(q);
    edges.insert(edges.end(), quads[q].begin(), quads[q].end());
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

  output.indices.resize(5 * used.size());
  output.inputCells.resize(used.size(), mesh.numCells);
  output.vertices.resize(3 * edges.size());
  output.edgeBegins.resize(edges.size(), mesh.endNode);
  output.edgeEnds.resize(edges.size(), mesh.endNode);
  output.weights.resize(edges.size());
  const std::size_t numQuadSteps = numBlocksOf(used.size(), STEP);
  run.phase("write", numQuadSteps + numBlocksOf(edges.size(), STEP), [&](std::size_t step) {
    if (step < numQuadSteps) {
      for (std::size_t p = step * STEP; p < std::min((step + 1) * STEP, used.size()); ++p) {
        for (std::size_t c = 0; c < 4; ++c)
          output.indices[5 * p + c] = static_cast<std::int32_t>(
              std::lower_bound(edges.begin(), edges.end(), quads[used[p]][c]) - edges.begin());
        output.indices[5 * p + 4] = -1;
        output.inputCells.set(p, cells[used[p]]);
      }
      return;
    }
    const std::size_t begin = (step - numQuadSteps) * STEP;
    for (std::size_t v = begin; v < std::min(begin + STEP, edges.size()); ++v)
      writeVertex(mesh, v, edges[v], weight, output);
  });
}

} // namespace kx
