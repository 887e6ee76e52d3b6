// SPDX-License-Identifier: BSD-3-Clause
#include "CellBins.h"

#include "FinitePosition.h"

#include <tbb/task_arena.h>

#include <cmath>
#include <utility>
#include <vector>

namespace kx {
namespace {

constexpr double MAX_BYTES_PER_CELL = 28.0;
constexpr double AIMED_ENTRIES_PER_CELL = 3.0; // 24 bytes: the rest is for offsets, counters and chance
constexpr std::size_t NUM_SAMPLES = 4096;
constexpr std::size_t MAX_CHUNKS = 8;

} // namespace

void CellBins::clear() {
  m_offsets.clear();
  m_entries.clear();
  m_bounds = {};
}

void CellBins::setWidths(const KbVec3<double>& widths, std::size_t numCells) {
  m_widths = widths;
  const auto maxBins = static_cast<double>(std::max<std::size_t>(numCells / 4, 1));
  for (;;) {
    double product = 1.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double extent = m_bounds.high[axis] - m_bounds.low[axis];
      const double number = extent > 0.0 ? std::clamp(std::ceil(extent / m_widths[axis]), 1.0, maxBins) : 1.0;
      m_numBins[axis] = static_cast<std::size_t>(number);
      m_slotsPerLength[axis] = extent > 0.0 ? number * static_cast<double>(NUM_SLOTS) / extent : 0.0;
      product *= number;
    }
    if (product <= maxBins) return;
    m_widths *= 1.25;
  }
}

void CellBins::chooseWidths(std::size_t numCells, const BoxesOf& boxesOf) {
  std::vector<KbVec3<double>> extents;
  KbVec3<double> mean;
  const std::size_t stride = numCells / NUM_SAMPLES + 1;
  for (std::size_t cell = 0; cell < numCells; cell += stride) {
    Box box;
    boxesOf(cell, cell + 1, &box);
    if (box.isEmpty()) continue;
    extents.push_back(box.high - box.low);
    mean += extents.back();
  }
  const KbVec3<double> whole = m_bounds.high - m_bounds.low;
  if (extents.empty()) {
    setWidths(whole, numCells);
    return;
  }
  mean /= static_cast<double>(extents.size());
  for (std::size_t axis = 0; axis < 3; ++axis) // flat meshes: no bin is thinner than a part of the whole
    mean[axis] = std::max({mean[axis], 1e-9 * whole.length(), std::numeric_limits<double>::min()});
  // A box of extents e meets (1 + e / width) bins along each axis on average.
  double factor = 1.5;
  for (double entries = 8.0; entries > AIMED_ENTRIES_PER_CELL && factor < 1e6; factor *= 1.1) {
    entries = 0.0;
    for (const KbVec3<double>& e : extents)
      entries += (1.0 + e[0] / (factor * mean[0])) * (1.0 + e[1] / (factor * mean[1])) *
                 (1.0 + e[2] / (factor * mean[2])) / static_cast<double>(extents.size());
  }
  setWidths(mean * factor, numCells);
}

template <class Visit>
void CellBins::forEachBin(const Box& box, const Visit& visit) const {
  Slots low;
  Slots high;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] = slotOf(box.low[axis], axis);
    high[axis] = slotOf(box.high[axis], axis);
  }
  const auto mask = [&](std::size_t bin, std::size_t axis) {
    const std::size_t first = std::max(low[axis], bin * NUM_SLOTS) - bin * NUM_SLOTS;
    const std::size_t last = std::min(high[axis], bin * NUM_SLOTS + NUM_SLOTS - 1) - bin * NUM_SLOTS;
    return ((std::uint64_t(2) << last) - (std::uint64_t(1) << first)) << (axis * NUM_SLOTS);
  };
  for (std::size_t k = low[2] / NUM_SLOTS; k <= high[2] / NUM_SLOTS; ++k) {
    const std::uint64_t maskK = mask(k, 2);
    for (std::size_t j = low[1] / NUM_SLOTS; j <= high[1] / NUM_SLOTS; ++j) {
      const std::uint64_t maskJK = mask(j, 1) | maskK;
      const std::size_t row = m_numBins[0] * (j + m_numBins[1] * k);
      for (std::size_t i = low[0] / NUM_SLOTS; i <= high[0] / NUM_SLOTS; ++i)
        visit(row + i, mask(i, 0) | maskJK);
    }
  }
}

