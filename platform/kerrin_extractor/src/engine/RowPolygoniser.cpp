// SPDX-License-Identifier: BSD-3-Clause
#include "RowPolygoniser.h"

#include "CellGeometry.h"
#include "RowJob.h"

#include <bit>
#include <limits>

// Counting bits is one instruction on every machine of the last fifteen years, yet not in the x86-64 baseline. The
// thread sanitizer would look at what chooses the clone, which runs before it is there itself.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_THREAD__)
#define KX_WITH_POPCOUNT __attribute__((target_clones("popcnt", "default")))
#else
#define KX_WITH_POPCOUNT
#endif

namespace kx {
namespace {

constexpr std::size_t GROUP = RowBits::GROUP;

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

/// The windows of four rows over one group.
struct Windows {
  std::uint64_t w[4];

  Windows(const std::uint32_t* const rows[4], std::size_t group) {
    for (int r = 0; r < 4; ++r)
      w[r] = RowBits::window(rows[r], group);
  }
  /// Cells that the surface crosses, before the end of the row is cut off.
  std::uint32_t crossed() const {
    const std::uint64_t any = w[0] | w[1] | w[2] | w[3];
    const std::uint64_t all = w[0] & w[1] & w[2] & w[3];
    return RowBits::low((any | any >> 1) & ~(all & all >> 1));
  }
  /// The bits around a cell, as `RowCases` counts them.
  std::size_t around(int cell) const {
    return (w[0] >> cell & 3) | (w[1] >> cell & 3) << 2 | (w[2] >> cell & 3) << 4 | (w[3] >> cell & 3) << 6;
  }
};

} // namespace

/// The four rows around the cells of a row. Rows beyond the grid repeat the last one: no edge is cut there.
struct RowPolygoniser::Quad {
  const std::uint32_t* rows[4];
  std::size_t begin; ///< groups in which something may be cut
  std::size_t end;
};

/// A row that is at work.
struct RowPolygoniser::RowPlace {
  std::size_t row;
  std::size_t j;
  std::size_t k;
  Quad quad;
  bool isIrregular;
};

/// What a row adds to the output.
struct RowPolygoniser::Totals {
  std::uint32_t vertices[3];
  std::uint32_t polygons;
  std::uint32_t indices;
};

bool RowPolygoniser::suits(const MeshView& mesh, const ScalarField& field) {
  return mesh.hasGridNodes && mesh.slotBits == 0 && !std::holds_alternative<SetIValues<double>>(field);
}

bool RowPolygoniser::cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
                         SurfaceData& output) {
  if (!buildsIndex && m_suitsNot) return false;
  m_suitsNot = false;
  const int sign = handedness(mesh);
  Job job{run, mesh, isovalue, output, sign < 0, buildsIndex};
  if (buildsIndex) {
    const bool isOnAxes = mesh.points.kind == PointView::Kind::AXES;
    const auto suits = std::holds_alternative<FunctionValues>(field) ? RowAxis::isMonotone : RowAxis::isFinite;
    const auto& axes = mesh.points.axes;
    m_suitsNot = sign == 0 || (isOnAxes && !std::all_of(axes.begin(), axes.end(), suits));
  }
  if (m_suitsNot) return false;
  classify(job, field);
  if (job.isRefused) m_suitsNot = true;
  if (m_suitsNot) return false;
  count(job);
  if (!numberOutput(job)) return false;
  withPoints(mesh.points, [&](const auto& points) {
    if (const auto* function = std::get_if<FunctionValues>(&field))
      withFunction(*function->function,
                   [&](const auto& f) { write(job, FunctionGrid<std::decay_t<decltype(f)>>{&f}, points); });
    else
      withSetValues(field, mesh.nodeDims, [&](const auto& values) { write(job, values, points); });
  });
  return !job.isRefused;
}

const std::uint32_t* RowPolygoniser::bitsOf(std::size_t row) const {
  const unsigned notes = m_notes[row];
  if ((notes & IS_MIXED) != 0) return m_inside[row];
  return m_uniform.data() + ((notes & FIRST_INSIDE) != 0 ? m_numWords : 0);
}

