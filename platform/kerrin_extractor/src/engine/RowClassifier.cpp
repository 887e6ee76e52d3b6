// SPDX-License-Identifier: BSD-3-Clause
// The first pass of the row polygoniser: which nodes are inside, from sets and from functions of space.
#include "RowJob.h"

#include "BlockReader.h"
#include "Blocks.h"

#include <cstring>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t BLOCK = BlockReader::BLOCK;
constexpr std::size_t GROUP = RowBits::GROUP;

std::size_t numBlocks(std::size_t numNodes) { return numBlocksOf(numNodes, BLOCK); }

/// A row of values that are computed when they are asked for.
template <class Value>
struct ComputedRow {
  const Value& value;
  void fill(std::size_t begin, std::size_t count, double* values) const {
    for (std::size_t n = 0; n < count; ++n)
      values[n] = value(begin + n);
  }
};

/// What bounds say about all nodes between: inside, outside, or nothing. Bounds that are no numbers say nothing.
enum class Side { OUTSIDE, INSIDE, OPEN };
Side sideOf(const Bounds& bounds) {
  return bounds.low > 0.0 ? Side::INSIDE : bounds.high < 0.0 ? Side::OUTSIDE : Side::OPEN;
}

/// Finds a box while nodes are added, up to sixteen at a time.
class BoxSum {
public:
  template <class Points>
  void add(const Points& points, std::size_t i, std::size_t j, std::size_t k, std::size_t count) {
    if constexpr (requires { points.coordinates; }) {
      add(points.coordinates + 3 * points.nodes.flat(i, j, k), count);
    } else {
      double coordinates[3 * BLOCK];
      for (std::size_t n = 0; n < count; ++n) {
        const KbVec3<double> p = points.at(i + n, j, k);
        for (std::size_t axis = 0; axis < 3; ++axis)
          coordinates[3 * n + axis] = p[axis];
      }
      add(coordinates, count);
    }
  }
  /// Outwards, where the float is not the number itself.
  KbVec3<float> low() const {
    KbVec3<float> corner(m_low);
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (static_cast<double>(corner[axis]) > m_low[axis]) corner[axis] = std::nextafter(corner[axis], -ENDLESS);
    return corner;
  }
  KbVec3<float> high() const {
    KbVec3<float> corner(m_high);
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (static_cast<double>(corner[axis]) < m_high[axis]) corner[axis] = std::nextafter(corner[axis], ENDLESS);
    return corner;
  }
  /// Whether all coordinates, of at least one node, are within the range of `float`.
  bool isFinite() const { return !m_hasNoNumber && kx::isFinite(m_low) && kx::isFinite(m_high); }

private:
  static constexpr float ENDLESS = std::numeric_limits<float>::infinity();

  template <class T>
  void add(const T* p, std::size_t count) {
    if (count == BLOCK) return addBlock(p);
    for (std::size_t n = 0; n < 3 * count; ++n)
      addNumber(n % 3, p[n], p[n], p[n] - p[n]);
  }
  /// 48 numbers: the lanes of three registers in turn are x y z x, y z x y and z x y z, or x y, z x and y z.
  template <class T>
  void addBlock(const T* p) {
    using Lanes [[gnu::vector_size(16)]] = T;
    constexpr std::size_t NUM_LANES = sizeof(Lanes) / sizeof(T);
    Lanes low[3];
    Lanes high[3];
    Lanes notFinite{};
    std::memcpy(low, p, sizeof low);
    std::memcpy(high, p, sizeof high);
    for (std::size_t n = 0; n < 3 * BLOCK; n += 3 * NUM_LANES) {
      for (std::size_t r = 0; r < 3; ++r) {
        Lanes v;
        std::memcpy(&v, p + n + r * NUM_LANES, sizeof v);
        low[r] = v < low[r] ? v : low[r];
        high[r] = v > high[r] ? v : high[r];
        notFinite += v - v;
      }
    }
    for (std::size_t n = 0; n < 3 * NUM_LANES; ++n) {
      const std::size_t lane = n % NUM_LANES;
      addNumber(n % 3, low[n / NUM_LANES][lane], high[n / NUM_LANES][lane], notFinite[lane]);
    }
  }
  template <class T>
  void addNumber(std::size_t axis, T low, T high, T notFinite) {
    m_low[axis] = std::min(m_low[axis], static_cast<double>(low));
    m_high[axis] = std::max(m_high[axis], static_cast<double>(high));
    m_hasNoNumber = m_hasNoNumber || notFinite != T(0);
  }

  KbVec3<double> m_low = KbVec3<double>(std::numeric_limits<double>::infinity());
  KbVec3<double> m_high = KbVec3<double>(-std::numeric_limits<double>::infinity());
  bool m_hasNoNumber = false;
};

} // namespace

