// SPDX-License-Identifier: BSD-3-Clause
#include "CellIndex.h"

#include "Blocks.h"
#include "CellReader.h"
#include "CornerValues.h"
#include "FinitePosition.h"
#include "KnownFunctions.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace kx {
namespace {

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

} // namespace

void CellIndex::reset(const MeshView& mesh) {
  m_numCells = mesh.numCells;
  m_states.resize(m_numCells);
  std::fill_n(m_states.data(), m_numCells, UNKNOWN);
}

void CellIndex::prepare(const MeshView& mesh, const ScalarField& field) {
  const bool isFunction = std::holds_alternative<FunctionValues>(field);
  m_low.resize(isFunction ? 0 : m_numCells);
  m_high.resize(isFunction ? 0 : m_numCells);
  m_boxes.resize(isFunction ? 6 * numBlocksOf(m_numCells, BLOCK) : 0);
  m_chunkBoxes.resize(isFunction ? numBlocksOf(m_numCells, CHUNK) : 0);
  if (isFunction) return;
  // The steps span the values of a sample: a wrong range costs time, never cells.
  constexpr std::size_t MAX_SAMPLES = 1024;
  const std::size_t numNodes = mesh.numNodes();
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
        [&](const auto&, const std::vector<std::size_t>& nodes) {
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

/// Takes up cells. One with a point that is no position leaves the box alone.
class CellIndex::BoxMaker {
public:
  explicit BoxMaker(const PointView& points)
      : m_points(points) {}

#if defined(__SSE2__)
  /// Whether the cell has been taken up.
  bool add(const std::size_t* ids, std::size_t count) {
    // Kept in registers over the loop.
    __m128 low = m_low;
    __m128 high = m_high;
    __m128 notFinite = _mm_setzero_ps();
    const auto extend = [&](__m128 p) {
      low = _mm_min_ps(p, low);
      high = _mm_max_ps(p, high);
      notFinite = _mm_add_ps(notFinite, _mm_sub_ps(p, p));
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
    if (_mm_movemask_ps(_mm_cmpeq_ps(notFinite, _mm_setzero_ps())) != 0xf) return false;
    m_low = low;
    m_high = high;
    return true;
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
  bool add(const std::size_t* ids, std::size_t count) {
    Box box = m_box;
    for (std::size_t i = 0; i < count; ++i) {
      const KbVec3<float> p(m_points[ids[i]]);
      if (!isFinite(KbVec3<double>(p))) return false;
      box.add({{p[0], p[1], p[2]}, {p[0], p[1], p[2]}});
    }
    m_box = box;
    return true;
  }
  Box box() const { return rounded(m_box); }

private:
  Box m_box = NOTHING;
#endif
  /// One step outwards where positions are finer than floats.
  Box rounded(Box box) const {
    if (m_points.kind == PointView::Kind::FLOATS || box.isEmpty()) return box;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      box.low[axis] = std::nextafter(box.low[axis], std::numeric_limits<float>::lowest());
      box.high[axis] = std::nextafter(box.high[axis], std::numeric_limits<float>::max());
    }
    return box;
  }
  const PointView& m_points;
};

void CellIndex::Box::add(const Box& other) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] = std::min(low[axis], other.low[axis]);
    high[axis] = std::max(high[axis], other.high[axis]);
  }
}

template <class Cells>
void CellIndex::buildBoxes(const MeshView& mesh, const Cells& cells, std::size_t chunk, Faults& faults) {
  CellReader<Purpose::POSITIONS, Cells> reader(mesh, cells, faults);
  const std::size_t begin = chunk * CHUNK;
  const std::size_t end = std::min(begin + CHUNK, m_numCells);
  std::vector<Box> boxes(numBlocksIn(chunk));
  for (std::size_t base = begin; base < end; base += BLOCK) {
    BoxMaker maker(mesh.points);
    for (std::size_t cell = base; cell < std::min(base + BLOCK, end); ++cell) {
      const auto add = [&](const std::size_t* nodes, std::size_t count) __attribute__((always_inline)) {
        if (maker.add(nodes, count)) return;
        faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        m_states[cell] = YIELDS_NOTHING;
      };
      const bool isRead = reader.read(
          cell,
          [&](CellCode code, const CellNodes& nodes)
              __attribute__((always_inline)) { add(nodes.data(), code == HEXAHEDRON ? 8 : NUM_CORNERS[code]); },
          [&](const auto&, const std::vector<std::size_t>& nodes) { add(nodes.data(), nodes.size()); });
      if (!isRead) m_states[cell] = YIELDS_NOTHING;
    }
    boxes[(base - begin) / BLOCK] = maker.box();
  }
  storeBoxes(chunk, boxes);
}

