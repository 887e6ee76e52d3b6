// SPDX-License-Identifier: BSD-3-Clause
#include "IsolineTracer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 4096; // cells

} // namespace

/// The isovalues in ascending order, and where those of each step begin.
struct IsolineTracer::Levels {
  std::vector<std::pair<double, std::uint32_t>> sorted; ///< value and number
  std::array<std::uint32_t, 257> begins{};              ///< of each step

  bool holdsAny(std::uint8_t low, std::uint8_t high) const {
    return low <= high && begins[low] < begins[static_cast<std::size_t>(high) + 1];
  }
};

struct IsolineTracer::Job {
  Run& run;
  const FlatMesh& mesh;
  const ScalarField& field;
  const std::vector<double>& isovalues;
  bool isSection; ///< the field is a function of space that cuts the surface
  Faults& faults;
};

std::uint8_t IsolineTracer::stepOf(double value) const {
  const double s = (value - m_base) * m_scale;
  return static_cast<std::uint8_t>(s > 0.0 ? (s < 255.0 ? s : 255.0) : 0.0);
}

void IsolineTracer::setScale(const FlatMesh& mesh, const ScalarField& field) {
  // The steps span the values of a sample: a wrong range costs time, never lines.
  constexpr std::size_t SAMPLES = 1024;
  const std::size_t numNodes = mesh.endNode - std::min(mesh.beginNode, mesh.endNode);
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

void IsolineTracer::trace(Run& run, const FlatMesh& mesh, const ScalarField& field,
                          const std::vector<double>& isovalues, bool buildsIndex, const std::vector<Isoline*>& lines,
                          Faults& faults) {
  if (buildsIndex) setScale(mesh, field);
  Levels levels;
  for (std::size_t i = 0; i < isovalues.size(); ++i)
    if (std::isfinite(isovalues[i])) levels.sorted.emplace_back(isovalues[i], static_cast<std::uint32_t>(i));
  std::sort(levels.sorted.begin(), levels.sorted.end());
  for (const auto& level : levels.sorted)
    ++levels.begins[static_cast<std::size_t>(stepOf(level.first)) + 1];
  for (std::size_t s = 1; s < levels.begins.size(); ++s)
    levels.begins[s] += levels.begins[s - 1];

  Job job{run, mesh, field, isovalues, false, faults};
  cutChunks(job, levels, buildsIndex, true);
  run.phase("join", isovalues.size(), [&](std::size_t value) { join(job, value, *lines[value]); });
  m_chunks.clear();
}

void IsolineTracer::traceSection(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue,
                                 Isoline& line, Faults& faults) {
  m_scale = 0.0; // one step for all values
  Levels levels;
  levels.sorted.emplace_back(isovalue, 0);
  std::fill(levels.begins.begin() + 1, levels.begins.end(), 1);
  const std::vector<double> isovalues{isovalue};
  Job job{run, mesh, field, isovalues, true, faults};
  cutChunks(job, levels, true, false);
  run.phase("join", 1, [&](std::size_t) { join(job, 0, line); });
  m_chunks.clear();
}

void IsolineTracer::cutChunks(Job& job, const Levels& levels, bool buildsIndex, bool usesIndex) {
  const FlatMesh& mesh = job.mesh;
  const std::size_t numValues = job.isovalues.size();
  m_chunks.clear();
  m_chunks.resize((mesh.numCells + CHUNK - 1) / CHUNK);
  if (buildsIndex) {
    m_low.resize(usesIndex ? mesh.numCells : 0);
    m_high.resize(usesIndex ? mesh.numCells : 0);
  }
  job.run.phase("cut", m_chunks.size(), [&](std::size_t number) {
    Chunk& chunk = m_chunks[number];
    const std::size_t begin = number * CHUNK;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    const bool hasClosedCells = mesh.hasClosedCells();
    std::vector<Crossing> found; // by cell
    const auto addCrossings = [&](std::size_t cell, double low, double high) {
      // A value equal to the greatest one is crossed (its node is inside), one equal to the least is not.
      auto level = std::upper_bound(levels.sorted.begin(), levels.sorted.end(), low,
                                    [](double v, const auto& entry) { return v < entry.first; });
      for (; level != levels.sorted.end() && level->first <= high; ++level)
        found.push_back({level->second, static_cast<std::uint32_t>(cell - begin)});
    };
    const auto walk = [&](const auto& cells, const auto& values) {
      CellNodeList nodes;
      const auto range = [&](double& low, double& high) {
        double notFinite = 0.0;
        low = high = values(nodes.ids[0]);
        notFinite += low - low;
        for (std::size_t i = 1; i < nodes.numCorners; ++i) {
          const double v = values(nodes.ids[i]);
          low = v < low ? v : low;
          high = v > high ? v : high;
          notFinite += v - v;
        }
        return notFinite == 0.0;
      };
      double low = 0.0;
      double high = 0.0;
      for (std::size_t cell = begin; cell < end; ++cell) {
        if (!buildsIndex) {
          if (!levels.holdsAny(m_low[cell], m_high[cell])) continue;
          cells.load(cell, nodes);
          range(low, high);
          addCrossings(cell, low, high);
          continue;
        }
        if (usesIndex) {
          m_low[cell] = 255;
          m_high[cell] = 0;
        }
        if (hasClosedCells && !mesh.isOpen(cell)) continue;
        cells.load(cell, nodes);
        if (nodes.numCorners == 0) {
          job.faults.add(Faults::UNREADABLE_CELL, cell);
          continue;
        }
        if (!mesh.hasValidNodes(nodes)) {
          job.faults.add(Faults::NODE_OUT_OF_RANGE, cell);
          continue;
        }
        if (!range(low, high)) { // of a set, that is a hole
          if (job.isSection) job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
          continue;
        }
        if (low == high) continue;
        const std::uint8_t lowStep = stepOf(low);
        const std::uint8_t highStep = stepOf(high);
        if (usesIndex) {
          m_low[cell] = lowStep;
          m_high[cell] = highStep;
        }
        if (levels.holdsAny(lowStep, highStep)) addCrossings(cell, low, high);
      }
      if (found.empty()) return;

      std::vector<std::uint32_t> begins(numValues + 1, 0);
      for (const Crossing& crossing : found)
        ++begins[crossing.value + 1];
      for (std::size_t v = 1; v <= numValues; ++v)
        begins[v] += begins[v - 1];
      std::vector<std::uint32_t> crossed(found.size());
      std::vector<std::uint32_t> next(begins.begin(), begins.end() - 1);
      for (const Crossing& crossing : found)
        crossed[next[crossing.value]++] = crossing.cell;

      FaceCutter cutter(job.isSection);
      Numbers<NodeEdge> numbers;
      std::vector<double> corners;
      chunk.segments.reserve(found.size());
      for (std::size_t value = 0; value < numValues; ++value) {
        chunk.begins.push_back(
            {static_cast<std::uint32_t>(chunk.vertices.size()), static_cast<std::uint32_t>(chunk.segments.size())});
        if (begins[value] == begins[value + 1]) continue;
        const double isovalue = job.isovalues[value];
        numbers.reset(2 * (begins[value + 1] - begins[value]));
        for (std::size_t c = begins[value]; c < begins[value + 1]; ++c) {
          const std::size_t cell = begin + crossed[c];
          cells.load(cell, nodes);
          corners.resize(nodes.numCorners);
          for (std::size_t i = 0; i < nodes.numCorners; ++i)
            corners[i] = values(nodes.ids[i]);
          const auto result =
              cutter.cut(nodes, corners.data(), isovalue, mesh.points, [&](const NodeEdge& from, const NodeEdge& to) {
                const auto a = static_cast<std::uint32_t>(numbers.numberOf(from));
                chunk.segments.push_back({a, static_cast<std::uint32_t>(numbers.numberOf(to)), crossed[c]});
              });
          if (result == FaceCutter::NOT_FINITE) job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        }
        for (const NodeEdge& edge : numbers.keys()) {
          KbVec3<double> p = mesh.points[edge.a];
          double weight = 0.0;
          if (edge.a != edge.b) {
            const double va = values(edge.a);
            weight = (isovalue - va) / (values(edge.b) - va);
            p += (mesh.points[edge.b] - p) * weight;
          }
          chunk.vertices.push_back({edge,
                                    static_cast<float>(weight),
                                    {static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])}});
        }
      }
      chunk.begins.push_back(
          {static_cast<std::uint32_t>(chunk.vertices.size()), static_cast<std::uint32_t>(chunk.segments.size())});
    };
    std::visit(walk, mesh.cells, job.field);
  });
}

