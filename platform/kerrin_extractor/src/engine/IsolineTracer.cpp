// SPDX-License-Identifier: BSD-3-Clause
#include "IsolineTracer.h"

#include "Blocks.h"
#include "EdgeNumbers.h"

#include <tbb/enumerable_thread_specific.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 4096; // cells: their numbers in a chunk have 12 bits
/// Of a face; all faces of a chunk together then yield less than 2^26 vertices of one value.
constexpr std::size_t MAX_CORNERS = std::size_t{1} << 14;

} // namespace

struct IsolineTracer::Segment {
  std::uint64_t cell : 12; ///< in the chunk
  std::uint64_t from : 26; ///< vertex of the same value and chunk
  std::uint64_t to : 26;
};

/// The pieces of some cells, value by value.
template <class Id>
struct IsolineTracer::Chunk {
  /// The edge that it lies on, or, once that is known, the vertex of an earlier chunk that it is.
  struct Vertex {
    Id a; ///< no node's id if the vertex is known
    Id b; ///< then its number in the line

    static constexpr Id KNOWN = std::numeric_limits<Id>::max();
    bool isKnown() const { return a == KNOWN; }
    NodeEdge edge() const { return {a, b}; }
  };
  /// The pieces of one value; they begin where those of the value before end.
  struct Run {
    std::uint32_t value;
    std::uint32_t endVertex;
    std::uint32_t endSegment;
    std::uint32_t firstNumber = 0;  ///< of its own vertices in the line
    std::uint32_t firstSegment = 0; ///< in the line
  };
  std::size_t beginCell = 0;
  std::vector<Vertex> vertices;
  std::vector<Segment> segments;
  std::vector<Run> runs; ///< by value
  // Of all nodes that are ends of cut edges, and what other chunks have of them.
  std::size_t low = 0;
  std::size_t high = 0;
  std::size_t highBefore = 0; ///< of the chunks before, plus one
  std::size_t lowBehind = std::numeric_limits<std::size_t>::max();

  bool isOwn(const Vertex& vertex) const { return isOwn(vertex.a) || isOwn(vertex.b); }

private:
  bool isOwn(Id node) const { return node >= highBefore && node < lowBehind; }
};

/// The isovalues in ascending order, and where those of each step begin.
struct IsolineTracer::Levels {
  std::vector<std::pair<double, std::uint32_t>> sorted; ///< value and number
  std::array<std::uint32_t, 257> begins{};              ///< of each step
  std::array<std::uint16_t, 256> nextStep{};            ///< the first one from a step on that has values; 256 for none

  void setNextSteps() {
    std::uint16_t next = 256;
    for (std::size_t s = 256; s-- > 0;) {
      if (begins[s] < begins[s + 1]) next = static_cast<std::uint16_t>(s);
      nextStep[s] = next;
    }
  }
  bool holdsAny(std::uint8_t low, std::uint8_t high) const { return nextStep[low] <= high; }
};

struct IsolineTracer::Job {
  Run& run;
  const FlatMesh& mesh;
  const ScalarField& field;
  std::vector<double> isovalues;
  std::vector<Isoline*> lines; ///< one for each value
  bool isSection;              ///< the field is a function of space that cuts the surface
  bool buildsIndex;            ///< otherwise there is one
  Faults& faults;
};

std::uint8_t IsolineTracer::stepOf(double value) const {
  const double s = (value - m_base) * m_scale;
  return static_cast<std::uint8_t>(s > 0.0 ? (s < 255.0 ? s : 255.0) : 0.0);
}

void IsolineTracer::setScale(const FlatMesh& mesh, const ScalarField& field) {
  // The steps span the values of a sample: a wrong range costs time, never lines.
  constexpr std::size_t SAMPLES = 1024;
  const std::size_t numNodes = mesh.numNodes();
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  std::visit(
      [&](const auto& values) {
        for (std::size_t s = 0; s < std::min(SAMPLES, numNodes); ++s) {
          const double v = values(mesh.beginNode + s * numNodes / std::min(SAMPLES, numNodes));
          if (!std::isfinite(v)) continue;
          low = std::min(low, v);
          high = std::max(high, v);
        }
      },
      field);
  m_base = low < high ? low : 0.0;
  m_scale = low < high ? 256.0 / (high - low) : 0.0;
  if (!std::isfinite(m_scale)) m_scale = 0.0;
}