void CellIndex::storeBoxes(std::size_t chunk, const std::vector<Box>& boxes) {
  const std::size_t count = boxes.size();
  Box all = NOTHING;
  for (const Box& box : boxes)
    all.add(box);
  m_chunkBoxes[chunk] = all;
  std::uint8_t* steps = m_boxes.data() + 6 * chunk * CHUNK_BLOCKS;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto base = static_cast<double>(all.low[axis]);
    const double size = static_cast<double>(all.high[axis]) - base;
    const double scale = size > 0.0 ? NUM_STEPS / size : 0.0;
    const auto stepOf = [&](float x, double room) {
      const double step = (static_cast<double>(x) - base) * scale + room;
      return static_cast<std::uint8_t>(std::min(std::max(step, 0.0), NUM_STEPS));
    };
    // The hundredth part of a step is more than the roundings of this and of the way back.
    for (std::size_t block = 0; block < count; ++block) {
      steps[axis * count + block] = stepOf(boxes[block].low[axis], -0.01);
      steps[(axis + 3) * count + block] = stepOf(boxes[block].high[axis], 1.01);
    }
  }
}

template <class Function>
std::size_t CellIndex::findByBoxes(std::size_t chunk, const Function& function, ChunkCells& cells) const {
  const Box& all = m_chunkBoxes[chunk];
  if (all.isEmpty()) return 0;
  const KbVec3<double> chunkLow(KbVec3<float>(all.low[0], all.low[1], all.low[2]));
  const KbVec3<double> chunkHigh(KbVec3<float>(all.high[0], all.high[1], all.high[2]));
  if (!function.boundsIn(chunkLow, chunkHigh).hasZero()) return 0;

  // One byte a block: whether the surface may meet its box. Left to the compiler's vectors.
  const std::size_t count = numBlocksIn(chunk);
  std::array<std::uint8_t, CHUNK_BLOCKS> meets;
  if constexpr (std::is_same_v<Function, ImplicitFunction>) {
    std::fill_n(meets.begin(), count, std::uint8_t{1});
  } else {
    const double magnitude = function.magnitude(chunkLow, chunkHigh);
    const std::uint8_t* steps = m_boxes.data() + 6 * chunk * CHUNK_BLOCKS;
    const auto look = [&]<class T>(T room) {
      const KbVec3<T> base(chunkLow);
      const KbVec3<T> scale((chunkHigh - chunkLow) / NUM_STEPS);
      for (std::size_t block = 0; block < count; ++block) {
        const auto at = [&](std::size_t axis, std::size_t side) {
          return base[axis] + scale[axis] * static_cast<T>(steps[(axis + side) * count + block]);
        };
        const BoundsOf<T> bounds =
            function.template boundsOver<T>({at(0, 0), at(1, 0), at(2, 0)}, {at(0, 3), at(1, 3), at(2, 3)});
        meets[block] = static_cast<std::uint8_t>((bounds.low <= room) & (bounds.high >= -room));
      }
    };
    // Squares leave the range of float long before the coordinates do.
    if (1e-25 < magnitude && magnitude < 1e35)
      look(static_cast<float>(1e-5 * magnitude));
    else
      look(1e-5 * magnitude);
  }
  const std::size_t begin = chunk * CHUNK;
  std::size_t numFound = 0;
  for (std::size_t block = 0; block < count; ++block) {
    if (meets[block] == 0) continue;
    for (std::size_t c = block * BLOCK; c < std::min((block + 1) * BLOCK, m_numCells - begin); ++c)
      if (m_states[begin + c] != YIELDS_NOTHING) cells[numFound++] = static_cast<std::uint16_t>(c);
  }
  return numFound;
}

std::size_t CellIndex::find(std::size_t chunk, double isovalue, const ImplicitFunction* function,
                            ChunkCells& cells) const {
  const std::size_t begin = chunk * CHUNK;
  const std::size_t end = std::min(begin + CHUNK, m_numCells);
  if (!function) return findBySteps(begin, end, step(isovalue), cells);
  std::size_t numFound = 0;
  withFunction(*function, [&](const auto& f) { numFound = findByBoxes(chunk, f, cells); });
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