void RowPolygoniser::setUniform(std::size_t row, bool isInside) {
  const unsigned kept = m_notes[row] & ~static_cast<unsigned>(FIRST_INSIDE | LAST_INSIDE | IS_MIXED);
  m_notes[row] = static_cast<std::uint8_t>(kept | (isInside ? FIRST_INSIDE | LAST_INSIDE : 0));
  m_spans[row] = {std::numeric_limits<std::uint32_t>::max(), 0};
}

void RowPolygoniser::setMixed(std::size_t row, bool isFirst, bool isLast, const Span& span) {
  m_notes[row] =
      static_cast<std::uint8_t>(m_notes[row] | IS_MIXED | (isFirst ? FIRST_INSIDE : 0) | (isLast ? LAST_INSIDE : 0));
  m_spans[row] = span;
}

void RowPolygoniser::finishRow(std::size_t row, std::size_t numNodes) {
  const std::uint32_t* words = m_inside[row];
  const auto hasChanges = [&](std::size_t g) {
    const std::uint64_t own = RowBits::window(words, g);
    return (RowBits::low(own ^ own >> 1) & RowBits::head(numNodes - 1, g)) != 0;
  };
  const bool isFirst = (words[0] & 1) != 0;
  std::size_t begin = 0;
  std::size_t end = (numNodes - 1 + GROUP - 1) / GROUP;
  while (begin < end && !hasChanges(begin))
    ++begin;
  if (begin == end) return setUniform(row, isFirst);
  while (!hasChanges(end - 1))
    --end;
  const bool isLast = (words[(numNodes - 1) / GROUP] >> ((numNodes - 1) % GROUP) & 1) != 0;
  m_notes[row] =
      static_cast<std::uint8_t>(m_notes[row] | IS_MIXED | (isFirst ? FIRST_INSIDE : 0) | (isLast ? LAST_INSIDE : 0));
  m_spans[row] = {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

void RowPolygoniser::setStretch(std::size_t row, std::size_t numNodes, std::size_t begin, std::size_t end) {
  if (begin == end || (begin == 0 && end == numNodes)) return setUniform(row, begin < end);
  RowBits::fill(m_inside.clear(row), begin, end);
  const bool isFirst = begin == 0;
  const bool isLast = end == numNodes;
  const std::size_t firstChange = isFirst ? end : begin;
  const std::size_t lastChange = isLast ? begin : end;
  setMixed(row, isFirst, isLast,
           {static_cast<std::uint32_t>((firstChange - 1) / GROUP),
            static_cast<std::uint32_t>((lastChange - 1) / GROUP + 1)});
}

void RowPolygoniser::markExact(std::size_t row, std::size_t begin, std::uint32_t bits) {
  if (bits == 0) return;
  if ((m_notes[row] & HAS_EXACT) == 0) {
    m_notes[row] = static_cast<std::uint8_t>(m_notes[row] | HAS_EXACT);
    m_exact.clear(row);
    std::fill_n(m_nodes.data() + row * m_numWords, m_numWords, NodeGroup{0, 0});
  }
  m_exact[row][begin / GROUP] |= bits << (begin % GROUP);
}

void RowPolygoniser::readClosedCells(const Job& job, std::size_t row, std::size_t j, std::size_t k) {
  if (j >= job.cells().j || k >= job.cells().k) return;
  const std::size_t first = job.cells().flat(0, j, k);
  for (std::size_t i = 0; i < job.cells().i; ++i) {
    if (job.mesh.isOpen(first + i)) continue;
    if ((m_notes[row] & HAS_CLOSED) == 0) m_closed.clear(row);
    m_notes[row] = static_cast<std::uint8_t>(m_notes[row] | HAS_CLOSED);
    RowBits::set(m_closed[row], i);
  }
}

void RowPolygoniser::classify(Job& job, const ScalarField& field) {
  const std::size_t numNodes = job.nodes().i;
  const std::size_t numRows = job.numRows();
  m_numWords = RowBits::numWords(numNodes);
  for (BitRows* rows : {&m_inside, &m_exact, &m_notFinite, &m_closed})
    rows->resize(numRows, m_numWords);
  m_nodes.resize(numRows * m_numWords);
  m_notes.resize(numRows);
  m_spans.resize(numRows);
  m_uniform.assign(2 * m_numWords, 0);
  RowBits::fill(m_uniform.data() + m_numWords, 0, numNodes);

  std::atomic<unsigned> allNotes{0};
  const auto phase = [&](const auto& classifyStep) {
    job.run.phase("classify", job.numSteps(), [&](std::size_t step) {
      const std::size_t begin = step * Job::ROWS_A_STEP;
      for (std::size_t row = begin; row < job.endOfStep(step); ++row)
        m_notes[row] = job.buildsIndex ? std::uint8_t{0} : static_cast<std::uint8_t>(m_notes[row] & KEPT);
      if (job.buildsIndex && job.mesh.hasClosedCells())
        job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) { readClosedCells(job, row, j, k); });
      classifyStep(step);
      unsigned notes = 0;
      for (std::size_t row = begin; row < job.endOfStep(step); ++row)
        notes |= m_notes[row];
      allNotes.fetch_or(notes, std::memory_order_relaxed);
    });
  };

  const auto* function = std::get_if<FunctionValues>(&field);
  if (!function) {
    m_boxes.clear();
    m_ranges.resize(2 * numBlocks(numNodes) * numRows);
    withSetValues(field, job.nodes(),
                  [&](const auto& values) { phase([&](std::size_t step) { classifyValues(job, values, step); }); });
  } else {
    m_ranges.clear();
    withFunction(*function->function, [&](const auto& f) {
      if (job.mesh.points.kind == PointView::Kind::AXES) {
        const RowAxis axis(job.mesh.points.axes[0]);
        phase([&](std::size_t step) { classifyOnAxes(job, f, axis, step); });
        return;
      }
      m_boxes.resize((numBlocks(numNodes) + 1) * numRows);
      m_stepBoxes.resize(job.numSteps());
      withPoints(job.mesh.points,
                 [&](const auto& points) { phase([&](std::size_t step) { classifyByBoxes(job, f, points, step); }); });
    });
  }
  m_allNotes = static_cast<std::uint8_t>(allNotes.load());
}