bool RowPolygoniser::isCut(const Job& job, std::size_t row, std::size_t j, std::size_t k) const {
  const std::size_t nextJ = row + (j < job.cells().j ? 1 : 0);
  const std::size_t up = k < job.cells().k ? job.nodes().j : 0;
  const unsigned any = m_notes[row] | m_notes[nextJ] | m_notes[row + up] | m_notes[nextJ + up];
  const unsigned all = m_notes[row] & m_notes[nextJ] & m_notes[row + up] & m_notes[nextJ + up];
  return (any & IS_MIXED) != 0 || ((any & ~all) & FIRST_INSIDE) != 0;
}

RowPolygoniser::Quad RowPolygoniser::quadOf(const Job& job, std::size_t row, std::size_t j, std::size_t k) const {
  const std::size_t nextJ = j < job.cells().j ? 1 : 0;
  const std::size_t nextK = k < job.cells().k ? job.nodes().j : 0;
  const std::size_t numbers[4] = {row, row + nextJ, row + nextK, row + nextJ + nextK};
  Quad quad{};
  quad.begin = std::numeric_limits<std::size_t>::max();
  unsigned any = 0;
  unsigned all = FIRST_INSIDE | LAST_INSIDE;
  for (std::size_t r = 0; r < 4; ++r) {
    quad.rows[r] = bitsOf(numbers[r]);
    any |= m_notes[numbers[r]];
    all &= m_notes[numbers[r]];
    quad.begin = std::min<std::size_t>(quad.begin, m_spans[numbers[r]].begin);
    quad.end = std::max<std::size_t>(quad.end, m_spans[numbers[r]].end);
  }
  // Where rows are unlike at an end, they stay so up to their changes.
  const unsigned unlike = any & ~all;
  if ((unlike & FIRST_INSIDE) != 0) quad.begin = 0;
  if ((unlike & LAST_INSIDE) != 0) quad.end = job.cells().i / GROUP + 1;
  return quad;
}

bool RowPolygoniser::isIrregular(const Job& job, std::size_t row, std::size_t j, std::size_t k) const {
  if ((m_allNotes & IS_IRREGULAR) == 0) return false;
  // Vertices of the rows around the cell depend on the cells around those.
  unsigned notes = 0;
  const std::size_t numJ = job.nodes().j;
  for (std::size_t n = row - (k > 0 ? numJ : 0); n <= row + (k < job.cells().k ? numJ : 0); n += numJ)
    for (std::size_t r = n - (j > 0 ? 1 : 0); r <= n + (j < job.cells().j ? 1 : 0); ++r)
      notes |= m_notes[r];
  return (notes & IS_IRREGULAR) != 0;
}

std::uint64_t RowPolygoniser::exactNodes(std::size_t row, std::size_t group) const {
  return (m_notes[row] & HAS_EXACT) != 0 ? RowBits::window(m_exact[row], group) : 0;
}

std::uint32_t RowPolygoniser::openCells(const Job& job, std::size_t j, std::size_t k, std::size_t group) const {
  if (j >= job.cells().j || k >= job.cells().k) return 0;
  const std::size_t row = job.rowOf(j, k);
  std::uint32_t open = RowBits::head(job.cells().i, group);
  if ((m_notes[row] & HAS_CLOSED) != 0) open &= ~m_closed[row][group];
  if ((m_allNotes & HAS_NOT_FINITE) != 0) {
    for (const std::size_t r : {row, row + 1, row + job.nodes().j, row + job.nodes().j + 1}) {
      if ((m_notes[r] & HAS_NOT_FINITE) == 0) continue;
      const std::uint64_t nodes = RowBits::window(m_notFinite[r], group);
      open &= ~RowBits::low(nodes | nodes >> 1);
    }
  }
  return open;
}

