// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "Box.h"
#include "Run.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace kx {

/// Finds the cells whose boxes hold a point: equal bins over the mesh, about two cells wide, each with the cells that
/// reach into it in ascending order (Bentley, Weide and Yao 1980, Optimal expected-time algorithms for closest point
/// problems, have points in them).
///
/// An entry keeps the cell's index and, for each axis, which of the bin's eight slots the cell's box covers, so that
/// nearly all candidates that are not at the point fall away without a look at the mesh: as sharp as bins a quarter of
/// a cell wide, in a fraction of the memory. The width of the bins is chosen for at most 28 bytes a cell, counters
/// during the build included; the content does not depend on the number of threads.
class CellBins {
public:
  /// Writes the boxes of the cells [begin, end); an empty one leaves its cell out. Called at least twice a cell, by
  /// many threads.
  using BoxesOf = std::function<void(std::size_t begin, std::size_t end, Box* boxes)>;
  static constexpr std::size_t NUM_PHASES = 2;
  static constexpr std::size_t NO_CELL = static_cast<std::size_t>(-1);

  /// `bounds`: a box around the cells, but for bulges and tolerances.
  void build(Run& run, std::size_t numCells, const Box& bounds, const BoxesOf& boxesOf);
  void clear();
  std::size_t getByteSize() const { return m_offsets.getByteSize() + m_entries.getByteSize(); }

  /// The first cell, by index, whose box may hold the point (which has no NaN) and that passes the test.
  template <class Test>
  std::size_t find(const KbVec3<double>& point, const Test& test) const {
    if (m_entries.size() == 0) return NO_CELL;
    const auto [bin, wanted] = placeOf(point);
    const std::uint64_t* end = m_entries.data() + m_offsets[bin + 1];
    for (const std::uint64_t* entry = m_entries.data() + m_offsets[bin]; entry != end; ++entry)
      if ((*entry & wanted) == wanted && test(static_cast<std::size_t>(*entry >> MASK_BITS)))
        return static_cast<std::size_t>(*entry >> MASK_BITS);
    return NO_CELL;
  }

  /// The numbers of points in an order in which one is found near the other in memory; points may be anywhere.
  std::vector<std::uint32_t> orderOf(const KbVec3<double>* points, std::uint32_t count) const;

private:
  static constexpr std::size_t NUM_SLOTS = 8; ///< in a bin, along each axis
  static constexpr unsigned MASK_BITS = 24;
  using Slots = std::array<std::size_t, 3>;

  /// The bin of a point, and the slots that its cell covers.
  std::pair<std::size_t, std::uint64_t> placeOf(const KbVec3<double>& point) const {
    std::uint64_t wanted = 0;
    std::size_t bin = 0;
    for (std::size_t axis = 3; axis-- > 0;) {
      const std::size_t slot = slotOf(point[axis], axis);
      bin = bin * m_numBins[axis] + slot / NUM_SLOTS;
      wanted |= std::uint64_t(1) << (axis * NUM_SLOTS + slot % NUM_SLOTS);
    }
    return {bin, wanted};
  }
  void chooseWidths(std::size_t numCells, const BoxesOf& boxesOf);
  void setWidths(const KbVec3<double>& widths, std::size_t numCells);
  std::size_t count(Run& run, std::size_t numCells, const BoxesOf& boxesOf);
  void fill(Run& run, std::size_t numCells, const BoxesOf& boxesOf);
  std::size_t numBins() const { return m_numBins[0] * m_numBins[1] * m_numBins[2]; }
  std::size_t slotOf(double x, std::size_t axis) const {
    const double slot = (x - m_bounds.low[axis]) * m_slotsPerLength[axis];
    return static_cast<std::size_t>(std::clamp(slot, 0.0, static_cast<double>(m_numBins[axis] * NUM_SLOTS - 1)));
  }
  template <class Visit>
  void forEachBin(const Box& box, const Visit& visit) const;
  template <class Visit>
  void visitChunk(std::size_t chunk, std::size_t numCells, const BoxesOf& boxesOf, const Visit& visit) const;

  Box m_bounds;
  KbVec3<double> m_widths;
  KbVec3<double> m_slotsPerLength;
  std::array<std::size_t, 3> m_numBins{};
  Array<std::size_t> m_offsets; ///< where the entries of each bin begin, and the end of all
  Array<std::uint64_t> m_entries;
  std::size_t m_numChunks = 0;
  Array<std::uint32_t> m_counts; ///< during a build: for each chunk of cells its entries in each bin
};

} // namespace kx
