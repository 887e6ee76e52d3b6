// SPDX-License-Identifier: BSD-3-Clause
#include "CellBoxes.h"

#include "Blocks.h"
#include "CellReader.h"
#include "FinitePosition.h"

#include <type_traits>

namespace kx {
namespace {

/// Adds the corners of cells one by one, closed ones too: a filter may open them while the boxes are kept.
template <class Cells>
void addCells(const MeshView& mesh, const Cells& cells, std::size_t begin, std::size_t end, Box& box, Faults& faults) {
  CellReader<Purpose::POSITIONS, Cells> reader(mesh, cells, faults);
  const auto add = [&](const std::size_t* nodes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      if (const KbVec3<double> p = mesh.points[nodes[i]]; isFinite(p)) box.add(p);
  };
  for (std::size_t cell = begin; cell < end; ++cell)
    reader.readAny(
        cell, [&](CellCode code, const CellNodes& nodes) { add(nodes.data(), NUM_CORNERS[code]); },
        [&](const auto&, const std::vector<std::size_t>& nodes) { add(nodes.data(), nodes.size()); });
}

/// The same for grids with shared nodes, row by row.
void addGridCells(const MeshView& mesh, std::size_t begin, std::size_t end, Box& box) {
  while (begin < end) {
    const auto [i, j, k] = mesh.cellDims.split(begin);
    const std::size_t count = std::min(end - begin, mesh.cellDims.i - i);
    for (std::size_t corner = 0; corner < 4; ++corner) {
      const std::size_t first = mesh.nodeDims.flat(i, j + corner % 2, k + corner / 2);
      for (std::size_t node = first; node <= first + count; ++node)
        if (const KbVec3<double> p = mesh.points[node]; isFinite(p)) box.add(p);
    }
    begin += count;
  }
}

} // namespace

Box CellBoxes::boxOnAxes(const MeshView& mesh, std::size_t begin, std::size_t end) {
  const Dims& dims = mesh.cellDims;
  const auto first = dims.split(begin);
  const auto last = dims.split(end - 1);
  std::array<std::pair<std::size_t, std::size_t>, 3> range; // of cells
  range[2] = {first[2], last[2]};
  range[1] = first[2] == last[2] ? std::pair(first[1], last[1]) : std::pair(std::size_t{0}, dims.j - 1);
  range[0] =
      first[2] == last[2] && first[1] == last[1] ? std::pair(first[0], last[0]) : std::pair(std::size_t{0}, dims.i - 1);
  Box box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::vector<double>& x = mesh.points.axes[axis];
    // Positions ascend or descend; should they do neither, the whole axis is the answer.
    for (std::size_t i = range[axis].first; i <= range[axis].second + 1; ++i) {
      if (!isFinite({x[i], 0.0, 0.0})) continue;
      box.low[axis] = std::min(box.low[axis], x[i]);
      box.high[axis] = std::max(box.high[axis], x[i]);
    }
  }
  return box;
}

void CellBoxes::update(Run& run, const MeshView& mesh, Faults& faults) {
  const std::pair stamps(mesh.topologyStamp, mesh.geometryStamp);
  const bool isDone = m_isValid && stamps == m_stamps && m_chunks.size() == numBlocksOf(mesh.numCells, CHUNK);
  m_isValid = false;
  m_stamps = stamps;
  if (!isDone) {
    m_chunks.assign(numBlocksOf(mesh.numCells, CHUNK), Box());
    m_runs.assign(hasAxes(mesh) ? 0 : numBlocksOf(mesh.numCells, RUN), Box());
  }
  run.phase("index", isDone ? 0 : m_chunks.size(), [&](std::size_t chunk) {
    const std::size_t end = std::min((chunk + 1) * CHUNK, mesh.numCells);
    if (hasAxes(mesh)) {
      m_chunks[chunk] = boxOnAxes(mesh, chunk * CHUNK, end);
      return;
    }
    std::visit(
        [&](const auto& cells) {
          for (std::size_t begin = chunk * CHUNK; begin < end; begin += RUN) {
            Box& box = m_runs[begin / RUN];
            if constexpr (std::is_same_v<std::decay_t<decltype(cells)>, GridCells>)
              addGridCells(mesh, begin, std::min(begin + RUN, end), box);
            else
              addCells(mesh, cells, begin, std::min(begin + RUN, end), box, faults);
            m_chunks[chunk].add(box);
          }
        },
        mesh.cells);
  });
  m_isValid = true;
}

} // namespace kx
