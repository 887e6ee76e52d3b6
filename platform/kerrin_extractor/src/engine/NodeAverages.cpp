// SPDX-License-Identifier: BSD-3-Clause
#include "NodeAverages.h"

#include "Blocks.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 4096; // cells whose nodes are known to lie in one range
constexpr std::size_t SLABS = 32;   // parts of the nodes, each summed up by one thread

/// The nodes of open cells, one cell after the other.
template <class Cells>
class OpenCells {
public:
  OpenCells(const MeshView& mesh, const Cells& cells)
      : m_mesh(mesh)
      , m_cells(cells) {}

  /// Calls `visit(node)` for the nodes of a cell.
  template <class Visit>
  void forNodes(std::size_t cell, const Visit& visit) {
    if (m_mesh.hasClosedCells() && !m_mesh.isOpen(cell)) return;
    const CellCode code = m_cells.loadForValues(cell, m_corners);
    if (code < POLYHEDRON) {
      for (std::size_t c = 0; c < NUM_CORNERS[code]; ++c)
        add(m_corners[c], visit);
    } else if (code != UNREADABLE && m_mesh.loadPolyhedron(cell, m_faces, m_nodes)) {
      for (const std::size_t id : m_nodes)
        add(id, visit);
    }
  }

private:
  template <class Visit>
  void add(std::size_t id, const Visit& visit) const {
    const std::size_t node = id >> m_mesh.slotBits;
    if (node >= m_mesh.beginNode && node < m_mesh.endNode) visit(node);
  }

  const MeshView& m_mesh;
  const Cells& m_cells;
  CellNodes m_corners;
  std::vector<std::vector<std::size_t>> m_faces;
  std::vector<std::size_t> m_nodes;
};

/// The four rows of cells around a row of nodes, over the cells beside up to 16 of those.
struct CellRows {
  static constexpr std::size_t NODES = 16;
  double values[4][NODES + 1];
  bool isOpen[4][NODES + 1];
  bool areAllOpen = true;

  CellRows(const GridAverages& averages, std::size_t begin, std::size_t j, std::size_t k, std::size_t count) {
    const MeshView& mesh = *averages.mesh;
    const Dims& cells = mesh.cellDims;
    std::visit(
        [&](const auto& input) {
          for (std::size_t r = 0; r < 4; ++r) {
            const std::size_t cj = j - 1 + (r & 1); // beyond the cells, too, where it is less than 0
            const std::size_t ck = k - 1 + (r >> 1);
            for (std::size_t c = 0; c <= count; ++c) {
              const std::size_t ci = begin - 1 + c;
              isOpen[r][c] = ci < cells.i && cj < cells.j && ck < cells.k &&
                             (!mesh.hasClosedCells() || mesh.isOpen(cells.flat(ci, cj, ck)));
              areAllOpen = areAllOpen && isOpen[r][c];
              if (!isOpen[r][c]) continue;
              if constexpr (requires { input.dims; })
                values[r][c] = input.set->get(ci, cj, ck);
              else
                values[r][c] = input(cells.flat(ci, cj, ck));
            }
          }
        },
        averages.cellValues);
  }
};

} // namespace

void GridAverages::fill(std::size_t begin, std::size_t j, std::size_t k, std::size_t count, double* averages) const {
  for (; count > CellRows::NODES; begin += CellRows::NODES, averages += CellRows::NODES, count -= CellRows::NODES)
    fill(begin, j, k, CellRows::NODES, averages);
  const CellRows rows(*this, begin, j, k, count);
  // Differences from the first value: the mean of equal values is that value.
  if (rows.areAllOpen) {
    for (std::size_t n = 0; n < count; ++n) {
      const double first = rows.values[0][n];
      double sum = rows.values[0][n + 1] - first;
      for (std::size_t r = 1; r < 4; ++r)
        sum = sum + (rows.values[r][n] - first) + (rows.values[r][n + 1] - first);
      averages[n] = first + sum / 8.0;
    }
    return;
  }
  for (std::size_t n = 0; n < count; ++n) {
    double first = 0.0;
    double sum = 0.0;
    std::size_t numOpen = 0;
    for (std::size_t r = 0; r < 4; ++r) {
      for (std::size_t c = n; c < n + 2; ++c) {
        if (!rows.isOpen[r][c]) continue;
        if (numOpen++ == 0)
          first = rows.values[r][c];
        else
          sum += rows.values[r][c] - first;
      }
    }
    averages[n] = numOpen > 0 ? first + sum / static_cast<double>(numOpen) : std::numeric_limits<double>::quiet_NaN();
  }
}

double GridAverages::operator()(std::size_t id) const {
  const auto [i, j, k] = mesh->nodeDims.split(id >> mesh->slotBits);
  double average = 0.0;
  fill(i, j, k, 1, &average);
  return average;
}

void averageToNodes(Run& run, const MeshView& mesh, const SetView<double>& cellValues, Array<double>& averages) {
  struct Range {
    std::size_t begin = std::numeric_limits<std::size_t>::max();
    std::size_t end = 0;
  };
  std::vector<Range> ranges(numBlocksOf(mesh.numCells, CHUNK));
  averages.resize(mesh.endNode);
  std::visit(
      [&](const auto& cells, const auto& values) {
        run.phase("find nodes", ranges.size(), [&](std::size_t chunk) {
          OpenCells reader(mesh, cells);
          Range range;
          for (std::size_t cell = chunk * CHUNK; cell < std::min((chunk + 1) * CHUNK, mesh.numCells); ++cell)
            reader.forNodes(cell, [&](std::size_t node) {
              range.begin = std::min(range.begin, node);
              range.end = std::max(range.end, node + 1);
            });
          ranges[chunk] = range;
        });
        const std::size_t slabSize = mesh.endNode / SLABS + 1;
        run.phase("average", SLABS, [&](std::size_t slab) {
          const std::size_t begin = std::min(slab * slabSize, mesh.endNode);
          const std::size_t size = std::min(slabSize, mesh.endNode - begin);
          double* sums = averages.data() + begin;
          std::fill_n(sums, size, 0.0);
          std::vector<std::uint32_t> counts(size, 0);
          OpenCells reader(mesh, cells);
          for (std::size_t chunk = 0; chunk < ranges.size(); ++chunk) {
            if (ranges[chunk].begin >= begin + size || ranges[chunk].end <= begin) continue;
            for (std::size_t cell = chunk * CHUNK; cell < std::min((chunk + 1) * CHUNK, mesh.numCells); ++cell) {
              const double value = values(cell);
              reader.forNodes(cell, [&](std::size_t node) {
                if (node - begin >= size) return;
                sums[node - begin] += value;
                ++counts[node - begin];
              });
            }
          }
          for (std::size_t n = 0; n < size; ++n)
            sums[n] = counts[n] > 0 ? sums[n] / counts[n] : std::numeric_limits<double>::quiet_NaN();
        });
      },
      mesh.cells, cellValues);
}

} // namespace kx