/// Cuts one chunk after the other, with memory of its own.
class IsolineTracer::ChunkCutter {
public:
  ChunkCutter(IsolineTracer& tracer, const Job& job, const Levels& levels)
      : m_tracer(tracer)
      , m_job(job)
      , m_levels(levels)
      , m_faces(job.isSection)
      , m_numVertices(job.isovalues.size())
      , m_numSegments(job.isovalues.size()) {}

  template <class Id>
  void cut(Chunk<Id>& chunk) {
    m_beginCell = chunk.beginCell;
    m_low = std::numeric_limits<std::size_t>::max();
    m_high = 0;
    m_vertices.clear();
    m_segments.clear();
    m_numbers.reset(m_job.isovalues.size());
    std::fill(m_numVertices.begin(), m_numVertices.end(), 0);
    std::fill(m_numSegments.begin(), m_numSegments.end(), 0);
    std::visit([&](const auto& cells, const auto& values) { walk(cells, values); }, m_job.mesh.cells, m_job.field);
    if (!m_segments.empty()) sort(chunk);
  }

private:
  template <class Piece>
  struct OfValue {
    std::uint32_t value;
    Piece piece;
  };

  template <class Cells, class Values>
  void walk(const Cells& cells, const Values& values) {
    const FlatMesh& mesh = m_job.mesh;
    const std::size_t begin = m_beginCell;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    std::uint8_t* low = m_tracer.m_low.size() > 0 ? m_tracer.m_low.data() : nullptr;
    std::uint8_t* high = m_tracer.m_high.data();
    if (!m_job.buildsIndex) {
      for (std::size_t cell = begin; cell < end; ++cell) {
        if (!m_levels.holdsAny(low[cell], high[cell])) continue;
        cells.load(cell, m_nodes);
        readValues(values);
        cutCell(cell, low[cell]);
      }
      return;
    }
    const bool hasClosedCells = mesh.hasClosedCells();
    for (std::size_t cell = begin; cell < end; ++cell) {
      if (low) {
        low[cell] = 255;
        high[cell] = 0;
      }
      if (hasClosedCells && !mesh.isOpen(cell)) continue;
      cells.load(cell, m_nodes);
      if (m_nodes.numCorners == 0) {
        m_job.faults.add(Faults::UNREADABLE_CELL, cell);
        continue;
      }
      if (!mesh.hasValidNodes(m_nodes)) {
        m_job.faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        continue;
      }
      if (!readValues(values)) { // of a set, that is a hole
        if (m_job.isSection) m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        continue;
      }
      if (m_least == m_greatest) continue;
      const std::uint8_t lowStep = m_tracer.stepOf(m_least);
      const std::uint8_t highStep = m_tracer.stepOf(m_greatest);
      if (low) {
        low[cell] = lowStep;
        high[cell] = highStep;
      }
      if (m_levels.holdsAny(lowStep, highStep)) cutCell(cell, lowStep);
    }
  }

  /// The values at a cell's corners and their range; false when one is not finite.
  template <class Values>
  bool readValues(const Values& values) {
    if (m_values.size() < m_nodes.numCorners) m_values.resize(m_nodes.numCorners);
    double least = values(m_nodes.ids[0]);
    double greatest = least;
    double notFinite = least - least; // becomes NaN
    m_values[0] = least;
    for (std::size_t i = 1; i < m_nodes.numCorners; ++i) {
      const double v = values(m_nodes.ids[i]);
      m_values[i] = v;
      least = v < least ? v : least;
      greatest = v > greatest ? v : greatest;
      notFinite += v - v;
    }
    m_least = least;
    m_greatest = greatest;
    return notFinite == 0.0;
  }

  void cutCell(std::size_t cell, std::uint8_t lowStep) {
    // A value equal to the greatest one is crossed (its node is inside), one equal to the least is not.
    std::size_t level = m_levels.begins[lowStep];
    while (level < m_levels.sorted.size() && m_levels.sorted[level].first <= m_least)
      ++level;
    if (level == m_levels.sorted.size() || m_levels.sorted[level].first > m_greatest) return;
    if (m_nodes.numCorners > MAX_CORNERS) {
      m_job.faults.add(Faults::TOO_MANY_EDGES, cell);
      return;
    }
    if (!m_faces.setFace(m_nodes, m_job.mesh.points)) {
      m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return;
    }
    const std::size_t local = cell - m_beginCell;
    for (; level < m_levels.sorted.size() && m_levels.sorted[level].first <= m_greatest; ++level) {
      const auto [isovalue, value] = m_levels.sorted[level];
      m_faces.cut(m_nodes.ids, m_values.data(), isovalue, [&, v = value](const NodeEdge& from, const NodeEdge& to) {
        const std::uint64_t first = numberOf(v, from);
        const std::uint64_t last = numberOf(v, to);
        m_segments.push_back({v, {local & (CHUNK - 1), first & 0x3ffffffu, last & 0x3ffffffu}});
        ++m_numSegments[v];
      });
    }
  }