template <class Visit>
void CellBins::visitChunk(std::size_t chunk, std::size_t numCells, const BoxesOf& boxesOf, const Visit& visit) const {
  std::array<Box, 128> boxes;
  const std::size_t end = numCells * (chunk + 1) / m_numChunks;
  for (std::size_t begin = numCells * chunk / m_numChunks; begin < end; begin += boxes.size()) {
    const std::size_t count = std::min(boxes.size(), end - begin);
    boxesOf(begin, begin + count, boxes.data());
    for (std::size_t c = 0; c < count; ++c)
      if (!boxes[c].isEmpty())
        forEachBin(boxes[c], [&](std::size_t bin, std::uint64_t mask) { visit(begin + c, bin, mask); });
  }
}

std::size_t CellBins::count(Run& run, std::size_t numCells, const BoxesOf& boxesOf) {
  m_counts.resize(m_numChunks * numBins());
  run.phase("count cells", m_numChunks, [&](std::size_t chunk) {
    std::uint32_t* counts = m_counts.data() + chunk * numBins();
    std::fill_n(counts, numBins(), 0u);
    visitChunk(chunk, numCells, boxesOf, [&](std::size_t, std::size_t bin, std::uint64_t) { ++counts[bin]; });
  });
  m_offsets.resize(numBins() + 1);
  std::size_t sum = 0;
  for (std::size_t bin = 0; bin < numBins(); ++bin) {
    m_offsets[bin] = sum;
    std::uint32_t before = 0; // of earlier chunks in this bin: what turns a count into a place to write to
    for (std::size_t chunk = 0; chunk < m_numChunks; ++chunk) {
      std::uint32_t& counter = m_counts[chunk * numBins() + bin];
      before += std::exchange(counter, before);
    }
    sum += before;
  }
  m_offsets[numBins()] = sum;
  return sum;
}

void CellBins::fill(Run& run, std::size_t numCells, const BoxesOf& boxesOf) {
  m_entries.resize(m_offsets[numBins()]);
  run.phase("fill bins", m_numChunks, [&](std::size_t chunk) {
    std::uint32_t* places = m_counts.data() + chunk * numBins();
    visitChunk(chunk, numCells, boxesOf, [&](std::size_t cell, std::size_t bin, std::uint64_t mask) {
      m_entries[m_offsets[bin] + places[bin]++] = static_cast<std::uint64_t>(cell) << MASK_BITS | mask;
    });
  });
}

void CellBins::build(Run& run, std::size_t numCells, const Box& bounds, const BoxesOf& boxesOf) {
  clear();
  if (numCells == 0) {
    run.phase("count cells", 0, [](std::size_t) {});
    run.phase("fill bins", 0, [](std::size_t) {});
    return;
  }
  m_bounds = bounds;
  if (bounds.isEmpty()) m_bounds.add(KbVec3<double>(0.0)); // the cells are asked all the same why they have no box
  m_numChunks =
      std::min<std::size_t>(static_cast<std::size_t>(tbb::this_task_arena::max_concurrency()) * 2, MAX_CHUNKS);
  chooseWidths(numCells, boxesOf);
  for (;;) {
    const std::size_t numEntries = count(run, numCells, boxesOf);
    const double bytes = 8.0 * static_cast<double>(numEntries) +
                         (8.0 + 4.0 * static_cast<double>(m_numChunks)) * static_cast<double>(numBins());
    if (bytes <= MAX_BYTES_PER_CELL * static_cast<double>(numCells) || numBins() == 1) break;
    setWidths(m_widths * 1.3, numCells);
  }
  fill(run, numCells, boxesOf);
  m_counts.clear();
}

std::vector<std::uint32_t> CellBins::orderOf(const KbVec3<double>* points, std::uint32_t count) const {
  // A counting sort by bins, or by some bins in a row where there are many.
  constexpr std::size_t MAX_KEYS = 65536;
  unsigned shift = 0;
  while (numBins() >> shift >= MAX_KEYS)
    ++shift;
  std::vector<std::uint16_t> keys(count);
  std::vector<std::uint32_t> begins((numBins() >> shift) + 2, 0);
  for (std::uint32_t i = 0; i < count; ++i) {
    const bool hasBin = m_entries.size() > 0 && isFinite(points[i]);
    keys[i] = hasBin ? static_cast<std::uint16_t>(placeOf(points[i]).first >> shift) : std::uint16_t{0};
    ++begins[keys[i] + 1u];
  }
  for (std::size_t key = 1; key < begins.size(); ++key)
    begins[key] += begins[key - 1];
  std::vector<std::uint32_t> order(count);
  for (std::uint32_t i = 0; i < count; ++i)
    order[begins[keys[i]]++] = i;
  return order;
}

} // namespace kx
