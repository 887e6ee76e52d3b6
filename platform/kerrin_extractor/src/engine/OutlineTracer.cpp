// SPDX-License-Identifier: BSD-3-Clause
#include "OutlineTracer.h"

#include "Blocks.h"
#include "FinitePosition.h"
#include "NodeNumbers.h"

#include <KerrinExtractor/KbVec3.h>

#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <numbers>
#include <vector>

namespace kx {
namespace {

using Vec3 = KbVec3<double>;

constexpr std::size_t STEP = 4096;                            // polygons of one step, whole batches
constexpr float COSINE = std::numbers::sqrt3_v<float> / 2.0f; // of 30 degrees
// A block takes about 80 bytes a polygon while it is at work.
constexpr std::size_t MIN_POLYGONS_PER_BLOCK = 512;
constexpr std::size_t BLOCKS_PER_THREAD = 16;

/// Calls `visit(smaller id, greater id, whether the polygon runs from the smaller to the greater one)` for the edges of
/// a polygon.
template <class Id, class Visit>
void visitEdges(const PolygonBatch& polygons, std::size_t n, const Visit& visit) {
  const std::size_t* ids = polygons.corners(n);
  const std::size_t count = polygons.numCorners(n);
  if (count == 0) return;
  Id from = static_cast<Id>(ids[count - 1]);
  for (std::size_t c = 0; c < count; ++c) {
    const Id to = static_cast<Id>(ids[c]);
    visit(std::min(from, to), std::max(from, to), from < to);
    from = to;
  }
}

/// The edges whose smaller ids lie in one block, matched while polygons are added. `Id` is wide enough for all ids and
/// polygons.
template <class Id>
class EdgeBlock {
public:
  struct Edge {
    Id a; ///< the smaller id
    Id b;
    Id polygon;               ///< the first one
    KbVec3<float> normal;     ///< of that; null without an area
    std::uint32_t next;       ///< in the same place, counted from 1; 0 is none
    std::uint8_t numPolygons; ///< 1, 2, or 3 for more
    bool isForward;           ///< the first polygon runs from a to b
    bool isSharp = false;     ///< between the first two
    bool isBetween = false;   ///< some polygons are parts of different faces
  };

  /// For smaller ids from `low` to `high`.
  EdgeBlock(const OutlineTracer::Rules& rules, Id low, Id high, std::size_t numEdges)
      : m_rules(rules)
      , m_low(low)
      , m_size(high - low) {
    while (m_size >> m_bits > numEdges)
      ++m_bits;
    m_places.assign((m_size >> m_bits) + 1, 0);
    m_edges.reserve(numEdges);
  }

  bool holds(Id smaller) const { return static_cast<Id>(smaller - m_low) <= m_size; }
  void add(Id polygon, const KbVec3<float>& normal, const PolygonBatch& polygons, std::size_t n) {
    visitEdges<Id>(polygons, n, [&](Id a, Id b, bool isForward) {
      if (holds(a)) add({a, b, polygon, normal, 0, 1, isForward});
    });
  }

  /// Calls `visit` for the edges to be shown, in order.
  template <class Visit>
  void visitChosen(const Visit& visit) const {
    std::vector<const Edge*> chosen;
    for (const std::uint32_t first : m_places) {
      chosen.clear();
      for (std::uint32_t e = first; e != 0; e = m_edges[e - 1].next)
        if (isChosen(m_edges[e - 1])) chosen.push_back(&m_edges[e - 1]);
      std::sort(chosen.begin(), chosen.end(),
                [](const Edge* x, const Edge* y) { return x->a != y->a ? x->a < y->a : x->b < y->b; });
      for (const Edge* edge : chosen)
        visit(*edge);
    }
  }

private:
  void add(const Edge& added) {
    std::uint32_t* place = &m_places[static_cast<Id>(added.a - m_low) >> m_bits];
    while (*place != 0) {
      Edge& edge = m_edges[*place - 1];
      if (edge.a == added.a && edge.b == added.b) {
        match(edge, added);
        return;
      }
      place = &edge.next;
    }
    *place = static_cast<std::uint32_t>(m_edges.size() + 1);
    m_edges.push_back(added);
  }
  void match(Edge& edge, const Edge& other) const {
    if (m_rules.faceOf && m_rules.faceOf(edge.polygon) != m_rules.faceOf(other.polygon)) edge.isBetween = true;
    if (edge.numPolygons == 1) edge.isSharp = isSharp(edge, other);
    edge.numPolygons = edge.numPolygons == 1 ? 2 : 3;
  }
  bool isSharp(const Edge& x, const Edge& y) const {
    if (m_rules.sideOf) {
      const std::uint8_t a = m_rules.sideOf(x.polygon);
      const std::uint8_t b = m_rules.sideOf(y.polygon);
      if (a != 0 && b != 0 && a != b) return true;
    }
    // Polygons that run through the edge the same way look to different sides.
    const float cosine = x.isForward == y.isForward ? -x.normal.dot(y.normal) : x.normal.dot(y.normal);
    return cosine < COSINE && hasArea(x) && hasArea(y); // without an area there is no angle
  }
  static bool hasArea(const Edge& edge) { return edge.normal.squaredLength() > 0.0f; }
  bool isChosen(const Edge& edge) const {
    if (m_rules.faceOf && edge.numPolygons > 1 && !edge.isBetween) return false;
    return m_rules.selection == OutlineTracer::Selection::ALL || edge.numPolygons != 2 || edge.isSharp;
  }