  std::uint32_t numberOf(std::uint32_t value, const NodeEdge& edge) {
    std::uint32_t& count = m_numVertices[value];
    const std::uint32_t number = m_numbers.numberOf(value, edge, count);
    if (number == count) {
      ++count;
      m_vertices.push_back({value, edge});
      m_low = std::min(m_low, edge.a);
      m_high = std::max(m_high, edge.b);
    }
    return number;
  }

  /// Moves the pieces to the chunk, by value.
  template <class Id>
  void sort(Chunk<Id>& chunk) {
    chunk.low = m_low;
    chunk.high = m_high;
    std::uint32_t numVertices = 0;
    std::uint32_t numSegments = 0;
    for (std::size_t v = 0; v < m_numSegments.size(); ++v) {
      if (m_numSegments[v] == 0) continue;
      // The counts become the places of the next pieces.
      numVertices += std::exchange(m_numVertices[v], numVertices);
      numSegments += std::exchange(m_numSegments[v], numSegments);
      chunk.runs.push_back({static_cast<std::uint32_t>(v), numVertices, numSegments});
    }
    chunk.vertices.resize(numVertices);
    for (const OfValue<NodeEdge>& v : m_vertices)
      chunk.vertices[m_numVertices[v.value]++] = {static_cast<Id>(v.piece.a), static_cast<Id>(v.piece.b)};
    chunk.segments.resize(numSegments);
    for (const OfValue<Segment>& s : m_segments)
      chunk.segments[m_numSegments[s.value]++] = s.piece;
  }

  IsolineTracer& m_tracer;
  const Job& m_job;
  const Levels& m_levels;
  FaceCutter m_faces;
  EdgeNumbers m_numbers;
  CellNodeList m_nodes;
  std::vector<double> m_values; ///< at the corners of the cell
  double m_least = 0.0;
  double m_greatest = 0.0;
  std::size_t m_beginCell = 0; ///< of the chunk
  std::size_t m_low = 0;       ///< of all ends of cut edges
  std::size_t m_high = 0;
  std::vector<OfValue<NodeEdge>> m_vertices;
  std::vector<OfValue<Segment>> m_segments;
  std::vector<std::uint32_t> m_numVertices; ///< of each value
  std::vector<std::uint32_t> m_numSegments;
};

void IsolineTracer::trace(Run& run, const FlatMesh& mesh, const ScalarField& field,
                          const std::vector<double>& isovalues, bool buildsIndex, const std::vector<Isoline*>& lines,
                          Faults& faults) {
  if (buildsIndex) {
    setScale(mesh, field);
    m_low.resize(mesh.numCells);
    m_high.resize(mesh.numCells);
  }
  Levels levels;
  for (std::size_t i = 0; i < isovalues.size(); ++i)
    if (std::isfinite(isovalues[i])) levels.sorted.emplace_back(isovalues[i], static_cast<std::uint32_t>(i));
  std::sort(levels.sorted.begin(), levels.sorted.end());
  for (const auto& level : levels.sorted)
    ++levels.begins[static_cast<std::size_t>(stepOf(level.first)) + 1];
  for (std::size_t s = 1; s < levels.begins.size(); ++s)
    levels.begins[s] += levels.begins[s - 1];
  levels.setNextSteps();
  this->run({run, mesh, field, isovalues, lines, false, buildsIndex, faults}, levels);
}

void IsolineTracer::traceSection(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue,
                                 Isoline& line, Faults& faults) {
  m_scale = 0.0; // one step for all values
  m_low.clear();
  m_high.clear();
  Levels levels;
  levels.sorted.emplace_back(isovalue, 0);
  std::fill(levels.begins.begin() + 1, levels.begins.end(), 1);
  levels.setNextSteps();
  this->run({run, mesh, field, {isovalue}, {&line}, true, true, faults}, levels);
}

void IsolineTracer::run(const Job& job, const Levels& levels) {
  if (job.mesh.endNode < std::numeric_limits<std::uint32_t>::max())
    runWith<std::uint32_t>(job, levels);
  else
    runWith<std::uint64_t>(job, levels);
}