std::uint32_t RowPolygoniser::vertexEdges(const Job& job, std::size_t axis, std::size_t j, std::size_t k,
                                          std::size_t group) const {
  if ((axis == 1 && j >= job.cells().j) || (axis == 2 && k >= job.cells().k)) return 0;
  const std::size_t row = job.rowOf(j, k);
  const std::size_t other = row + (axis == 1 ? 1 : 0) + (axis == 2 ? job.nodes().j : 0);
  const std::uint64_t own = RowBits::window(bitsOf(row), group);
  const std::uint64_t ownExact = exactNodes(row, group);
  std::uint32_t edges = 0;
  if (axis == 0)
    edges = RowBits::low((own ^ own >> 1) & ~(ownExact | ownExact >> 1)) & RowBits::head(job.cells().i, group);
  else
    edges = RowBits::low((own ^ RowBits::window(bitsOf(other), group)) & ~(ownExact | exactNodes(other, group)));
  if (edges == 0 || (m_allNotes & KEPT) == 0) return edges;
  const auto around = [&](std::size_t g) {
    return openCells(job, j, k, g) | (axis == 1 ? 0 : openCells(job, j - 1, k, g)) |
           (axis == 2 ? 0 : openCells(job, j, k - 1, g)) | (axis == 0 ? openCells(job, j - 1, k - 1, g) : 0);
  };
  std::uint32_t open = around(group);
  if (axis > 0) open |= open << 1 | (group > 0 ? around(group - 1) >> (GROUP - 1) : 0);
  return edges & open;
}

void RowPolygoniser::count(Job& job) {
  m_begins.resize(job.numRows());
  m_stepBegins.assign(job.numSteps() + 1, {});
  job.run.phase("count", job.numSteps(), [&](std::size_t step) {
    RowBegin sum{};
    job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
      Totals t{};
      if (isCut(job, row, j, k)) {
        const RowPlace place{row, j, k, quadOf(job, row, j, k), isIrregular(job, row, j, k)};
        const bool hasCells = j < job.cells().j && k < job.cells().k;
        t = place.isIrregular ? countIrregularRow(job, place) : countRow(place.quad, job.cells().i, hasCells);
      }
      RowBegin& begin = m_begins[row];
      begin = sum;
      for (std::size_t axis = 0; axis < 3; ++axis)
        begin.vertex[axis + 1] = begin.vertex[axis] + t.vertices[axis];
      begin.numPolygons = t.polygons;
      sum.vertex[0] = begin.vertex[3];
      sum.polygon += t.polygons;
      sum.index += t.indices;
    });
    m_stepBegins[step + 1] = {sum.vertex[0], sum.polygon, sum.index};
  });
}

KX_WITH_POPCOUNT RowPolygoniser::Totals RowPolygoniser::countRow(const Quad& quad, std::size_t numCells,
                                                                 bool hasCells) {
  const RowCases& table = RowCases::instance();
  Totals t{};
  for (std::size_t g = quad.begin; g < quad.end; ++g) {
    const Windows nodes(quad.rows, g);
    const std::uint64_t* w = nodes.w;
    const std::uint32_t cellMask = RowBits::head(numCells, g);
    t.vertices[0] += static_cast<std::uint32_t>(std::popcount(RowBits::low(w[0] ^ w[0] >> 1) & cellMask));
    t.vertices[1] += static_cast<std::uint32_t>(std::popcount(RowBits::low(w[0] ^ w[1])));
    t.vertices[2] += static_cast<std::uint32_t>(std::popcount(RowBits::low(w[0] ^ w[2])));
    if (!hasCells) continue;
    for (std::uint32_t crossed = nodes.crossed() & cellMask; crossed != 0; crossed &= crossed - 1) {
      const RowCases::Case& c = table.cases[nodes.around(std::countr_zero(crossed))];
      t.polygons += c.numPolygons;
      t.indices += c.listSize;
    }
  }
  return t;
}

