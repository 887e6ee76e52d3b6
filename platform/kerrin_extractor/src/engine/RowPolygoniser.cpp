// SPDX-License-Identifier: BSD-3-Clause
#include "RowPolygoniser.h"

#include "CaseTable.h"
#include "CellGeometry.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Counting bits is one instruction on every machine of the last fifteen years, yet not in the x86-64 baseline.
#if defined(__x86_64__) && defined(__GNUC__)
#define KX_WITH_POPCOUNT __attribute__((target_clones("popcnt", "default")))
#else
#define KX_WITH_POPCOUNT
#endif

namespace kx {
namespace {

constexpr std::size_t BLOCK = 16; // nodes with a common range
constexpr std::size_t GROUP = 32; // cells that are looked at together: the bits of one word
constexpr std::size_t ROWS_A_STEP = 32;

/// The counters that run along a row of cells, one for each kind of edge: along i at the four (j, k) corners, along j
/// at k and k + 1, along k at j and j + 1. Behind a cell each has grown by one if its edge at i was cut; for edges
/// along j and k that is the number of the cell's edge at i + 1.
enum Counter { I00, I10, I01, I11, J0, J1, K0, K1, NUM_COUNTERS };
constexpr std::uint8_t AFTER = NUM_COUNTERS;        // slots from here: the counters behind the cell
constexpr std::uint8_t END_SLOT = 2 * NUM_COUNTERS; // holds -1

/// The hexahedron's cases by the bits of four rows, two each, instead of by corners.
struct RowCases {
  struct Case {
    std::uint8_t numPolygons;
    std::uint8_t listSize;
    std::array<std::array<std::uint8_t, 24>, 2> lists;
    std::array<std::uint32_t, NUM_COUNTERS> increments;
  };
  std::array<Case, 256> cases{};