  const OutlineTracer::Rules& m_rules;
  Id m_low;
  Id m_size;           ///< less one
  unsigned m_bits = 0; ///< of the ids of one place
  std::vector<std::uint32_t> m_places;
  std::vector<Edge> m_edges;
};

template <class Id>
class Tracer {
public:
  Tracer(const PolygonSource& source, const OutlineTracer::Rules& rules, const OutlineData& output, Faults& faults)
      : m_source(source)
      , m_rules(rules)
      , m_output(output)
      , m_faults(faults)
      , m_batches(numBlocksOf(source.numPolygons(), PolygonBatch::SIZE))
      , m_numbers(source.endId()) {}

  std::size_t numReadSteps() const { return numBlocksOf(m_source.numPolygons(), STEP); }
  void read(std::size_t step) {
    constexpr std::size_t BATCHES = STEP / PolygonBatch::SIZE;
    PolygonBatch polygons;
    std::size_t numEdges = 0;
    for (std::size_t b = step * BATCHES; b < std::min((step + 1) * BATCHES, m_batches.size()); ++b) {
      Batch& batch = m_batches[b];
      m_source.read(b * PolygonBatch::SIZE, polygons);
      for (std::size_t n = 0; n < polygons.numPolygons(); ++n) {
        visitEdges<Id>(polygons, n, [&batch](Id smaller, Id, bool) {
          batch.low = std::min(batch.low, smaller);
          batch.high = std::max(batch.high, smaller);
          batch.sample = smaller;
        });
        numEdges += polygons.numCorners(n);
      }
    }
    m_numEdges.fetch_add(numEdges, std::memory_order_relaxed);
  }

  /// Divides the ids in blocks of about as many edges each.
  void makeBlocks(std::size_t numThreads) {
    std::vector<Id> samples;
    for (const Batch& batch : m_batches)
      if (batch.low <= batch.high) samples.push_back(batch.sample);
    std::sort(samples.begin(), samples.end());
    const std::size_t count =
        std::clamp<std::size_t>(m_source.numPolygons() / MIN_POLYGONS_PER_BLOCK, 1, BLOCKS_PER_THREAD * numThreads);
    m_blocks.resize(count);
    for (std::size_t b = 1; b < count && !samples.empty(); ++b)
      m_blocks[b].begin = samples[b * samples.size() / count];
  }
  std::size_t numBlocks() const { return m_blocks.size(); }

  /// Counts the edges that a block yields, and keeps them when they are few.
  void choose(std::size_t number) {
    Block& block = m_blocks[number];
    const std::size_t maxKept = m_source.numPolygons() / m_blocks.size() / 16 + 64;
    matchEdges(number, [&](const ChosenEdge& edge) {
      m_numbers.mark(edge.a);
      m_numbers.mark(edge.b);
      if (++block.numEdges <= maxKept) block.kept.push_back(edge);
    });
    if (block.numEdges > maxKept) block.kept = {};
  }

  void allocate(std::size_t numInputCells) {
    std::size_t count = 0;
    for (Block& block : m_blocks) {
      block.firstEdge = count;
      count += block.numEdges;
    }
    m_numbers.finish();
    LineData& lines = m_output.lines;
    lines.indices.resize(3 * count);
    lines.inputCells.resize(count, numInputCells);
    lines.vertices.resize(3 * m_numbers.count());
    m_output.ids.resize(m_numbers.count(), m_source.endId());
    for (std::size_t w = 0; w < m_numbers.numWords(); ++w)
      m_numbers.visitWord(w, [&](std::size_t id, std::size_t vertex) {
        const Vec3 p = m_source.points()[id];
        setPosition(lines.vertices, vertex, p);
        m_output.ids.set(vertex, id);
      });
  }