RowPolygoniser::Totals RowPolygoniser::countIrregularRow(const Job& job, const RowPlace& place) {
  const auto& [row, j, k, quad, isIrregular] = place;
  const RowCases& table = RowCases::instance();
  const std::size_t rows[4] = {row, row + 1, row + job.nodes().j, row + job.nodes().j + 1};
  Totals t{};
  for (std::size_t g = quad.begin; g < quad.end; ++g) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      t.vertices[axis] += static_cast<std::uint32_t>(std::popcount(vertexEdges(job, axis, j, k, g)));
    const Windows nodes(quad.rows, g);
    for (std::uint32_t open = nodes.crossed() & openCells(job, j, k, g); open != 0; open &= open - 1) {
      const int cell = std::countr_zero(open);
      const std::size_t bits = nodes.around(cell);
      std::size_t exact = 0;
      for (std::size_t r = 0; r < 4; ++r)
        exact |= (exactNodes(rows[r], g) >> cell & 3) << (2 * r);
      if (exact == 0) {
        t.polygons += table.cases[bits].numPolygons;
        t.indices += table.cases[bits].listSize;
        continue;
      }
      const RowCases::Polygons polygons = table.collapsed(bits, exact, job.isInverted);
      t.polygons += polygons.numPolygons;
      t.indices += polygons.listSize;
      for (std::size_t n = 0; n < polygons.listSize; ++n) {
        if (polygons.list[n] < RowCases::NODE_SLOT) continue;
        const std::size_t corner = polygons.list[n] - RowCases::NODE_SLOT;
        const std::size_t node = g * GROUP + static_cast<std::size_t>(cell) + (corner & 1);
        std::uint32_t& group = m_nodes[rows[corner >> 1] * m_numWords + node / GROUP].bits;
        std::atomic_ref<std::uint32_t>(group).fetch_or(1u << (node % GROUP), std::memory_order_relaxed);
      }
    }
  }
  return t;
}

bool RowPolygoniser::numberOutput(Job& job) {
  for (std::size_t step = 0; step < job.numSteps(); ++step) {
    m_stepBegins[step + 1].vertex += m_stepBegins[step].vertex;
    m_stepBegins[step + 1].polygon += m_stepBegins[step].polygon;
    m_stepBegins[step + 1].index += m_stepBegins[step].index;
  }
  StepBegin sum = m_stepBegins.back();
  if ((m_allNotes & HAS_EXACT) != 0) {
    for (std::size_t row = 0; row < job.numRows(); ++row) {
      if ((m_notes[row] & HAS_EXACT) == 0) continue;
      for (std::size_t g = 0; g < m_numWords; ++g) {
        NodeGroup& group = m_nodes[row * m_numWords + g];
        group.number = static_cast<std::uint32_t>(sum.vertex);
        sum.vertex += static_cast<std::size_t>(std::popcount(group.bits));
      }
    }
  }
  if (sum.index > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return false;
  SurfaceData& output = job.output;
  output.indices.resize(sum.index);
  output.inputCells.resize(sum.polygon, job.mesh.numCells);
  output.vertices.resize(3 * sum.vertex);
  output.weights.resize(sum.vertex);
  output.edgeBegins.resize(sum.vertex, job.mesh.endNode);
  output.edgeEnds.resize(sum.vertex, job.mesh.endNode);
  return true;
}

std::size_t RowPolygoniser::vertexBegin(std::size_t row, std::size_t axis) const {
  return m_stepBegins[row / Job::ROWS_A_STEP].vertex + m_begins[row].vertex[axis];
}

template <class Values, class Points>
void RowPolygoniser::write(Job& job, const Values& values, const Points& points) {
  job.run.phase("write", job.numSteps(), [&](std::size_t step) {
    job.forRows(step, [&](std::size_t row, std::size_t j, std::size_t k) {
      const RowBegin& begin = m_begins[row];
      const bool hasNodes = (m_notes[row] & HAS_EXACT) != 0;
      if (begin.vertex[0] == begin.vertex[3] && begin.numPolygons == 0 && !hasNodes) return;
      const RowPlace place{row, j, k, quadOf(job, row, j, k), isIrregular(job, row, j, k)};
      if (begin.vertex[0] != begin.vertex[1]) writeVertices<0>(job, values, points, place);
      if (begin.vertex[1] != begin.vertex[2]) writeVertices<1>(job, values, points, place);
      if (begin.vertex[2] != begin.vertex[3]) writeVertices<2>(job, values, points, place);
      if (hasNodes) writeNodes(job, points, place);
      if (begin.numPolygons == 0) return;
      if (place.isIrregular)
        writeIrregularPolygons(job, place);
      else
        writePolygons(job, place);
    });
  });
}

template <std::size_t AXIS, class Values, class Points>
void RowPolygoniser::writeVertices(Job& job, const Values& values, const Points& points, const RowPlace& place) {
  const auto& [row, j, k, quad, isSlow] = place;
  const Dims& nodes = job.nodes();
  SurfaceData& output = job.output;
  const std::size_t firstNode = nodes.flat(0, j, k);
  const std::size_t stride = AXIS == 0 ? 1 : AXIS == 1 ? nodes.i : nodes.i * nodes.j;
  const auto& from = values.row(j, k);
  const auto& to = values.row(j + (AXIS == 1), k + (AXIS == 2));
  std::size_t vertex = vertexBegin(row, AXIS);
  float notFinite = 0.0f; // found in the output: numbers that are too great for it count as well
  for (std::size_t g = quad.begin; g < quad.end; ++g) {
    std::uint32_t edges = 0;
    const std::uint64_t own = RowBits::window(quad.rows[0], g);
    if (isSlow)
      edges = vertexEdges(job, AXIS, j, k, g);
    else if (AXIS == 0)
      edges = RowBits::low(own ^ own >> 1) & RowBits::head(job.cells().i, g);
    else
      edges = RowBits::low(own ^ RowBits::window(quad.rows[AXIS], g));
    for (; edges != 0; edges &= edges - 1) {
      const std::size_t i = g * GROUP + static_cast<std::size_t>(std::countr_zero(edges));
      const KbVec3<double> p = points.at(i, j, k);
      const KbVec3<double> q = points.template next<AXIS>(p, i, j, k);
      const double a = from(i, p);
      const double weight = (job.isovalue - a) / (to(i + (AXIS == 0), q) - a);
      const KbVec3<double> v = p + (q - p) * weight;
      float* out = output.vertices.data() + 3 * vertex;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        out[axis] = static_cast<float>(v[axis]);
        notFinite += out[axis] - out[axis];
      }
      output.weights[vertex] = static_cast<float>(weight);
      output.edgeBegins.set(vertex, firstNode + i);
      output.edgeEnds.set(vertex, firstNode + i + stride);
      ++vertex;
    }
  }
  if (notFinite != 0.0f) job.isRefused.store(true, std::memory_order_relaxed);
}

