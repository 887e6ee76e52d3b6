// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Blocks.h"
#include "KnownFunctions.h"
#include "RowFunctions.h"
#include "RowPoints.h"
#include "RowPolygoniser.h"
#include "RowValues.h"

#include <algorithm>
#include <atomic>

namespace kx {

/// One cut, as its passes share it.
struct RowPolygoniser::Job {
  static constexpr std::size_t ROWS_A_STEP = 32;

  Run& run;
  const MeshView& mesh;
  double isovalue;
  SurfaceData& output;
  bool isInverted;
  bool buildsIndex;
  std::atomic<bool> isRefused{false}; ///< something needs the general way

  const Dims& nodes() const { return mesh.nodeDims; }
  const Dims& cells() const { return mesh.cellDims; }
  std::size_t rowOf(std::size_t j, std::size_t k) const { return j + mesh.nodeDims.j * k; }
  std::size_t numRows() const { return mesh.nodeDims.j * mesh.nodeDims.k; }
  std::size_t numSteps() const { return numBlocksOf(numRows(), ROWS_A_STEP); }
  std::size_t endOfStep(std::size_t step) const { return std::min((step + 1) * ROWS_A_STEP, numRows()); }
  /// Calls `body(row, j, k)` for the rows of a step.
  template <class Body>
  void forRows(std::size_t step, Body&& body) const {
    std::size_t j = step * ROWS_A_STEP % mesh.nodeDims.j;
    std::size_t k = step * ROWS_A_STEP / mesh.nodeDims.j;
    for (std::size_t row = step * ROWS_A_STEP; row < endOfStep(step); ++row) {
      body(row, j, k);
      if (++j == mesh.nodeDims.j) {
        j = 0;
        ++k;
      }
    }
  }
};

} // namespace kx
