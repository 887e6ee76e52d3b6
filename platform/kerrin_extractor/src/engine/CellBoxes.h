// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Box.h"
#include "Faults.h"
#include "MeshView.h"
#include "Run.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kx {

/// Boxes around runs of consecutive cells, kept as long as the mesh's stamps are the same, so that a section looks at
/// the cells near it only. Meshes with axes have no need to keep them.
class CellBoxes {
public:
  static constexpr std::size_t RUN = 8;      ///< cells of a box; six bytes a cell
  static constexpr std::size_t CHUNK = 4096; ///< cells of a box around boxes, and of one step
  static constexpr std::size_t NUM_PHASES = 1;

  /// Announces cells that cannot be read when it builds the boxes. Nodes whose coordinates are not finite are in no
  /// box.
  void update(Run& run, const MeshView& mesh, Faults& faults);

  std::size_t numChunks() const { return m_chunks.size(); }
  const Box& chunk(std::size_t number) const { return m_chunks[number]; }
  /// Visits `(box, begin, end)` of the runs of cells in a chunk.
  template <class Visit>
  void forEachRun(const MeshView& mesh, std::size_t chunk, const Visit& visit) const {
    const std::size_t end = std::min((chunk + 1) * CHUNK, mesh.numCells);
    for (std::size_t begin = chunk * CHUNK; begin < end; begin += RUN) {
      const std::size_t last = std::min(begin + RUN, end);
      if (hasAxes(mesh))
        visit(boxOnAxes(mesh, begin, last), begin, last);
      else
        visit(m_runs[begin / RUN], begin, last);
    }
  }

private:
  static bool hasAxes(const MeshView& mesh) { return mesh.points.kind == PointView::Kind::AXES; }
  static Box boxOnAxes(const MeshView& mesh, std::size_t begin, std::size_t end);

  bool m_isValid = false;
  std::pair<std::size_t, std::size_t> m_stamps;
  std::vector<Box> m_runs;
  std::vector<Box> m_chunks;
};

} // namespace kx