template <class Points>
void RowPolygoniser::writeNodes(Job& job, const Points& points, const RowPlace& place) {
  SurfaceData& output = job.output;
  float notFinite = 0.0f;
  for (std::size_t g = 0; g < m_numWords; ++g) {
    const NodeGroup& group = m_nodes[place.row * m_numWords + g];
    std::size_t vertex = group.number;
    for (std::uint32_t bits = group.bits; bits != 0; bits &= bits - 1, ++vertex) {
      const std::size_t i = g * GROUP + static_cast<std::size_t>(std::countr_zero(bits));
      const KbVec3<double> p = points.at(i, place.j, place.k);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        float& out = output.vertices[3 * vertex + axis];
        out = static_cast<float>(p[axis]);
        notFinite += out - out;
      }
      const std::size_t node = job.nodes().flat(i, place.j, place.k);
      output.weights[vertex] = 0.0f;
      output.edgeBegins.set(vertex, node);
      output.edgeEnds.set(vertex, node);
    }
  }
  if (notFinite != 0.0f) job.isRefused.store(true, std::memory_order_relaxed);
}

RowPolygoniser::Slots RowPolygoniser::slotsOf(const Job& job, std::size_t row) const {
  const std::size_t up = row + job.nodes().j;
  Slots slots{};
  const std::pair<std::size_t, std::size_t> counters[RowCases::NUM_COUNTERS] = {
      {row, 0}, {row + 1, 0}, {up, 0}, {up + 1, 0}, {row, 1}, {up, 1}, {row, 2}, {row + 1, 2}};
  for (std::size_t n = 0; n < RowCases::NUM_COUNTERS; ++n)
    slots[n] = static_cast<std::uint32_t>(vertexBegin(counters[n].first, counters[n].second));
  slots[RowCases::END_SLOT] = 0xffffffffu;
  return slots;
}

