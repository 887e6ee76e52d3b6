// SPDX-License-Identifier: BSD-3-Clause
#include "CellIndex.h"

#include "CornerValues.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace kx {
namespace {

std::size_t numBlocks(std::size_t count, std::size_t block) { return (count + block - 1) / block; }

/// One bit for each of up to 64 cells: whether the step lies in [low, high].
std::uint64_t candidates(const std::uint8_t* low, const std::uint8_t* high, std::size_t count, std::uint8_t step) {
  std::uint64_t bits = 0;
#if defined(__SSE2__)
  if (count == 64) {
    const __m128i s = _mm_set1_epi8(static_cast<char>(step));
    for (unsigned part = 0; part < 4; ++part) {
      const __m128i l = _mm_loadu_si128(reinterpret_cast<const __m128i*>(low + 16 * part));
      const __m128i h = _mm_loadu_si128(reinterpret_cast<const __m128i*>(high + 16 * part));
      const __m128i hit = _mm_and_si128(_mm_cmpeq_epi8(_mm_min_epu8(l, s), l), _mm_cmpeq_epi8(_mm_max_epu8(h, s), h));
      bits |= static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(hit))) << (16 * part);
    }
    return bits;
  }
#endif
  for (std::size_t i = 0; i < count; ++i)
    bits |= static_cast<std::uint64_t>(low[i] <= step && step <= high[i]) << i;
  return bits;
}

/// What is asked of the nodes of cells.
enum class Purpose { VALUES, POSITIONS };

/// Reads cells one after the other, for what is asked of their corners.
template <Purpose PURPOSE, class Cells>
class CellReader {
public:
  CellReader(const MeshView& mesh, const Cells& cells, Faults& faults)
      : m_mesh(mesh)
      , m_cells(cells)
      , m_faults(faults)
      , m_hasClosedCells(mesh.hasClosedCells())
      , m_numNodes(mesh.endNode - std::min(mesh.beginNode, mesh.endNode)) {}

  /// Calls `corners(code, nodes)` or `polyhedron(nodes)` for an open cell whose nodes exist; false for others.
  template <class Corners, class Polyhedron>
  [[gnu::always_inline]] bool read(std::size_t cell, const Corners& corners, const Polyhedron& polyhedron) {
    if (m_hasClosedCells && !m_mesh.isOpen(cell)) return false;
    CellNodes nodes{};
    const CellCode code = PURPOSE == Purpose::VALUES ? m_cells.loadForValues(cell, nodes) : m_cells.load(cell, nodes);
    if (code < POLYHEDRON) {
      const std::size_t count = code == HEXAHEDRON ? 8 : NUM_CORNERS[code];
      if (!areNodes(nodes, count)) return refuse(Faults::NODE_OUT_OF_RANGE, cell);
      corners(code, nodes);
      return true;
    }
    if (code == UNREADABLE || !m_mesh.loadPolyhedron(cell, m_faces, m_all))
      return refuse(Faults::UNREADABLE_CELL, cell);
    if (!areNodes(m_all, m_all.size())) return refuse(Faults::NODE_OUT_OF_RANGE, cell);
    polyhedron(m_all);
    return true;
  }

private:
  template <class Ids>
  bool areNodes(const Ids& ids, std::size_t count) const {
    std::size_t greatest = 0;
    for (std::size_t i = 0; i < count; ++i)
      greatest = std::max(greatest, (ids[i] >> m_mesh.slotBits) - m_mesh.beginNode);
    return greatest < m_numNodes;
  }
  bool refuse(Faults::Kind fault, std::size_t cell) const {
    m_faults.add(fault, cell);
    return false;
  }

  const MeshView& m_mesh;
  const Cells& m_cells;
  Faults& m_faults;
  bool m_hasClosedCells;
  std::size_t m_numNodes;
  std::vector<std::vector<std::size_t>> m_faces;
  std::vector<std::size_t> m_all;
};

} // namespace