  RowCases() {
    // Corner of bit b: rows (j, k), (j + 1, k), (j, k + 1), (j + 1, k + 1); nodes i and i + 1.
    constexpr std::array<std::uint8_t, 8> CORNER_OF_BIT{0, 1, 3, 2, 4, 5, 7, 6};
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
    for (std::size_t bits = 0; bits < 256; ++bits) {
      std::size_t number = 0;
      for (std::size_t b = 0; b < 8; ++b)
        number |= (bits >> b & 1) << CORNER_OF_BIT[b];
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

  static const RowCases& instance() {
    static const RowCases table;
    return table;
  }
};

std::uint64_t window(const std::uint32_t* row, std::size_t group) {
  return row[group] | static_cast<std::uint64_t>(row[group + 1]) << 32;
}

std::uint32_t low32(std::uint64_t bits) { return static_cast<std::uint32_t>(bits); }

/// The four rows around the cells of a row, as bits. Rows beyond the grid repeat the last one: no edge is cut there.
struct RowQuad {
  const std::uint32_t* row[4];

  /// Cells of a group that the surface crosses, before the end of the row is cut off.
  std::uint32_t active(const std::uint64_t w[4]) const {
    const std::uint64_t any = w[0] | w[1] | w[2] | w[3];
    const std::uint64_t all = w[0] & w[1] & w[2] & w[3];
    return low32((any | any >> 1) & ~(all & all >> 1));
  }
};

/// The rows around `row`, from where it lies in memory.
RowQuad quadOf(const std::uint32_t* row, std::size_t numWords, bool hasNextJ, bool hasNextK, std::size_t numRowsJ) {
  const std::size_t nextJ = hasNextJ ? numWords : 0;
  const std::size_t nextK = hasNextK ? numWords * numRowsJ : 0;
  return {{row, row + nextJ, row + nextK, row + nextJ + nextK}};
}

/// The first `count` bits of the words from `group` on.
std::uint32_t headMask(std::size_t count, std::size_t group) {
  const std::size_t begin = group * GROUP;
  if (count <= begin) return 0;
  return count - begin >= GROUP ? 0xffffffffu : (1u << (count - begin)) - 1;
}

struct Totals {
  std::uint32_t vertices[3];
  std::uint32_t polygons;
  std::uint32_t indices;
};

KX_WITH_POPCOUNT Totals countRow(const RowQuad& quad, std::size_t numCells, bool hasCells, const RowCases& table) {
  Totals t{};
  for (std::size_t g = 0; g * GROUP <= numCells; ++g) {
    std::uint64_t w[4];
    for (int r = 0; r < 4; ++r)
      w[r] = window(quad.row[r], g);
    const std::uint32_t cellMask = headMask(numCells, g);
    t.vertices[0] += static_cast<std::uint32_t>(std::popcount(low32(w[0] ^ w[0] >> 1) & cellMask));
    t.vertices[1] += static_cast<std::uint32_t>(std::popcount(low32(w[0] ^ w[1])));
    t.vertices[2] += static_cast<std::uint32_t>(std::popcount(low32(w[0] ^ w[2])));
    if (!hasCells) continue;
    for (std::uint32_t active = quad.active(w) & cellMask; active != 0; active &= active - 1) {
      const int i = std::countr_zero(active);
      const std::size_t bits = (w[0] >> i & 3) | (w[1] >> i & 3) << 2 | (w[2] >> i & 3) << 4 | (w[3] >> i & 3) << 6;
      t.polygons += table.cases[bits].numPolygons;
      t.indices += table.cases[bits].listSize;
    }
  }
  return t;
}

/// The bits of up to 16 nodes, and what the block must tell besides.
struct BlockBits {
  std::uint32_t inside = 0;
  bool isExact = false;
};

struct BlockRange {
  float low = 0.0f;
  float high = 0.0f;
  bool isFinite = true;
};

/// Reads values one by one, from whatever source.
template <class Row>
struct BlockReader {
  double isovalue;

  explicit BlockReader(double value)
      : isovalue(value) {}

  BlockBits bits(const Row& row, std::size_t i, std::size_t count) const {
    BlockBits b;
    for (std::size_t n = 0; n < count; ++n) {
      const double v = row(i + n);
      b.inside |= static_cast<std::uint32_t>(v >= isovalue) << n;
      b.isExact |= v == isovalue;
    }
    return b;
  }
  BlockBits bitsAndRange(const Row& row, std::size_t i, std::size_t count, BlockRange& range) const {
    BlockBits b;
    double low = row(i);
    double high = low;
    double notFinite = 0.0;
    for (std::size_t n = 0; n < count; ++n) {
      const double v = row(i + n);
      b.inside |= static_cast<std::uint32_t>(v >= isovalue) << n;
      b.isExact |= v == isovalue;
      low = v < low ? v : low;
      high = v > high ? v : high;
      notFinite += v - v;
    }
    // Outwards, where the float is not the number itself.
    range.low = static_cast<float>(low);
    if (static_cast<double>(range.low) > low)
      range.low = std::nextafter(range.low, -std::numeric_limits<float>::infinity());
    range.high = static_cast<float>(high);
    if (static_cast<double>(range.high) < high)
      range.high = std::nextafter(range.high, std::numeric_limits<float>::infinity());
    range.isFinite = notFinite == 0.0;
    return b;
  }
};

template <class T>
struct ArrayRow {
  const T* values;
  double operator()(std::size_t i) const { return static_cast<double>(values[i]); }
};

#if defined(__SSE2__)
/// Sixteen floats at a time.
template <>
struct BlockReader<ArrayRow<float>> {
  double isovalue;
  __m128 threshold; ///< the least float that is not less than the isovalue: compares alike
  bool canBeExact;

  explicit BlockReader(double value)
      : isovalue(value) {
    auto t = static_cast<float>(value);
    if (static_cast<double>(t) < value) t = std::nextafter(t, std::numeric_limits<float>::infinity());
    threshold = _mm_set1_ps(t);
    canBeExact = static_cast<double>(t) == value;
  }

  BlockBits bits(const ArrayRow<float>& row, std::size_t i, std::size_t count) const {
    if (count < BLOCK) return slow(row, i, count);
    BlockBits b;
    int exact = 0;
    for (unsigned part = 0; part < 4; ++part) {
      const __m128 v = _mm_loadu_ps(row.values + i + 4 * part);
      b.inside |= static_cast<std::uint32_t>(_mm_movemask_ps(_mm_cmpge_ps(v, threshold))) << (4 * part);
      exact |= _mm_movemask_ps(_mm_cmpeq_ps(v, threshold));
    }
    b.isExact = canBeExact && exact != 0;
    return b;
  }
  BlockBits bitsAndRange(const ArrayRow<float>& row, std::size_t i, std::size_t count, BlockRange& range) const {
    if (count < BLOCK) {
      range.low = range.high = row.values[i];
      range.isFinite = true;
      for (std::size_t n = 0; n < count; ++n) {
        const float v = row.values[i + n];
        range.low = std::min(range.low, v);
        range.high = std::max(range.high, v);
        range.isFinite &= std::isfinite(v);
      }
      return slow(row, i, count);
    }
    __m128 low = _mm_loadu_ps(row.values + i);
    __m128 high = low;
    __m128 notFinite = _mm_setzero_ps();
    for (unsigned part = 0; part < 4; ++part) {
      const __m128 v = _mm_loadu_ps(row.values + i + 4 * part);
      low = _mm_min_ps(low, v);
      high = _mm_max_ps(high, v);
      notFinite = _mm_add_ps(notFinite, _mm_sub_ps(v, v));
    }
    float lows[4];
    float highs[4];
    _mm_storeu_ps(lows, low);
    _mm_storeu_ps(highs, high);
    range.low = std::min(std::min(lows[0], lows[1]), std::min(lows[2], lows[3]));
    range.high = std::max(std::max(highs[0], highs[1]), std::max(highs[2], highs[3]));
    range.isFinite = _mm_movemask_ps(_mm_cmpneq_ps(notFinite, _mm_setzero_ps())) == 0;
    return bits(row, i, count);
  }

private:
  BlockBits slow(const ArrayRow<float>& row, std::size_t i, std::size_t count) const {
    BlockBits b;
    for (std::size_t n = 0; n < count; ++n) {
      const double v = row(i + n);
      b.inside |= static_cast<std::uint32_t>(v >= isovalue) << n;
      b.isExact |= v == isovalue;
    }
    return b;
  }
};
#endif

// Values and points by (i, j, k): `row(j, k)` of values is called with i.

template <class T>
struct ArrayGrid {
  const T* values;
  Dims nodes;
  using Row = ArrayRow<T>;
  Row row(std::size_t j, std::size_t k) const { return {values + nodes.flat(0, j, k)}; }
};

struct SetRow {
  const KiDataSetIjk<double>* set;
  std::size_t j;
  std::size_t k;
  double operator()(std::size_t i) const { return set->get(i, j, k); }
};

struct SetGrid {
  const KiDataSetIjk<double>* set;
  using Row = SetRow;
  Row row(std::size_t j, std::size_t k) const { return {set, j, k}; }
};

struct AxesPoints {
  const double* axes[3];
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const { return {axes[0][i], axes[1][j], axes[2][k]}; }
};

template <class T>
struct ArrayPoints {
  const T* coordinates;
  Dims nodes;
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const {
    const T* p = coordinates + 3 * nodes.flat(i, j, k);
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
};

struct GeometryPoints {
  const KiGeometryIjk* geometry;
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const { return geometry->getCoord(i, j, k); }
};

/// Points by the kind of the view; `PointView` has no other kinds on a grid.
template <class Visit>
void withPoints(const PointView& view, Visit&& visit) {
  switch (view.kind) {
  case PointView::Kind::AXES:
    visit(AxesPoints{{view.axes[0].data(), view.axes[1].data(), view.axes[2].data()}});
    break;
  case PointView::Kind::FLOATS:
    visit(ArrayPoints<float>{static_cast<const float*>(view.array), view.nodes});
    break;
  case PointView::Kind::DOUBLES:
    visit(ArrayPoints<double>{static_cast<const double*>(view.array), view.nodes});
    break;
  default:
    visit(GeometryPoints{view.geometryIjk});
    break;
  }
}

struct FunctionRow {
  const ImplicitFunction* function;
  const std::array<std::vector<double>, 3>* axes;
  std::size_t j;
  std::size_t k;

  KbVec3<double> at(std::size_t i) const { return {(*axes)[0][i], (*axes)[1][j], (*axes)[2][k]}; }
  double operator()(std::size_t i) const { return (*function)(at(i)); }
  Bounds bounds(std::size_t begin, std::size_t size) const {
    KbVec3<double> low = at(begin);
    KbVec3<double> high = at(begin + size - 1);
    if (low[0] > high[0]) std::swap(low[0], high[0]);
    return function->boundsIn(low, high);
  }
};

/// A function of space on a grid with axes: it tells its range over a block without reading the block.
struct FunctionGrid {
  FunctionValues values;
  using Row = FunctionRow;
  Row row(std::size_t j, std::size_t k) const { return {values.function, &values.points->axes, j, k}; }
};

/// Values by the kind of the field; flat sets don't occur on a grid.
template <class Visit>
void withValues(const ScalarField& field, const Dims& nodes, Visit&& visit) {
  if (const auto* floats = std::get_if<ArrayValues<float, double>>(&field))
    visit(ArrayGrid<float>{floats->data, nodes});
  else if (const auto* doubles = std::get_if<ArrayValues<double, double>>(&field))
    visit(ArrayGrid<double>{doubles->data, nodes});
  else if (const auto* set = std::get_if<SetIjkValues<double>>(&field))
    visit(SetGrid{set->set});
  else if (const auto* function = std::get_if<FunctionValues>(&field))
    visit(FunctionGrid{*function});
}

/// 1 or -1 for right- or left-handed cells, 0 when a sample of them disagrees.
int handedness(const MeshView& mesh) {
  constexpr std::size_t SAMPLES = 64;
  const GridCells cells{mesh.cellDims, mesh.nodeDims};
  const std::size_t count = std::min(SAMPLES, mesh.numCells);
  std::size_t numPositive = 0;
  std::size_t numNegative = 0;
  for (std::size_t s = 0; s < count; ++s) {
    CellNodes ids;
    std::array<KbVec3<double>, 8> corners;
    cells.load(s * mesh.numCells / count, ids);
    for (std::size_t c = 0; c < 8; ++c)
      corners[c] = mesh.points[ids[c]];
    const double size = signedSize(HEXAHEDRON, corners);
    numPositive += size > 0.0;
    numNegative += size < 0.0;
  }
  if (numPositive > 0 && numNegative > 0) return 0;
  return numNegative > 0 ? -1 : 1;
}

} // namespace

struct RowPolygoniser::Job {
  Run& run;
  const MeshView& mesh;
  double isovalue;
  SurfaceData& output;
  bool isInverted;
  std::atomic<bool> isIrregular{false};

  std::size_t numRows() const { return mesh.nodeDims.j * mesh.nodeDims.k; }
  std::size_t numSteps() const { return (numRows() + ROWS_A_STEP - 1) / ROWS_A_STEP; }
  /// Calls `body(row, j, k)` for the rows of a step.
  template <class Body>
  void forRows(std::size_t step, Body&& body) const {
    const std::size_t end = std::min((step + 1) * ROWS_A_STEP, numRows());
    for (std::size_t row = step * ROWS_A_STEP; row < end; ++row)
      body(row, row % mesh.nodeDims.j, row / mesh.nodeDims.j);
  }
};

bool RowPolygoniser::suits(const MeshView& mesh, const ScalarField& field) {
  return mesh.hasGridNodes && mesh.slotBits == 0 && !mesh.hasClosedCells() &&
         !std::holds_alternative<SetIValues<double>>(field) &&
         (mesh.points.kind == PointView::Kind::AXES || !std::holds_alternative<FunctionValues>(field));
}

bool RowPolygoniser::cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
                         SurfaceData& output) {
  if (!buildsIndex && m_isIrregular) return false;
  const int sign = handedness(mesh);
  if (sign == 0) return false;
  Job job{run, mesh, isovalue, output, sign < 0};
  withValues(field, mesh.nodeDims, [&](const auto& values) { classify(job, values, buildsIndex); });
  if (job.isIrregular || m_isIrregular) return false;
  count(job);

  const std::size_t numRows = job.numRows();
  m_begins.resize(numRows);
  std::size_t vertex = 0;
  std::size_t polygon = 0;
  std::size_t index = 0;
  for (std::size_t row = 0; row < numRows; ++row) {
    RowBegin& begin = m_begins[row];
    const RowCounts& counts = m_counts[row];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      begin.vertex[axis] = static_cast<std::uint32_t>(vertex);
      vertex += counts.vertices[axis];
    }
    begin.polygon = static_cast<std::uint32_t>(polygon);
    begin.index = static_cast<std::uint32_t>(index);
    polygon += counts.polygons;
    index += counts.indices;
  }
  if (index > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return false;
  output.indices.resize(index);
  output.inputCells.resize(polygon, mesh.numCells);
  output.vertices.resize(3 * vertex);
  output.weights.resize(vertex);
  output.edgeBegins.resize(vertex, mesh.endNode);
  output.edgeEnds.resize(vertex, mesh.endNode);
  withValues(field, mesh.nodeDims, [&](const auto& values) {
    withPoints(mesh.points, [&](const auto& points) { write(job, values, points); });
  });
  return !job.isIrregular;
}

template <class Values>
void RowPolygoniser::classify(Job& job, const Values& values, bool buildsIndex) {
  const std::size_t numNodes = job.mesh.nodeDims.i;
  const std::size_t numBlocks = (numNodes + BLOCK - 1) / BLOCK;
  m_numWords = numNodes / GROUP + 2; // one word more than nodes fill, for windows that reach over the end
  m_bits.resize(m_numWords * job.numRows());
  m_sides.resize(job.numRows());
  constexpr bool isFunction = std::is_same_v<Values, FunctionGrid>;
  m_ranges.resize(isFunction ? 0 : 2 * numBlocks * job.numRows());
  if (buildsIndex) m_isIrregular = false;
  using Row = typename Values::Row;
  const BlockReader<Row> reader(job.isovalue);
  std::atomic<bool> isFinite{true};

  job.run.phase("classify", job.numSteps(), [&](std::size_t step) {
    bool isExact = false;
    bool isStepFinite = true;
    [[maybe_unused]] Bounds rowBounds{0.0, 0.0};
    job.forRows(step, [&](std::size_t rowNumber, std::size_t j, std::size_t k) {
      const Row row = values.row(j, k);
      std::uint32_t* words = m_bits.data() + rowNumber * m_numWords;
      [[maybe_unused]] float* ranges = m_ranges.data() + (isFunction ? 0 : 2 * rowNumber * numBlocks);
      std::fill_n(words, m_numWords, 0u);
      std::size_t numInside = 0;
      for (std::size_t b = 0; b < numBlocks; ++b) {
        const std::size_t begin = b * BLOCK;
        const std::size_t size = std::min(BLOCK, numNodes - begin);
        BlockBits bits;
        if constexpr (isFunction) {
          if (b == 0) rowBounds = row.bounds(0, numNodes);
          const Bounds bounds = rowBounds.hasZero() ? row.bounds(begin, size) : rowBounds;
          if (bounds.hasZero())
            bits = reader.bits(row, begin, size);
          else if (bounds.low > 0.0)
            bits.inside = headMask(size, 0);
        } else if (buildsIndex) {
          BlockRange range;
          bits = reader.bitsAndRange(row, begin, size, range);
          ranges[2 * b] = range.low;
          ranges[2 * b + 1] = range.high;
          isStepFinite &= range.isFinite;
        } else if (static_cast<double>(ranges[2 * b]) > job.isovalue) {
          bits.inside = headMask(size, 0);
        } else if (static_cast<double>(ranges[2 * b + 1]) >= job.isovalue) {
          bits = reader.bits(row, begin, size);
        }
        words[begin / GROUP] |= bits.inside << (begin % GROUP);
        isExact |= bits.isExact;
        numInside += static_cast<std::size_t>(std::popcount(bits.inside));
      }
      m_sides[rowNumber] = numInside == 0 ? OUTSIDE : numInside == numNodes ? INSIDE : MIXED;
    });
    if (isExact) job.isIrregular.store(true, std::memory_order_relaxed);
    if (!isStepFinite) isFinite.store(false, std::memory_order_relaxed);
  });
  if (!isFinite) m_isIrregular = true;
}

void RowPolygoniser::count(Job& job) {
  const Dims& cells = job.mesh.cellDims;
  m_counts.resize(job.numRows());
  const RowCases& table = RowCases::instance();
  job.run.phase("count", job.numSteps(), [&](std::size_t step) {
    job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
      m_counts[row] = {};
      const std::size_t nextJ = j < cells.j ? row + 1 : row;
      const std::size_t up = k < cells.k ? job.mesh.nodeDims.j : 0;
      const std::uint8_t side = m_sides[row];
      if (side != MIXED && side == m_sides[nextJ] && side == m_sides[row + up] && side == m_sides[nextJ + up]) return;
      const Totals t =
          countRow(quadOf(m_bits.data() + row * m_numWords, m_numWords, j < cells.j, k < cells.k, job.mesh.nodeDims.j),
                   cells.i, j < cells.j && k < cells.k, table);
      m_counts[row] = {{t.vertices[0], t.vertices[1], t.vertices[2]}, t.polygons, t.indices};
    });
  });
}

template <class Values, class Points>
void RowPolygoniser::write(Job& job, const Values& values, const Points& points) {
  const Dims& nodes = job.mesh.nodeDims;
  const Dims& cells = job.mesh.cellDims;
  const RowCases& table = RowCases::instance();
  SurfaceData& output = job.output;

  job.run.phase("write", job.numSteps(), [&](std::size_t step) {
    double notFinite = 0.0;
    const auto writeVertices = [&](std::size_t row, std::size_t j, std::size_t k, std::size_t axis) {
      const RowQuad quad = quadOf(m_bits.data() + row * m_numWords, m_numWords, j < cells.j, k < cells.k, nodes.j);
      const std::size_t toI = axis == 0;
      const std::size_t toJ = axis == 1;
      const std::size_t toK = axis == 2;
      if (j + toJ >= nodes.j || k + toK >= nodes.k) return;
      const auto from = values.row(j, k);
      const auto to = values.row(j + toJ, k + toK);
      const std::size_t node = nodes.flat(0, j, k);
      const std::size_t stride = axis == 0 ? 1 : axis == 1 ? nodes.i : nodes.i * nodes.j;
      std::size_t vertex = m_begins[row].vertex[axis];
      for (std::size_t g = 0; g * GROUP <= cells.i; ++g) {
        const std::uint64_t own = window(quad.row[0], g);
        std::uint32_t cutBits = 0;
        if (axis == 0)
          cutBits = low32(own ^ own >> 1) & headMask(cells.i, g);
        else
          cutBits = low32(own ^ window(quad.row[axis], g));
        for (; cutBits != 0; cutBits &= cutBits - 1) {
          const std::size_t i = g * GROUP + static_cast<std::size_t>(std::countr_zero(cutBits));
          const double a = from(i);
          const double weight = (job.isovalue - a) / (to(i + toI) - a);
          const KbVec3<double> p = points.at(i, j, k);
          const KbVec3<double> q = p + (points.at(i + toI, j + toJ, k + toK) - p) * weight;
          notFinite += (q[0] - q[0]) + (q[1] - q[1]) + (q[2] - q[2]);
          float* out = output.vertices.data() + 3 * vertex;
          out[0] = static_cast<float>(q[0]);
          out[1] = static_cast<float>(q[1]);
          out[2] = static_cast<float>(q[2]);
          output.weights[vertex] = static_cast<float>(weight);
          output.edgeBegins.set(vertex, node + i);
          output.edgeEnds.set(vertex, node + i + stride);
          ++vertex;
        }
      }
    };
    const auto writePolygons = [&](std::size_t row, std::size_t j, std::size_t k) {
      if (m_counts[row].polygons == 0) return;
      const RowQuad quad = quadOf(m_bits.data() + row * m_numWords, m_numWords, true, true, nodes.j);
      const RowBegin& r00 = m_begins[row];
      const RowBegin& r10 = m_begins[row + 1];
      const RowBegin& r01 = m_begins[row + nodes.j];
      const RowBegin& r11 = m_begins[row + nodes.j + 1];
      std::array<std::uint32_t, END_SLOT + 1> slots{r00.vertex[0], r10.vertex[0], r01.vertex[0], r11.vertex[0],
                                                    r00.vertex[1], r01.vertex[1], r00.vertex[2], r10.vertex[2]};
      slots[END_SLOT] = 0xffffffffu;
      std::int32_t* out = output.indices.data() + r00.index;
      std::size_t polygon = r00.polygon;
      const std::size_t cell = cells.flat(0, j, k);
      for (std::size_t g = 0; g * GROUP < cells.i; ++g) {
        std::uint64_t w[4];
        for (int r = 0; r < 4; ++r)
          w[r] = window(quad.row[r], g);
        for (std::uint32_t active = quad.active(w) & headMask(cells.i, g); active != 0; active &= active - 1) {
          const int i = std::countr_zero(active);
          const std::size_t bits = (w[0] >> i & 3) | (w[1] >> i & 3) << 2 | (w[2] >> i & 3) << 4 | (w[3] >> i & 3) << 6;
          const RowCases::Case& c = table.cases[bits];
          for (std::size_t n = 0; n < NUM_COUNTERS; ++n)
            slots[AFTER + n] = slots[n] + c.increments[n];
          const std::uint8_t* list = c.lists[job.isInverted].data();
          for (std::size_t n = 0; n < c.listSize; ++n)
            *out++ = static_cast<std::int32_t>(slots[list[n]]);
          for (std::size_t n = 0; n < c.numPolygons; ++n)
            output.inputCells.set(polygon++, cell + g * GROUP + static_cast<std::size_t>(i));
          for (std::size_t n = 0; n < NUM_COUNTERS; ++n)
            slots[n] = slots[AFTER + n];
        }
      }
    };
    job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
      for (std::size_t axis = 0; axis < 3; ++axis)
        if (m_counts[row].vertices[axis] > 0) writeVertices(row, j, k, axis);
      writePolygons(row, j, k);
    });
    if (notFinite != 0.0) job.isIrregular.store(true, std::memory_order_relaxed);
  });
}

} // namespace kx
