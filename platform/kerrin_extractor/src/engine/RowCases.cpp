// SPDX-License-Identifier: BSD-3-Clause
#include "RowCases.h"

#include "CaseTable.h"
#include "CellViews.h"

#include <algorithm>

namespace kx {

RowCases::RowCases() {
  // Corner of bit b: the offsets (i, j, k) are the bits of b.
  constexpr std::array<std::array<std::uint8_t, 3>, 12> SLOTS{{{0, 1, I00},
                                                               {2, 3, I10},
                                                               {4, 5, I01},
                                                               {6, 7, I11},
                                                               {0, 3, J0},
                                                               {1, 2, AFTER + J0},
                                                               {4, 7, J1},
                                                               {5, 6, AFTER + J1},
                                                               {0, 4, K0},
                                                               {1, 5, AFTER + K0},
                                                               {3, 7, K1},
                                                               {2, 6, AFTER + K1}}};
  const CaseTable& table = CaseTable::of(HEXAHEDRON);
  for (const auto& [a, b, s] : SLOTS)
    ends[s] = {OFFSET_OF_CORNER[a], OFFSET_OF_CORNER[b]};
  for (std::size_t bits = 0; bits < 256; ++bits) {
    std::size_t number = 0;
    for (std::size_t b = 0; b < 8; ++b)
      number |= (bits >> b & 1) << CORNER_OF_OFFSET[b];
    const CaseTable::Case& from = table[number];
    Case& to = cases[bits];
    to.numPolygons = from.numPolygons;
    to.listSize = from.listSize;
    for (std::size_t side = 0; side < 2; ++side) {
      for (std::size_t i = 0; i < from.listSize; ++i) {
        const std::uint8_t edge = from.lists[side][i];
        std::uint8_t slot = END_SLOT;
        for (const auto& [a, b, s] : SLOTS)
          if (edge != CaseTable::END_OF_POLYGON && table.edge(edge)[0] == a && table.edge(edge)[1] == b) slot = s;
        to.lists[side][i] = slot;
      }
    }
    for (const auto& [a, b, s] : SLOTS)
      if (s < NUM_COUNTERS) to.increments[s] = static_cast<std::uint32_t>((number >> a ^ number >> b) & 1);
  }
}

const RowCases& RowCases::instance() {
  static const RowCases table;
  return table;
}

RowCases::Polygons RowCases::collapsed(std::size_t bits, std::size_t exact, bool isInverted) const {
  const Case& whole = cases[bits];
  Polygons result;
  std::array<std::uint8_t, 12> open; // the polygon so far, without repeated corners
  std::size_t size = 0;
  const auto emit = [&](std::size_t from) {
    if (size - from < 3) return;
    for (std::size_t i = from; i < size; ++i)
      result.list[result.listSize++] = open[i];
    result.list[result.listSize++] = END_SLOT;
    ++result.numPolygons;
  };
  for (std::size_t i = 0; i < whole.listSize; ++i) {
    std::uint8_t slot = whole.lists[isInverted][i];
    if (slot == END_SLOT) {
      emit(0);
      size = 0;
      continue;
    }
    const std::uint8_t inner = ends[slot][bits >> ends[slot][0] & 1 ? 0 : 1];
    if (exact >> inner & 1) slot = static_cast<std::uint8_t>(NODE_SLOT + inner);
    const auto seen = static_cast<std::size_t>(std::find(open.begin(), open.begin() + size, slot) - open.begin());
    if (seen == size) {
      open[size++] = slot;
    } else {
      emit(seen);
      size = seen + 1;
    }
  }
  return result;
}

} // namespace kx