void CellIndex::reset(const MeshView& mesh, const ScalarField& field) {
  m_numCells = mesh.numCells;
  m_states.resize(m_numCells);
  const bool isFunction = std::holds_alternative<FunctionValues>(field);
  m_low.resize(isFunction ? 0 : m_numCells);
  m_high.resize(isFunction ? 0 : m_numCells);
  m_boxes.resize(isFunction ? numBlocks(m_numCells, BLOCK) : 0);
  m_chunkBoxes.resize(isFunction ? numBlocks(m_numCells, CHUNK) : 0);
  if (isFunction) return;
  // The steps span the values of a sample: a wrong range costs time, never cells.
  constexpr std::size_t MAX_SAMPLES = 1024;
  const std::size_t numNodes = mesh.endNode - std::min(mesh.beginNode, mesh.endNode);
  const std::size_t numSamples = std::min(MAX_SAMPLES, numNodes);
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  for (std::size_t s = 0; s < numSamples; ++s) {
    const std::size_t node = mesh.beginNode + s * numNodes / numSamples;
    const double v = std::visit([&](const auto& values) { return values(node << mesh.slotBits); }, field);
    if (!std::isfinite(v)) continue;
    low = std::min(low, v);
    high = std::max(high, v);
  }
  m_base = low < high ? low : 0.0;
  m_scale = low < high ? 256.0 / (high - low) : 0.0;
  if (!std::isfinite(m_scale)) m_scale = 0.0;
}

void CellIndex::build(const MeshView& mesh, const ScalarField& field, std::size_t chunk, Faults& faults) {
  std::visit(
      [&](const auto& cells, const auto& values) {
        if constexpr (std::is_same_v<std::decay_t<decltype(values)>, FunctionValues>)
          buildBoxes(mesh, cells, chunk, faults);
        else
          buildSteps(mesh, cells, values, chunk, faults);
      },
      mesh.cells, field);
}

template <class Cells, class Values>
void CellIndex::buildSteps(const MeshView& mesh, const Cells& cells, const Values& values, std::size_t chunk,
                           Faults& faults) {
  CellReader<Purpose::VALUES, Cells> reader(mesh, cells, faults);
  const std::size_t end = std::min((chunk + 1) * CHUNK, m_numCells);
  for (std::size_t cell = chunk * CHUNK; cell < end; ++cell) {
    m_states[cell] = UNKNOWN;
    m_low[cell] = 255;
    m_high[cell] = 0;
    const auto setSteps = [&](double least, double greatest) {
      if (least == greatest) return;
      m_low[cell] = step(least);
      m_high[cell] = step(greatest);
    };
    reader.read(
        cell,
        [&](CellCode code, CellNodes & nodes) __attribute__((always_inline)) {
          withCornerValues(
              values, code, nodes, [&](const auto& corners) __attribute__((always_inline)) {
                typename Values::Raw least;
                typename Values::Raw greatest;
                if (corners.range(least, greatest)) setSteps(static_cast<double>(least), static_cast<double>(greatest));
              });
        },
        [&](const std::vector<std::size_t>& nodes) {
          double least = std::numeric_limits<double>::infinity();
          double greatest = -least;
          for (const std::size_t node : nodes) {
            const double v = values(node);
            if (!std::isfinite(v)) return;
            least = std::min(least, v);
            greatest = std::max(greatest, v);
          }
          setSteps(least, greatest);
        });
  }
}

/// Takes up points. A coordinate that is not a number leaves the box alone; its cells are refused when crossed.
class CellIndex::BoxMaker {
public:
  explicit BoxMaker(const PointView& points)
      : m_points(points) {}

#if defined(__SSE2__)
  void add(const std::size_t* ids, std::size_t count) {
    // Kept in registers over the loop.
    __m128 low = m_low;
    __m128 high = m_high;
    const auto extend = [&](__m128 p) {
      low = _mm_min_ps(p, low);
      high = _mm_max_ps(p, high);
    };
    if (m_points.kind == PointView::Kind::FLOATS) {
      for (std::size_t i = 0; i < count; ++i) {
        const float* p = static_cast<const float*>(m_points.array) + 3 * ids[i];
        const __m128 xy = _mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(p));
        extend(_mm_movelh_ps(xy, _mm_load_ss(p + 2)));
      }
    } else {
      for (std::size_t i = 0; i < count; ++i) {
        const KbVec3<double> p = m_points[ids[i]];
        extend(_mm_set_ps(0.0f, static_cast<float>(p[2]), static_cast<float>(p[1]), static_cast<float>(p[0])));
      }
    }
    m_low = low;
    m_high = high;
  }
  Box box() const {
    float low[4];
    float high[4];
    _mm_storeu_ps(low, m_low);
    _mm_storeu_ps(high, m_high);
    return rounded({{low[0], low[1], low[2]}, {high[0], high[1], high[2]}});
  }

