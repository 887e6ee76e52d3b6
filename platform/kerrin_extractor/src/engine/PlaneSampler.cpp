// SPDX-License-Identifier: BSD-3-Clause
#include "PlaneSampler.h"

#include "Blocks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

namespace kx {
namespace {

using Vec3 = KbVec3<double>;

constexpr double MAX_NODES = 67108864.0;       // 2^26: what a byte each is no burden for
constexpr double MAX_STEPS_FROM_ORIGIN = 1e15; // beyond, neighbours have nearly the same coordinates
constexpr double AT_END = 1e-9;                // of a step: a node on the box' side counts
constexpr std::size_t POINTS_PER_STEP = 1024;

std::string textOf(double number) {
  char text[32];
  std::snprintf(text, sizeof(text), "%g", number);
  return text;
}

/// The cells at the found nodes of a row, in order, with the weights of the cells' nodes.
struct Row {
  std::vector<std::size_t> cells;
  std::vector<double> weights;
  std::size_t numVertices = 0; ///< found nodes that a quadrangle uses
  std::size_t numEntries = 0;  ///< their weights that are not zero
  std::size_t numQuads = 0;    ///< that begin in the row
};

} // namespace

PlaneGrid::PlaneGrid(const Vec3& normal, double distance, double step)
    : m_normal(normal.normalized())
    , m_step(step) {
  const double size = m_normal.dot(m_normal);
  if (!std::isfinite(size) || !std::isfinite(distance))
    m_fault = "the plane's normal or distance is not finite";
  else if (!(size > 0.0))
    m_fault = "the plane's normal has no length";
  else if (!(step > 0.0) || !std::isfinite(step))
    m_fault = "the step " + textOf(step) + " is not a positive number";
  if (!m_fault.empty()) return;
  std::size_t greatest = 0;
  for (std::size_t axis = 1; axis < 3; ++axis)
    if (std::abs(m_normal[axis]) > std::abs(m_normal[greatest])) greatest = axis;
  Vec3 start(0.0);
  start[(greatest + 1) % 3] = 1.0;
  m_axes[0] = (start - m_normal * m_normal.dot(start)).normalized();
  m_axes[1] = m_normal.cross(m_axes[0]);
  m_origin = m_normal * distance;
}

PlaneGrid::Range PlaneGrid::rangeIn(const Box& box, std::string& fault) const {
  Range range;
  if (box.isEmpty()) return range;
  const Vec3 centre = (box.low + box.high) * 0.5 - m_origin;
  const Vec3 half = (box.high - box.low) * 0.5;
  const auto reachAlong = [&half](const Vec3& axis) {
    return std::abs(axis[0]) * half[0] + std::abs(axis[1]) * half[1] + std::abs(axis[2]) * half[2];
  };
  if (std::abs(m_normal.dot(centre)) > reachAlong(m_normal) * (1.0 + AT_END) + AT_END * m_step) return range;
  std::array<double, 2> counts{};
  for (std::size_t a = 0; a < 2; ++a) {
    const double middle = m_axes[a].dot(centre);
    const double reach = reachAlong(m_axes[a]);
    const double first = std::ceil((middle - reach) / m_step - AT_END);
    const double last = std::floor((middle + reach) / m_step + AT_END);
    if (!(std::max(std::abs(first), std::abs(last)) <= MAX_STEPS_FROM_ORIGIN)) {
      fault = "the step " + textOf(m_step) + " is too small for a mesh of this size and place";
      return range;
    }
    range.begin[a] = first;
    counts[a] = std::max(last - first + 1.0, 0.0);
  }
  if (counts[0] * counts[1] > MAX_NODES) {
    fault = "the step " + textOf(m_step) + " asks for " + textOf(counts[0] * counts[1]) + " grid nodes, more than " +
            textOf(MAX_NODES);
    return range;
  }
  range.counts = {static_cast<std::size_t>(counts[0]), static_cast<std::size_t>(counts[1])};
  return range;
}

namespace {

/// What the passes over a grid share. Rows are located, counted and written on their own.
class Sampling {
public:
  Sampling(const VolumeLocator& locator, const PlaneGrid& grid, const PlaneGrid::Range& range)
      : m_locator(locator)
      , m_grid(grid)
      , m_range(range)
      , m_numI(range.counts[0])
      , m_rows(m_numI > 1 ? range.counts[1] : 0)
      , m_isFound(m_numI * m_rows.size(), 0) {}