  void write(std::size_t number) {
    const Block& block = m_blocks[number];
    std::size_t next = block.firstEdge;
    const auto writeEdge = [&](const ChosenEdge& edge) {
      m_output.lines.setSegment(next, m_numbers[edge.a], m_numbers[edge.b]);
      m_output.lines.inputCells.set(next++, m_source.inputCell(edge.polygon));
    };
    if (block.kept.size() == block.numEdges)
      std::for_each(block.kept.begin(), block.kept.end(), writeEdge);
    else
      matchEdges(number, writeEdge);
  }

private:
  /// What is known of some polygons that follow each other.
  struct Batch {
    Id low = std::numeric_limits<Id>::max(); ///< of their edges' smaller ids
    Id high = 0;
    Id sample = 0; ///< one of these ids
  };
  struct ChosenEdge {
    Id a;
    Id b;
    Id polygon; ///< its first one
  };
  struct Block {
    Id begin = 0; ///< of the smaller ids
    std::size_t numEdges = 0;
    std::size_t firstEdge = 0;
    std::vector<ChosenEdge> kept;
  };

  /// A polygon's normal; false when a position is not finite.
  bool findNormal(const PolygonBatch& polygons, std::size_t n, KbVec3<float>& normal) const {
    const std::size_t* ids = polygons.corners(n);
    const PointView& points = m_source.points();
    const Vec3 origin = points[ids[0]];
    Vec3 last = points[ids[1]];
    bool areFinite = isFinite(origin) && isFinite(last);
    last -= origin;
    Vec3 sum;
    for (std::size_t c = 2; c < polygons.numCorners(n); ++c) {
      Vec3 next = points[ids[c]];
      areFinite &= isFinite(next);
      next -= origin;
      sum += last.cross(next);
      last = next;
    }
    const double length = sum.length();
    normal = length > 0.0 ? KbVec3<float>(sum / length) : KbVec3<float>(0.0f);
    return areFinite;
  }

  /// Calls `visit(edge)` for the edges that a block yields.
  template <class Visit>
  void matchEdges(std::size_t number, const Visit& visit) const {
    const Id begin = m_blocks[number].begin;
    const bool isLast = number + 1 == m_blocks.size();
    const Id end = isLast ? std::numeric_limits<Id>::max() : m_blocks[number + 1].begin; // no id is the greatest `Id`
    const auto isNear = [=](const Batch& batch) {
      return batch.low < end && batch.high >= begin && batch.low <= batch.high;
    };
    Id low = end;
    Id high = begin;
    for (const Batch& batch : m_batches)
      if (isNear(batch)) {
        low = std::min(low, std::max(batch.low, begin));
        high = std::max(high, std::min<Id>(batch.high, end - 1));
      }
    if (low > high || low == end) return;
    EdgeBlock<Id> block(m_rules, low, high, m_numEdges / m_blocks.size() * 9 / 16); // most edges have two polygons
    PolygonBatch polygons;
    KbVec3<float> normal;
    for (std::size_t b = 0; b < m_batches.size(); ++b) {
      if (!isNear(m_batches[b])) continue;
      m_source.read(b * PolygonBatch::SIZE, polygons);
      for (std::size_t n = 0; n < polygons.numPolygons(); ++n) {
        bool isMember = false;
        visitEdges<Id>(polygons, n, [&](Id smaller, Id, bool) { isMember |= block.holds(smaller); });
        if (!isMember) continue;
        const std::size_t polygon = b * PolygonBatch::SIZE + n;
        if (findNormal(polygons, n, normal))
          block.add(static_cast<Id>(polygon), normal, polygons, n);
        else
          m_faults.add(Faults::COORDINATE_NOT_FINITE, m_source.inputCell(polygon));
      }
    }
    block.visitChosen([&](const auto& edge) { visit({edge.a, edge.b, edge.polygon}); });
  }

  const PolygonSource& m_source;
  const OutlineTracer::Rules& m_rules;
  const OutlineData& m_output;
  Faults& m_faults;
  std::vector<Batch> m_batches;
  std::atomic<std::size_t> m_numEdges{0};
  std::vector<Block> m_blocks;
  NodeNumbers m_numbers;
};

template <class Id>
void traceWith(Run& run, const PolygonSource& source, const OutlineTracer::Rules& rules, std::size_t numInputCells,
               const OutlineData& output, Faults& faults) {
  Tracer<Id> tracer(source, rules, output, faults);
  run.phase("read faces", tracer.numReadSteps(), [&](std::size_t step) { tracer.read(step); });
  tracer.makeBlocks(static_cast<std::size_t>(tbb::this_task_arena::max_concurrency()));
  run.phase("choose edges", tracer.numBlocks(), [&](std::size_t block) { tracer.choose(block); });
  tracer.allocate(numInputCells);
  run.phase("write edges", tracer.numBlocks(), [&](std::size_t block) { tracer.write(block); });
}

} // namespace

void OutlineTracer::trace(Run& run, const PolygonSource& source, const Rules& rules, std::size_t numInputCells,
                          const OutlineData& output, Faults& faults) {
  const bool isNarrow = std::max(source.endId(), source.numPolygons()) < std::numeric_limits<std::uint32_t>::max();
  const auto traceIds = isNarrow ? traceWith<std::uint32_t> : traceWith<std::uint64_t>;
  traceIds(run, source, rules, numInputCells, output, faults);
}

} // namespace kx
