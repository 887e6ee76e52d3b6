// SPDX-License-Identifier: BSD-3-Clause
#include "PointView.h"

namespace kx {

void PointView::setAxes(const KbVec3<double>& low, const KbVec3<double>& high) {
  kind = Kind::AXES;
  const std::array<std::size_t, 3> counts{nodes.i, nodes.j, nodes.k};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    axes[axis].assign(counts[axis], low[axis]);
    for (std::size_t n = 0; n < counts[axis] && counts[axis] > 1; ++n)
      axes[axis][n] =
          low[axis] + (high[axis] - low[axis]) * (static_cast<double>(n) / static_cast<double>(counts[axis] - 1));
  }
}

KbVec3<double> PointView::general(std::size_t id) const {
  switch (kind) {
  case Kind::GEOMETRY_I:
    return geometryI->getCoord(id);
  case Kind::CORNERS: {
    const std::size_t slot = id & 7;
    const auto [i, j, k] = nodes.split(id >> CORNER_SLOT_BITS);
    KbVec3<double> own[8];
    corners->getCellCorners(i - (slot & 1), j - (slot >> 1 & 1), k - (slot >> 2), own);
    return own[CORNER_OF_OFFSET[slot]];
  }
  default: {
    const auto [i, j, k] = nodes.split(id);
    if (kind == Kind::GEOMETRY_IJK) return geometryIjk->getCoord(i, j, k);
    return {axes[0][i], axes[1][j], axes[2][k]};
  }
  }
}

} // namespace kx
