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

  Job job{run, mesh, field, isovalues, faults};
  classify(job, levels, buildsIndex, true);
  run.phase("trace", isovalues.size(), [&](std::size_t value) { cutValue(job, value, *lines[value]); });
}

void IsolineTracer::traceOnce(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue, Isoline& line,
                              Faults& faults) {
  m_scale = 0.0; // one step for all values
  Levels levels;
  levels.sorted.emplace_back(isovalue, 0);
  std::fill(levels.begins.begin() + 1, levels.begins.end(), 1);
  const std::vector<double> isovalues{isovalue};
  Job job{run, mesh, field, isovalues, faults};
  classify(job, levels, true, false);
  run.phase("trace", 1, [&](std::size_t) { cutValue(job, 0, line); });
}

void IsolineTracer::classify(Job& job, const Levels& levels, bool buildsIndex, bool usesIndex) {
  const FlatMesh& mesh = job.mesh;
  const std::size_t numValues = job.isovalues.size();
  m_chunks.resize((mesh.numCells + CHUNK - 1) / CHUNK);
  if (buildsIndex) {
    m_low.resize(usesIndex ? mesh.numCells : 0);
    m_high.resize(usesIndex ? mesh.numCells : 0);
  }
  job.run.phase("classify", m_chunks.size(), [&](std::size_t number) {
    Chunk& chunk = m_chunks[number];
    chunk.crossings.clear();
    const std::size_t begin = number * CHUNK;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    const bool hasClosedCells = mesh.hasClosedCells();
    const auto addCrossings = [&](std::size_t cell, double low, double high) {
      // A value equal to the greatest one is crossed (its node is inside), one equal to the least is not.
      auto level = std::upper_bound(levels.sorted.begin(), levels.sorted.end(), low,
                                    [](double v, const auto& entry) { return v < entry.first; });
      for (; level != levels.sorted.end() && level->first <= high; ++level)
        chunk.crossings.push_back({level->second, static_cast<std::uint32_t>(cell - begin)});
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
      if (!buildsIndex) {
        for (std::size_t cell = begin; cell < end; ++cell) {
          if (!levels.holdsAny(m_low[cell], m_high[cell])) continue;
          cells.load(cell, nodes);
          range(low, high);
          addCrossings(cell, low, high);
        }
        return;
      }
      for (std::size_t cell = begin; cell < end; ++cell) {
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
        if (!range(low, high) || low == high) continue;
        const std::uint8_t lowStep = stepOf(low);
        const std::uint8_t highStep = stepOf(high);
        if (usesIndex) {
          m_low[cell] = lowStep;
          m_high[cell] = highStep;
        }
        if (levels.holdsAny(lowStep, highStep)) addCrossings(cell, low, high);
      }
    };
    std::visit(walk, mesh.cells, job.field);
    chunk.begins.assign(numValues + 1, 0);
    if (numValues > 1)
      std::stable_sort(chunk.crossings.begin(), chunk.crossings.end(),
                       [](const Crossing& x, const Crossing& y) { return x.value < y.value; });
    for (const Crossing& crossing : chunk.crossings)
      ++chunk.begins[crossing.value + 1];
    for (std::size_t v = 1; v <= numValues; ++v)
      chunk.begins[v] += chunk.begins[v - 1];
  });
}

void IsolineTracer::cutValue(const Job& job, std::size_t value, Isoline& line) const {
  struct Segment {
    std::uint32_t from;
    std::uint32_t to;
    std::size_t cell;
  };
  const FlatMesh& mesh = job.mesh;
  const double isovalue = job.isovalues[value];
  std::size_t numCrossings = 0;
  for (const Chunk& chunk : m_chunks)
    numCrossings += chunk.begins[value + 1] - chunk.begins[value];
  EdgeNumbers numbers;
  numbers.reset(numCrossings);
  std::vector<Segment> segments;
  segments.reserve(numCrossings);

  const auto walk = [&](const auto& cells, const auto& values) {
    FaceCutter cutter;
    CellNodeList nodes;
    std::vector<double> corners;
    for (std::size_t number = 0; number < m_chunks.size(); ++number) {
      const Chunk& chunk = m_chunks[number];
      for (std::size_t c = chunk.begins[value]; c < chunk.begins[value + 1]; ++c) {
        const std::size_t cell = number * CHUNK + chunk.crossings[c].cell;
        cells.load(cell, nodes);
        corners.resize(nodes.numCorners);
        for (std::size_t i = 0; i < nodes.numCorners; ++i)
          corners[i] = values(nodes.ids[i]);
        const auto result =
            cutter.cut(nodes, corners.data(), isovalue, mesh.points, [&](const NodeEdge& from, const NodeEdge& to) {
              const auto begin = static_cast<std::uint32_t>(numbers.numberOf(from));
              segments.push_back({begin, static_cast<std::uint32_t>(numbers.numberOf(to)), cell});
            });
        if (result == FaceCutter::NOT_FINITE) job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      }
    }
    const std::vector<NodeEdge>& edges = numbers.edges();
    LineData& data = line.mesh.data();
    data.vertices.resize(3 * edges.size());
    line.sources.resize(edges.size(), mesh.endNode);
    for (std::size_t v = 0; v < edges.size(); ++v) {
      const auto [a, b] = edges[v];
      KbVec3<double> p = mesh.points[a];
      double weight = 0.0;
      if (a != b) {
        const double va = values(a);
        weight = (isovalue - va) / (values(b) - va);
        p += (mesh.points[b] - p) * weight;
      }
      for (std::size_t axis = 0; axis < 3; ++axis)
        data.vertices[3 * v + axis] = static_cast<float>(p[axis]);
      line.sources.set(v, a, b, weight);
    }
  };
  std::visit(walk, mesh.cells, job.field);

  LineData& data = line.mesh.data();
  data.indices.resize(3 * segments.size());
  data.inputCells.resize(segments.size(), mesh.numCells);
  for (std::size_t s = 0; s < segments.size(); ++s) {
    data.setSegment(s, segments[s].from, segments[s].to);
    data.inputCells.set(s, segments[s].cell);
  }
}

} // namespace kx