private:
  __m128 m_low = _mm_set1_ps(std::numeric_limits<float>::infinity());
  __m128 m_high = _mm_set1_ps(-std::numeric_limits<float>::infinity());
#else
  void add(const std::size_t* ids, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      const KbVec3<double> p = m_points[ids[i]];
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto x = static_cast<float>(p[axis]);
        if (x < m_box.low[axis]) m_box.low[axis] = x;
        if (x > m_box.high[axis]) m_box.high[axis] = x;
      }
    }
  }
  Box box() const { return rounded(m_box); }

private:
  static constexpr float INF = std::numeric_limits<float>::infinity();
  Box m_box{{INF, INF, INF}, {-INF, -INF, -INF}};
#endif
  /// One step outwards where positions are finer than floats.
  Box rounded(Box box) const {
    if (m_points.kind == PointView::Kind::FLOATS || !(box.low[0] <= box.high[0])) return box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.low[axis] = std::nextafter(box.low[axis], -std::numeric_limits<float>::infinity());
      box.high[axis] = std::nextafter(box.high[axis], std::numeric_limits<float>::infinity());
    }
    return box;
  }
  const PointView& m_points;
};

template <class Cells>
void CellIndex::buildBoxes(const MeshView& mesh, const Cells& cells, std::size_t chunk, Faults& faults) {
  CellReader<Purpose::POSITIONS, Cells> reader(mesh, cells, faults);
  const std::size_t end = std::min((chunk + 1) * CHUNK, m_numCells);
  Box all = BoxMaker(mesh.points).box();
  for (std::size_t base = chunk * CHUNK; base < end; base += BLOCK) {
    BoxMaker maker(mesh.points);
    for (std::size_t cell = base; cell < std::min(base + BLOCK, end); ++cell) {
      const bool isRead = reader.read(
          cell,
          [&](CellCode code, const CellNodes& nodes)
              __attribute__((always_inline)) { maker.add(nodes.data(), code == HEXAHEDRON ? 8 : NUM_CORNERS[code]); },
          [&](const std::vector<std::size_t>& nodes) { maker.add(nodes.data(), nodes.size()); });
      m_states[cell] = isRead ? UNKNOWN : YIELDS_NOTHING;
    }
    m_boxes[base / BLOCK] = maker.box();
    all.add(m_boxes[base / BLOCK]);
  }
  m_chunkBoxes[chunk] = all;
}

void CellIndex::Box::add(const Box& other) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] = std::min(low[axis], other.low[axis]);
    high[axis] = std::max(high[axis], other.high[axis]);
  }
}

bool CellIndex::Box::meets(const ImplicitFunction& function) const {
  float size = 0.0f;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (!(low[axis] <= high[axis])) return false;
    size += high[axis] - low[axis];
  }
  if (!std::isfinite(size)) return true; // no bounds to be had; the cells are looked at one by one
  const auto point = [](const std::array<float, 3>& p) {
    return KbVec3<double>(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]));
  };
  return function.boundsIn(point(low), point(high)).hasZero();
}

std::size_t CellIndex::find(std::size_t chunk, double isovalue, const ImplicitFunction* function,
                            ChunkCells& cells) const {
  const std::size_t begin = chunk * CHUNK;
  const std::size_t end = std::min(begin + CHUNK, m_numCells);
  if (!function) return findBySteps(begin, end, step(isovalue), cells);
  if (!m_chunkBoxes[chunk].meets(*function)) return 0;
  std::size_t numFound = 0;
  for (std::size_t base = begin; base < end; base += BLOCK) {
    if (!m_boxes[base / BLOCK].meets(*function)) continue;
    for (std::size_t cell = base; cell < std::min(base + BLOCK, end); ++cell)
      if (m_states[cell] != YIELDS_NOTHING) cells[numFound++] = static_cast<std::uint16_t>(cell - begin);
  }
  return numFound;
}

std::size_t CellIndex::findBySteps(std::size_t begin, std::size_t end, std::uint8_t isoStep, ChunkCells& cells) const {
  std::size_t numFound = 0;
  for (std::size_t base = begin; base < end; base += 64) {
    std::uint64_t bits =
        candidates(m_low.data() + base, m_high.data() + base, std::min<std::size_t>(64, end - base), isoStep);
    for (; bits != 0; bits &= bits - 1)
      cells[numFound++] = static_cast<std::uint16_t>(base - begin + static_cast<std::size_t>(std::countr_zero(bits)));
  }
  return numFound;
}

} // namespace kx