  std::size_t numRows() const { return m_rows.size(); }
  void locate(std::size_t j);
  void count(std::size_t j);
  /// Makes room for what was counted.
  void place(SurfaceData& output, NodeWeights& sources);
  void writeVertices(std::size_t j, SurfaceData& output, NodeWeights& sources) const;
  /// The quadrangles between a row and the next.
  void writeQuads(std::size_t j, SurfaceData& output) const;

private:
  /// The cells at the nodes of a row, and the numbers of its vertices.
  struct Numbering {
    std::vector<std::size_t> cells;
    std::vector<std::int32_t> vertices;
  };

  Vec3 nodeAt(std::size_t i, std::size_t j, double shift) const {
    return m_grid.node(m_range, static_cast<double>(i) + shift, static_cast<double>(j) + shift);
  }
  /// Whether there is a quadrangle, by its first corner.
  bool isQuad(std::size_t i, std::size_t j) const {
    if (i + 1 >= m_numI || j + 1 >= m_rows.size()) return false;
    const std::uint8_t* corner = m_isFound.data() + i + m_numI * j;
    return (corner[0] & corner[1] & corner[m_numI] & corner[m_numI + 1]) != 0;
  }
  bool isUsed(std::size_t i, std::size_t j) const {
    return isQuad(i, j) || (i > 0 && isQuad(i - 1, j)) ||
           (j > 0 && (isQuad(i, j - 1) || (i > 0 && isQuad(i - 1, j - 1))));
  }
  /// Visits `(i, cell, weights)` of the found nodes of a row that a quadrangle uses; leaves `hit` with the cell's
  /// nodes.
  template <class Visit>
  void forVertices(std::size_t j, CellHit& hit, const Visit& visit) const {
    const double* weights = m_rows[j].weights.data();
    std::size_t found = 0;
    for (std::size_t i = 0; i < m_numI; ++i) {
      if (!m_isFound[i + m_numI * j]) continue;
      const std::size_t cell = m_rows[j].cells[found++];
      m_locator.loadNodes(cell, hit);
      if (isUsed(i, j)) visit(i, cell, weights);
      weights += hit.numNodes();
    }
  }
  Numbering numberingOf(std::size_t j) const;