template <class Values>
void RowPolygoniser::classifyValues(Job& job, const Values& values, std::size_t step) {
  const std::size_t numNodes = job.nodes().i;
  const BlockReader reader(job.isovalue);
  job.forRows(step, [&](std::size_t rowNumber, std::size_t j, std::size_t k) {
    const auto& row = values.row(j, k);
    std::uint32_t* words = m_inside.clear(rowNumber);
    float* ranges = m_ranges.data() + 2 * rowNumber * numBlocks(numNodes);
    for (std::size_t begin = 0; begin < numNodes; begin += BLOCK, ranges += 2) {
      const std::size_t size = std::min(BLOCK, numNodes - begin);
      BlockBits bits;
      if (job.buildsIndex) {
        BlockRange range{};
        std::uint32_t notFinite = 0;
        bits = reader.bitsAndRange(row, begin, size, range, notFinite);
        ranges[0] = range.low;
        ranges[1] = range.high;
        if (notFinite != 0) {
          if ((m_notes[rowNumber] & HAS_NOT_FINITE) == 0) m_notFinite.clear(rowNumber);
          m_notes[rowNumber] = static_cast<std::uint8_t>(m_notes[rowNumber] | HAS_NOT_FINITE);
          m_notFinite[rowNumber][begin / GROUP] |= notFinite << (begin % GROUP);
        }
      } else if (static_cast<double>(ranges[1]) < job.isovalue) {
        continue;
      } else if (static_cast<double>(ranges[0]) > job.isovalue) {
        bits.inside = RowBits::head(size, 0);
      } else {
        bits = reader.bits(row, begin, size);
      }
      words[begin / GROUP] |= bits.inside << (begin % GROUP);
      markExact(rowNumber, begin, bits.exact);
    }
    finishRow(rowNumber, numNodes);
  });
}