void RowPolygoniser::writePolygons(Job& job, const RowPlace& place) {
  const auto& [row, j, k, quad, isSlow] = place;
  const RowCases& table = RowCases::instance();
  const StepBegin& begin = m_stepBegins[row / Job::ROWS_A_STEP];
  Slots slots = slotsOf(job, row);
  std::int32_t* out = job.output.indices.data() + begin.index + m_begins[row].index;
  std::size_t polygon = begin.polygon + m_begins[row].polygon;
  const std::size_t firstCell = job.cells().flat(0, j, k);
  for (std::size_t g = quad.begin; g < quad.end; ++g) {
    const Windows nodes(quad.rows, g);
    for (std::uint32_t crossed = nodes.crossed() & RowBits::head(job.cells().i, g); crossed != 0;
         crossed &= crossed - 1) {
      const int cell = std::countr_zero(crossed);
      const RowCases::Case& c = table.cases[nodes.around(cell)];
      for (std::size_t n = 0; n < RowCases::NUM_COUNTERS; ++n)
        slots[RowCases::AFTER + n] = slots[n] + c.increments[n];
      const std::uint8_t* list = c.lists[job.isInverted].data();
      for (std::size_t n = 0; n < c.listSize; ++n)
        *out++ = static_cast<std::int32_t>(slots[list[n]]);
      for (std::size_t n = 0; n < c.numPolygons; ++n)
        job.output.inputCells.set(polygon++, firstCell + g * GROUP + static_cast<std::size_t>(cell));
      for (std::size_t n = 0; n < RowCases::NUM_COUNTERS; ++n)
        slots[n] = slots[RowCases::AFTER + n];
    }
  }
}

void RowPolygoniser::writeIrregularPolygons(Job& job, const RowPlace& place) {
  const auto& [row, j, k, quad, isSlow] = place;
  const RowCases& table = RowCases::instance();
  const std::size_t rows[4] = {row, row + 1, row + job.nodes().j, row + job.nodes().j + 1};
  const StepBegin& begin = m_stepBegins[row / Job::ROWS_A_STEP];
  Slots slots = slotsOf(job, row);
  std::int32_t* out = job.output.indices.data() + begin.index + m_begins[row].index;
  std::size_t polygon = begin.polygon + m_begins[row].polygon;
  const std::size_t firstCell = job.cells().flat(0, j, k);
  for (std::size_t g = quad.begin; g < quad.end; ++g) {
    const Windows nodes(quad.rows, g);
    std::uint32_t crossed = nodes.crossed() & RowBits::head(job.cells().i, g);
    if (crossed == 0) continue;
    const std::uint32_t open = openCells(job, j, k, g);
    const std::array<std::uint32_t, RowCases::NUM_COUNTERS> edges{
        vertexEdges(job, 0, j, k, g),         vertexEdges(job, 0, j + 1, k, g), vertexEdges(job, 0, j, k + 1, g),
        vertexEdges(job, 0, j + 1, k + 1, g), vertexEdges(job, 1, j, k, g),     vertexEdges(job, 1, j, k + 1, g),
        vertexEdges(job, 2, j, k, g),         vertexEdges(job, 2, j + 1, k, g)};
    for (; crossed != 0; crossed &= crossed - 1) {
      const int cell = std::countr_zero(crossed);
      for (std::size_t n = 0; n < RowCases::NUM_COUNTERS; ++n)
        slots[RowCases::AFTER + n] = slots[n] + (edges[n] >> cell & 1);
      if ((open >> cell & 1) != 0) {
        std::size_t exact = 0;
        for (std::size_t r = 0; r < 4; ++r)
          exact |= (exactNodes(rows[r], g) >> cell & 3) << (2 * r);
        const RowCases::Polygons polygons = table.collapsed(nodes.around(cell), exact, job.isInverted);
        for (std::size_t n = 0; n < polygons.listSize; ++n) {
          const std::uint8_t slot = polygons.list[n];
          if (slot >= RowCases::NODE_SLOT) {
            const std::size_t corner = slot - RowCases::NODE_SLOT;
            const std::size_t node = g * GROUP + static_cast<std::size_t>(cell) + (corner & 1);
            const NodeGroup& group = m_nodes[rows[corner >> 1] * m_numWords + node / GROUP];
            const std::uint32_t below = (1u << (node % GROUP)) - 1;
            slots[slot] = group.number + static_cast<std::uint32_t>(std::popcount(group.bits & below));
          }
          *out++ = static_cast<std::int32_t>(slots[slot]);
        }
        for (std::size_t n = 0; n < polygons.numPolygons; ++n)
          job.output.inputCells.set(polygon++, firstCell + g * GROUP + static_cast<std::size_t>(cell));
      }
      for (std::size_t n = 0; n < RowCases::NUM_COUNTERS; ++n)
        slots[n] = slots[RowCases::AFTER + n];
    }
  }
}

} // namespace kx