  const VolumeLocator& m_locator;
  const PlaneGrid& m_grid;
  PlaneGrid::Range m_range;
  std::size_t m_numI;
  std::vector<Row> m_rows;
  std::vector<std::uint8_t> m_isFound; ///< for each node
};

void Sampling::locate(std::size_t j) {
  CellHit hit;
  for (std::size_t i = 0; i < m_numI; ++i) {
    if (!m_locator.find(nodeAt(i, j, 0.0), hit)) continue;
    m_isFound[i + m_numI * j] = 1;
    m_rows[j].cells.push_back(hit.cell);
    for (std::size_t n = 0; n < hit.numNodes(); ++n)
      m_rows[j].weights.push_back(hit.weight(n));
  }
}

void Sampling::count(std::size_t j) {
  CellHit hit;
  Row& row = m_rows[j];
  forVertices(j, hit, [&](std::size_t i, std::size_t, const double* weights) {
    row.numVertices += 1;
    row.numQuads += isQuad(i, j);
    row.numEntries +=
        static_cast<std::size_t>(std::count_if(weights, weights + hit.numNodes(), [](double w) { return w != 0.0; }));
  });
}

void Sampling::place(SurfaceData& output, NodeWeights& sources) {
  std::size_t numVertices = 0;
  std::size_t numQuads = 0;
  std::size_t numEntries = 0;
  for (Row& row : m_rows) { // each count becomes what is in front of the row
    numVertices += std::exchange(row.numVertices, numVertices);
    numQuads += std::exchange(row.numQuads, numQuads);
    numEntries += std::exchange(row.numEntries, numEntries);
  }
  const MeshView& mesh = m_locator.mesh();
  output.indices.resize(5 * numQuads);
  output.inputCells.resize(numQuads, mesh.numCells);
  output.vertices.resize(3 * numVertices);
  output.edgeBegins.resize(0, 0);
  output.edgeEnds.resize(0, 0);
  output.weights.resize(0);
  sources.begins.resize(numVertices + 1);
  sources.begins[numVertices] = numEntries;
  sources.nodes.resize(numEntries, mesh.endNode);
  sources.weights.resize(numEntries);
}

void Sampling::writeVertices(std::size_t j, SurfaceData& output, NodeWeights& sources) const {
  CellHit hit;
  std::size_t vertex = m_rows[j].numVertices;
  std::size_t entry = m_rows[j].numEntries;
  forVertices(j, hit, [&](std::size_t i, std::size_t, const double* weights) {
    const Vec3 p = nodeAt(i, j, 0.0);
    setPosition(output.vertices, vertex, p);
    sources.begins[vertex++] = entry;
    for (std::size_t n = 0; n < hit.numNodes(); ++n) {
      if (weights[n] == 0.0) continue; // such a node has no say, even if it has no value
      sources.nodes.set(entry, hit.node(n));
      sources.weights[entry++] = weights[n];
    }
  });
}

Sampling::Numbering Sampling::numberingOf(std::size_t j) const {
  CellHit hit;
  Numbering numbering{std::vector<std::size_t>(m_numI), std::vector<std::int32_t>(m_numI)};
  auto next = static_cast<std::int32_t>(m_rows[j].numVertices);
  forVertices(j, hit, [&](std::size_t i, std::size_t cell, const double*) {
    numbering.cells[i] = cell;
    numbering.vertices[i] = next++;
  });
  return numbering;
}

void Sampling::writeQuads(std::size_t j, SurfaceData& output) const {
  if (j + 1 == m_rows.size()) return;
  const Numbering low = numberingOf(j);
  const Numbering high = numberingOf(j + 1);
  CellHit hit;
  std::size_t quad = m_rows[j].numQuads;
  for (std::size_t i = 0; i < m_numI; ++i) {
    if (!isQuad(i, j)) continue;
    const std::int32_t corners[5] = {low.vertices[i], low.vertices[i + 1], high.vertices[i + 1], high.vertices[i], -1};
    std::copy(corners, corners + 5, output.indices.data() + 5 * quad);
    std::size_t cell = low.cells[i];
    const bool isInOne = low.cells[i + 1] == cell && high.cells[i] == cell && high.cells[i + 1] == cell;
    if (!isInOne && m_locator.find(nodeAt(i, j, 0.5), hit)) cell = hit.cell;
    output.inputCells.set(quad++, cell);
  }
}

} // namespace

void PlaneSampler::sample(Run& run, const VolumeLocator& locator, const PlaneGrid& grid, SurfaceData& output,
                          NodeWeights& sources, Faults& faults) {
  std::string fault;
  const PlaneGrid::Range range = grid.rangeIn(locator.reach(), fault);
  if (!fault.empty()) faults.post(fault);
  Sampling sampling(locator, grid, range);
  const std::size_t numRows = sampling.numRows();
  const std::size_t rowsPerStep = std::max<std::size_t>(1, POINTS_PER_STEP / std::max<std::size_t>(range.counts[0], 1));
  const auto forRows = [&](const char* phase, const auto& visit) {
    run.phase(phase, numBlocksOf(numRows, rowsPerStep), [&](std::size_t step) {
      for (std::size_t j = step * rowsPerStep; j < std::min((step + 1) * rowsPerStep, numRows); ++j)
        visit(j);
    });
  };
  forRows("locate", [&](std::size_t j) { sampling.locate(j); });
  forRows("count", [&](std::size_t j) { sampling.count(j); });
  sampling.place(output, sources);
  forRows("write", [&](std::size_t j) {
    sampling.writeVertices(j, output, sources);
    sampling.writeQuads(j, output);
  });
}

} // namespace kx