template <class Id>
void IsolineTracer::runWith(const Job& job, const Levels& levels) {
  std::vector<Chunk<Id>> chunks(numBlocksOf(job.mesh.numCells, CHUNK));
  {
    tbb::enumerable_thread_specific<ChunkCutter> cutters([&] { return ChunkCutter(*this, job, levels); });
    job.run.phase("cut", chunks.size(), [&](std::size_t number) {
      chunks[number].beginCell = number * CHUNK;
      cutters.local().cut(chunks[number]);
    });
  }
  std::erase_if(chunks, [](const Chunk<Id>& chunk) { return chunk.runs.empty(); });
  for (std::size_t c = 1; c < chunks.size(); ++c)
    chunks[c].highBefore = std::max(chunks[c - 1].highBefore, chunks[c - 1].high + 1);
  for (std::size_t c = chunks.size(); c-- > 1;)
    chunks[c - 1].lowBehind = std::min(chunks[c].lowBehind, chunks[c].low);
  job.run.phase("match", job.isovalues.size(), [&](std::size_t value) { matchChunks(job, chunks, value); });
  job.run.phase("write", chunks.size(), [&](std::size_t number) { writeChunk(job, chunks[number]); });
}

template <class Id>
void IsolineTracer::matchChunks(const Job& job, std::vector<Chunk<Id>>& chunks, std::size_t value) {
  Numbers<NodeEdge> shared;           // edges whose vertices may be in several chunks
  std::vector<std::uint32_t> numbers; // of these vertices in the line
  std::uint32_t numVertices = 0;
  std::uint32_t numSegments = 0;
  for (Chunk<Id>& chunk : chunks) {
    const auto run = std::lower_bound(chunk.runs.begin(), chunk.runs.end(), value,
                                      [](const auto& r, std::size_t v) { return r.value < v; });
    if (run == chunk.runs.end() || run->value != value) continue;
    run->firstNumber = numVertices;
    run->firstSegment = numSegments;
    const bool isFirst = run == chunk.runs.begin();
    numSegments += run->endSegment - (isFirst ? 0 : (run - 1)->endSegment);
    for (std::size_t v = isFirst ? 0 : (run - 1)->endVertex; v < run->endVertex; ++v) {
      typename Chunk<Id>::Vertex& vertex = chunk.vertices[v];
      if (!chunk.isOwn(vertex)) {
        const std::size_t n = shared.numberOf(vertex.edge());
        if (n < numbers.size()) {
          vertex = {Chunk<Id>::Vertex::KNOWN, static_cast<Id>(numbers[n])};
          continue;
        }
        numbers.push_back(numVertices);
      }
      ++numVertices;
    }
  }
  Isoline& line = *job.lines[value];
  LineData& data = line.mesh.data();
  data.indices.resize(3 * std::size_t{numSegments});
  data.inputCells.resize(numSegments, job.mesh.numCells);
  data.vertices.resize(3 * std::size_t{numVertices});
  line.sources.resize(numVertices, job.mesh.endNode);
}

template <class Id>
void IsolineTracer::writeChunk(const Job& job, const Chunk<Id>& chunk) {
  const PointView& points = job.mesh.points;
  std::vector<std::uint32_t> translation; // of a value's vertices to their numbers in the line
  const auto write = [&](const auto& values) {
    std::size_t vertex = 0;
    std::size_t segment = 0;
    for (const auto& run : chunk.runs) {
      Isoline& line = *job.lines[run.value];
      LineData& data = line.mesh.data();
      const double isovalue = job.isovalues[run.value];
      std::uint32_t number = run.firstNumber;
      translation.clear();
      for (; vertex < run.endVertex; ++vertex) {
        const auto& v = chunk.vertices[vertex];
        translation.push_back(v.isKnown() ? static_cast<std::uint32_t>(v.b) : number);
        if (v.isKnown()) continue;
        KbVec3<double> p = points[v.a];
        double weight = 0.0;
        if (v.a != v.b) {
          const double a = values(v.a);
          weight = (isovalue - a) / (values(v.b) - a);
          p += (points[v.b] - p) * weight;
        }
        setPosition(data.vertices, number, p);
        line.sources.set(number++, v.a, v.b, weight);
      }
      for (std::size_t place = run.firstSegment; segment < run.endSegment; ++segment, ++place) {
        const Segment& s = chunk.segments[segment];
        data.setSegment(place, translation[s.from], translation[s.to]);
        data.inputCells.set(place, chunk.beginCell + s.cell);
      }
    }
  };
  std::visit(write, job.field);
}

} // namespace kx
