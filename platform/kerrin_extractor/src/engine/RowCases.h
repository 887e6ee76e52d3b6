// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kx {

/// The cases of a structured grid's cell by the bits of the four rows of nodes around it: bit 2 r + n is node i + n of
/// row r, rows in the order (j, k), (j + 1, k), (j, k + 1), (j + 1, k + 1).
struct RowCases {
  /// The counters that run along a row of cells, one for each kind of edge: along i at the four (j, k) corners, along j
  /// at k and k + 1, along k at j and j + 1. Behind a cell each has grown by one if its edge at i has a vertex; for
  /// edges along j and k that is the number of the cell's edge at i + 1.
  enum Counter { I00, I10, I01, I11, J0, J1, K0, K1, NUM_COUNTERS };
  static constexpr std::uint8_t AFTER = NUM_COUNTERS;        ///< slots from here: the counters behind the cell
  static constexpr std::uint8_t END_SLOT = 2 * NUM_COUNTERS; ///< holds -1
  static constexpr std::uint8_t NODE_SLOT = END_SLOT + 1;    ///< slots from here: vertices on the eight nodes
  static constexpr std::size_t NUM_SLOTS = NODE_SLOT + 8;

  struct Case {
    std::uint8_t numPolygons;
    std::uint8_t listSize;
    std::array<std::array<std::uint8_t, 24>, 2> lists; ///< slots, `END_SLOT` behind each polygon; second if inverted
    std::array<std::uint32_t, NUM_COUNTERS> increments;
  };
  /// The polygons of one cell.
  struct Polygons {
    std::uint8_t numPolygons = 0;
    std::uint8_t listSize = 0;
    std::array<std::uint8_t, 24> list;
  };

  std::array<Case, 256> cases{};
  /// The two ends of a slot's edge, as bits of a case.
  std::array<std::array<std::uint8_t, 2>, END_SLOT> ends{};

  static const RowCases& instance();

  /// The polygons of a case when the vertices of edges whose inner end is among `exact` lie on that end. Corners that
  /// fall together become one, a polygon that touches itself falls apart, and what has fewer than three corners is
  /// dropped.
  Polygons collapsed(std::size_t bits, std::size_t exact, bool isInverted) const;

private:
  RowCases();
};

} // namespace kx
