// SPDX-License-Identifier: BSD-3-Clause
#include "CellViews.h"

namespace kx {

CellCode CornerCells::load(std::size_t cell, CellNodes& ids) const {
  const auto [i, j, k] = cells.split(cell);
  // Corners of the neighbours, fetched when first asked for; the cell itself is in the middle.
  std::array<std::array<KbVec3<double>, 8>, 27> corners;
  std::array<bool, 27> isFetched{};
  const auto cornersOf = [&](std::size_t di, std::size_t dj, std::size_t dk) -> const std::array<KbVec3<double>, 8>& {
    const std::size_t n = di + 3 * (dj + 3 * dk);
    if (!isFetched[n]) {
      geometry->getCellCorners(i + di - 1, j + dj - 1, k + dk - 1, corners[n].data());
      isFetched[n] = true;
    }
    return corners[n];
  };
  const auto exists = [](std::size_t index, std::size_t shift, std::size_t count) {
    return index + shift >= 1 && index + shift - 1 < count;
  };
  const std::array<KbVec3<double>, 8> own = cornersOf(1, 1, 1);
  for (std::size_t offset = 0; offset < 8; ++offset) {
    const std::size_t oi = offset & 1;
    const std::size_t oj = offset >> 1 & 1;
    const std::size_t ok = offset >> 2;
    std::size_t slot = 0;
    for (; slot < offset; ++slot) {
      const std::size_t di = 1 + oi - (slot & 1);
      const std::size_t dj = 1 + oj - (slot >> 1 & 1);
      const std::size_t dk = 1 + ok - (slot >> 2);
      if (!exists(i, di, cells.i) || !exists(j, dj, cells.j) || !exists(k, dk, cells.k)) continue;
      if (cornersOf(di, dj, dk)[CORNER_OF_OFFSET[slot]] == own[CORNER_OF_OFFSET[offset]]) break;
    }
    ids[CORNER_OF_OFFSET[offset]] = nodes.flat(i + oi, j + oj, k + ok) << CORNER_SLOT_BITS | slot;
  }
  return HEXAHEDRON;
}

} // namespace kx