void IsolineTracer::join(const Job& job, std::size_t value, Isoline& line) const {
  const FlatMesh& mesh = job.mesh;
  std::size_t numVertices = 0; // those on the borders of chunks counted twice
  std::size_t numSegments = 0;
  for (const Chunk& chunk : m_chunks) {
    if (chunk.begins.empty()) continue;
    numVertices += chunk.begins[value + 1].vertex - chunk.begins[value].vertex;
    numSegments += chunk.begins[value + 1].segment - chunk.begins[value].segment;
  }
  Numbers<NodeEdge> numbers;
  numbers.reset(numVertices);
  std::vector<const Vertex*> vertices;
  vertices.reserve(numVertices);
  std::vector<std::uint32_t> translation;
  LineData& data = line.mesh.data();
  data.indices.resize(3 * numSegments);
  data.inputCells.resize(numSegments, mesh.numCells);
  std::size_t segment = 0;
  for (std::size_t number = 0; number < m_chunks.size(); ++number) {
    const Chunk& chunk = m_chunks[number];
    if (chunk.begins.empty()) continue;
    const Chunk::Begin& begin = chunk.begins[value];
    const Chunk::Begin& end = chunk.begins[value + 1];
    translation.clear();
    for (std::size_t v = begin.vertex; v < end.vertex; ++v) {
      const std::size_t id = numbers.numberOf(chunk.vertices[v].edge);
      if (id == vertices.size()) vertices.push_back(&chunk.vertices[v]);
      translation.push_back(static_cast<std::uint32_t>(id));
    }
    for (std::size_t s = begin.segment; s < end.segment; ++s, ++segment) {
      const Segment& piece = chunk.segments[s];
      data.setSegment(segment, translation[piece.from], translation[piece.to]);
      data.inputCells.set(segment, number * CHUNK + piece.cell);
    }
  }
  data.vertices.resize(3 * vertices.size());
  line.sources.resize(vertices.size(), mesh.endNode);
  for (std::size_t v = 0; v < vertices.size(); ++v) {
    const Vertex& vertex = *vertices[v];
    std::copy_n(vertex.position, 3, data.vertices.data() + 3 * v);
    line.sources.set(v, vertex.edge.a, vertex.edge.b, static_cast<double>(vertex.weight));
  }
}

} // namespace kx