template <class Function>
void RowPolygoniser::classifyOnAxes(Job& job, const Function& function, const RowAxis& axis, std::size_t step) {
  constexpr std::size_t ROWS_TOGETHER = 8;
  const auto& axes = job.mesh.points.axes;
  const std::size_t numNodes = axis.size();
  // Bounds over nodes [a, b] of the first axis and [c, d] of the second.
  const auto boundsIn = [&](std::size_t a, std::size_t b, std::size_t c, std::size_t d, std::size_t k) {
    const std::array<double, 2> x{axis[a], axis[b]};
    const std::array<double, 2> y{axes[1][c], axes[1][d]};
    return function.boundsIn({std::min(x[0], x[1]), std::min(y[0], y[1]), axes[2][k]},
                             {std::max(x[0], x[1]), std::max(y[0], y[1]), axes[2][k]});
  };
  const auto classifyRow = [&](std::size_t row, std::size_t j, std::size_t k) {
    const auto value = [&](std::size_t i) { return function(KbVec3<double>(axis[i], axes[1][j], axes[2][k])); };
    if constexpr (requires { function.insideAlongX(0.0, 0.0); }) {
      const InsideNodes inside(axis, function.insideAlongX(axes[1][j], axes[2][k]), value);
      setStretch(row, numNodes, inside.begin, inside.end);
      for (std::size_t i = inside.begin; i < inside.end && value(i) == 0.0; ++i)
        markExact(row, i, 1);
      for (std::size_t i = inside.end; i > inside.begin && value(i - 1) == 0.0; --i)
        markExact(row, i - 1, 1);
    } else {
      std::uint32_t* words = m_inside.clear(row);
      const BlockReader reader(0.0);
      // Halves what the surface may cross.
      const auto look = [&](const auto& self, std::size_t firstBlock, std::size_t endBlock) -> void {
        const std::size_t begin = firstBlock * BLOCK;
        const std::size_t end = std::min(endBlock * BLOCK, numNodes);
        const Side side = sideOf(boundsIn(begin, end - 1, j, j, k));
        if (side == Side::INSIDE) return RowBits::fill(words, begin, end);
        if (side == Side::OUTSIDE) return;
        if (endBlock - firstBlock > 1) {
          const std::size_t middle = (firstBlock + endBlock) / 2;
          self(self, firstBlock, middle);
          return self(self, middle, endBlock);
        }
        const BlockBits bits = reader.bits(ComputedRow<decltype(value)>{value}, begin, end - begin);
        words[begin / GROUP] |= bits.inside << (begin % GROUP);
        markExact(row, begin, bits.exact);
      };
      look(look, 0, numBlocks(numNodes));
      finishRow(row, numNodes);
    }
  };
  for (std::size_t row = step * Job::ROWS_A_STEP; row < job.endOfStep(step);) {
    const std::size_t j = row % job.nodes().j;
    const std::size_t k = row / job.nodes().j;
    const std::size_t count = std::min({ROWS_TOGETHER, job.endOfStep(step) - row, job.nodes().j - j});
    const Side side = sideOf(boundsIn(0, numNodes - 1, j, j + count - 1, k));
    for (std::size_t n = 0; n < count; ++n, ++row) {
      if (side == Side::OPEN)
        classifyRow(row, j + n, k);
      else
        setUniform(row, side == Side::INSIDE);
    }
  }
}

template <class Points>
void RowPolygoniser::buildBoxes(Job& job, const Points& points, std::size_t step) {
  const std::size_t numNodes = job.nodes().i;
  const auto join = [](Box& box, const Box& other) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.low[axis] = std::min(box.low[axis], other.low[axis]);
      box.high[axis] = std::max(box.high[axis], other.high[axis]);
    }
  };
  Box& stepBox = m_stepBoxes[step];
  stepBox = {BoxSum().low(), BoxSum().high()};
  bool isFinite = true;
  job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
    Box* box = m_boxes.data() + row * (numBlocks(numNodes) + 1);
    Box& rowBox = *box;
    rowBox = {BoxSum().low(), BoxSum().high()};
    for (std::size_t begin = 0; begin < numNodes; begin += BLOCK) {
      BoxSum sum;
      sum.add(points, begin, j, k, std::min(BLOCK, numNodes - begin));
      isFinite = isFinite && sum.isFinite();
      *++box = {sum.low(), sum.high()};
      join(rowBox, *box);
    }
    join(stepBox, rowBox);
  });
  if (!isFinite) job.isRefused.store(true, std::memory_order_relaxed);
}

template <class Function, class Points>
void RowPolygoniser::classifyByBoxes(Job& job, const Function& function, const Points& points, std::size_t step) {
  if (job.buildsIndex) buildBoxes(job, points, step);
  const std::size_t numNodes = job.nodes().i;
  const BlockReader reader(0.0);
  const auto side = [&](const Box& box) {
    return sideOf(function.boundsIn(KbVec3<double>(box.low), KbVec3<double>(box.high)));
  };
  const Side stepSide = side(m_stepBoxes[step]);
  job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
    const Box* box = m_boxes.data() + row * (numBlocks(numNodes) + 1);
    const Side rowSide = stepSide == Side::OPEN ? side(*box) : stepSide;
    if (rowSide != Side::OPEN) return setUniform(row, rowSide == Side::INSIDE);
    std::uint32_t* words = m_inside.clear(row);
    const auto value = [&](std::size_t i) { return function(points.at(i, j, k)); };
    for (std::size_t begin = 0; begin < numNodes; begin += BLOCK) {
      const std::size_t size = std::min(BLOCK, numNodes - begin);
      const Side blockSide = side(*++box);
      if (blockSide == Side::OUTSIDE) continue;
      BlockBits bits{RowBits::head(size, 0), 0};
      if (blockSide == Side::OPEN) bits = reader.bits(ComputedRow<decltype(value)>{value}, begin, size);
      words[begin / GROUP] |= bits.inside << (begin % GROUP);
      markExact(row, begin, bits.exact);
    }
    finishRow(row, numNodes);
  });
}

} // namespace kx
