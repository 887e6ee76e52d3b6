// SPDX-License-Identifier: BSD-3-Clause
#include "EdgePolygoniser.h"

#include "Blocks.h"
#include "CaseTable.h"
#include "CellGeometry.h"
#include "CellReader.h"
#include "CornerValues.h"
#include "FinitePosition.h"
#include "KnownFunctions.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

namespace kx {
namespace {

constexpr std::size_t CHUNK = CellIndex::CHUNK;
constexpr std::size_t AHEAD = 12; // cells or edges between the one at work and the one that is fetched

/// A cell polygon by its vertices' edges.
using NodeLoop = std::vector<NodeEdge>;

/// Brings a loop whose vertices may coincide to proper polygons: repeated neighbours become one, a loop that touches
/// itself falls apart, and what has fewer than three corners is dropped.
void splitLoop(const NodeLoop& loop, std::vector<NodeLoop>& polygons) {
  NodeLoop open;
  for (const NodeEdge& vertex : loop) {
    const auto seen = std::find(open.begin(), open.end(), vertex);
    if (seen == open.end()) {
      open.push_back(vertex);
      continue;
    }
    if (open.end() - seen >= 3) polygons.emplace_back(seen, open.end());
    open.erase(seen + 1, open.end());
  }
  if (open.size() >= 3) polygons.push_back(std::move(open));
}

/// `FunctionValues` where function and positions are known as what they are, so that a value costs no call.
template <class Function, class PointAt>
struct KnownFunctionValues {
  const Function& function;
  PointAt pointAt;

  using Raw = double;
  double raw(std::size_t id) const { return function(pointAt(id)); }
};

bool hasRepeats(const CellNodes& nodes, std::size_t count) {
  std::uint64_t seen = 0; // a bit for each id modulo 64: most cells need no closer look
  for (std::size_t i = 0; i < count; ++i)
    seen |= std::uint64_t{1} << (nodes[i] & 63);
  if (static_cast<std::size_t>(std::popcount(seen)) == count) return false;
  for (std::size_t i = 1; i < count; ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (nodes[i] == nodes[j]) return true;
  return false;
}

template <class PointAt>
std::uint8_t stateOf(CellCode code, const CellNodes& nodes, const PointAt& pointAt) {
  const std::size_t count = NUM_CORNERS[code];
  const auto corner = [&](std::size_t i) { return pointAt(nodes[std::min(i, count - 1)]); };
  const std::array<KbVec3<double>, 8> corners{corner(0), corner(1), corner(2), corner(3),
                                              corner(4), corner(5), corner(6), corner(7)};
  const bool areFinite = std::all_of(corners.begin(), corners.end(), isFinite);
  return static_cast<std::uint8_t>(
      CellIndex::IS_KNOWN | (signedSize(code, corners) < 0.0 ? CellIndex::IS_INVERTED : 0) |
      (hasRepeats(nodes, count) ? CellIndex::HAS_REPEATED_NODES : 0) | (areFinite ? 0 : CellIndex::IS_NOT_FINITE));
}

std::uint8_t stateOf(CellCode code, const CellNodes& nodes, const PointView& points) {
  return withPositions(points, [&](const auto& pointAt) { return stateOf(code, nodes, pointAt); });
}

} // namespace

struct EdgePolygoniser::Job {
  Run& run;
  const MeshView& mesh;
  const ScalarField& field;
  double isovalue;
  SurfaceData& output;
  Faults& faults;
  std::array<const CaseTable*, 4> tables{&CaseTable::of(0), &CaseTable::of(1), &CaseTable::of(2), &CaseTable::of(3)};

  double value(std::size_t node) const {
    return std::visit([node](const auto& f) { return f(node); }, field);
  }
  std::size_t endId() const { return mesh.endNode << mesh.slotBits; }

  /// Collects the polygons of a cell taken the slow way.
  class LoopMaker {
  public:
    LoopMaker(const Job& job, std::vector<NodeLoop>& polygons)
        : m_job(job)
        , m_polygons(polygons) {
      polygons.clear();
    }
    void add(std::size_t a, std::size_t b) {
      const double va = m_job.value(a);
      const double vb = m_job.value(b);
      const double isovalue = m_job.isovalue;
      if (va >= isovalue ? va == isovalue : vb == isovalue) (va >= isovalue ? b : a) = va >= isovalue ? a : b;
      m_loop.emplace_back(std::min(a, b), std::max(a, b));
    }
    void finish() {
      splitLoop(m_loop, m_polygons);
      m_loop.clear();
    }

  private:
    const Job& m_job;
    std::vector<NodeLoop>& m_polygons;
    NodeLoop m_loop;
  };
};

/// Finds the crossed cells of a chunk and their polygons.
template <class Id>
class EdgePolygoniser::Classifier {
public:
  Classifier(const Job& job, CellIndex& index, std::size_t chunk, SurfaceParts<Id>& parts)
      : m_job(job)
      , m_index(index)
      , m_begin(chunk * CHUNK)
      , m_part(parts, chunk, m_begin) {}

  /// Takes the candidates among the cells of the chunk.
  template <class Cells, class Values>
  void take(const Cells& cells, const Values& values, const CellIndex::ChunkCells& candidates, std::size_t count) {
    using Scalar = typename Values::Raw;
    const Threshold<Scalar> threshold(m_job.isovalue);
    CellNodes nodes;
    for (std::size_t at = 0; at < count; ++at) {
      if (at + AHEAD < count) cells.prefetch(m_begin + candidates[at + AHEAD]);
      const std::size_t cell = m_begin + candidates[at];
      const CellCode code = cells.load(cell, nodes);
      if (code >= POLYHEDRON) {
        // The index has told of those that cannot be read.
        if (m_job.mesh.loadPolyhedron(cell, m_faces, m_nodes)) addPolyhedron(cell, m_faces, m_nodes);
        continue;
      }
      withCornerValues(values, code, nodes, [&](const auto& corners) {
        // The index has kept away cells with values that are no numbers, but where a function yields them.
        if (!corners.isFinite())
          m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        else
          addCell(cell, code, nodes, threshold.inside(corners), threshold.onIt(corners) != 0);
      });
    }
  }

  /// Takes all cells of the chunk by the sides of their nodes.
  template <class Cells>
  void scan(const Cells& cells, const NodeSides& sides) {
    CellReader<Purpose::POSITIONS, Cells> reader(m_job.mesh, cells, m_job.faults);
    const std::size_t end = std::min(m_begin + CHUNK, m_job.mesh.numCells);
    CellNodes nodes;
    CellIndex::ChunkCells crossed;
    std::size_t count = 0;
    for (std::size_t cell = m_begin; cell < end; ++cell) {
      crossed[count] = static_cast<std::uint16_t>(cell - m_begin);
      count += mayCross(cells, cell, nodes, sides);
    }
    for (std::size_t at = 0; at < count; ++at) {
      if (at + AHEAD < count) cells.prefetch(m_begin + crossed[at + AHEAD]);
      if (Cells::ARE_ARRAYS && at + AHEAD / 2 < count) {
        const CellCode code = cells.loadForValues(m_begin + crossed[at + AHEAD / 2], nodes);
        for (std::size_t i = 0; code < POLYHEDRON && i < NUM_CORNERS[code]; ++i)
          m_job.mesh.points.prefetch(nodes[i]);
      }
      takeCrossed(reader, m_begin + crossed[at], sides);
    }
  }

private:
  /// False for a cell with all nodes on one side.
  template <class Cells>
  [[gnu::always_inline]] static bool mayCross(const Cells& cells, std::size_t cell, CellNodes& nodes,
                                              const NodeSides& sides) {
    if constexpr (requires { cells.find(cell); }) {
      const auto found = cells.find(cell);
      return sides.mayCross(found.code, found.ids);
    } else {
      const CellCode code = cells.loadForValues(cell, nodes);
      return sides.mayCross(code, nodes.data());
    }
  }

  /// A cell with nodes on both sides, or with nodes or values that don't exist.
  template <class Reader>
  void takeCrossed(Reader& reader, std::size_t cell, const NodeSides& sides) {
    const auto hasNumbers = [&](const auto& nodes, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i)
        if ((sides[nodes[i]] & NodeSides::NO_NUMBER) != 0) return false;
      return true;
    };
    const bool isFunction = std::holds_alternative<FunctionValues>(m_job.field);
    reader.read(
        cell,
        [&](CellCode code, const CellNodes& nodes) {
          const std::size_t count = NUM_CORNERS[code];
          unsigned inside = 0;
          unsigned onIt = 0;
          for (std::size_t i = 0; i < count; ++i) {
            const unsigned side = sides[nodes[i]];
            inside |= (side & NodeSides::INSIDE) << i;
            onIt |= side & NodeSides::ON_SURFACE;
          }
          if (hasNumbers(nodes, count))
            addCell(cell, code, nodes, inside, onIt != 0);
          else if (isFunction)
            m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        },
        [&](const std::vector<std::vector<std::size_t>>& faces, const std::vector<std::size_t>& nodes) {
          if (hasNumbers(nodes, nodes.size()))
            addPolyhedron(cell, faces, nodes);
          else if (isFunction)
            m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        });
  }

  void addCell(std::size_t cell, CellCode code, const CellNodes& nodes, unsigned inside, bool isExact) {
    const CaseTable& table = *m_job.tables[code];
    const CaseTable::Case& c = table[inside & ((1u << NUM_CORNERS[code]) - 1)];
    if (c.numPolygons == 0) return;
    std::uint8_t& state = m_index.state(cell);
    if (state == CellIndex::UNKNOWN) state = stateOf(code, nodes, m_job.mesh.points);
    if ((state & CellIndex::IS_NOT_FINITE) != 0) {
      m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return;
    }
    const bool isInverted = (state & CellIndex::IS_INVERTED) != 0;
    const auto& list = c.lists[isInverted];
    if (isExact || (state & CellIndex::HAS_REPEATED_NODES) != 0) {
      Job::LoopMaker loops(m_job, m_polygons);
      for (std::size_t i = 0; i < c.listSize; ++i) {
        if (list[i] == CaseTable::END_OF_POLYGON)
          loops.finish();
        else
          loops.add(nodes[table.edge(list[i])[0]], nodes[table.edge(list[i])[1]]);
      }
      addPolygons(cell);
      return;
    }
    m_part.reserve(c.numEdges, list.size(), c.numPolygons);
    std::array<std::uint16_t, CaseTable::END_OF_POLYGON + 1> edges{};
    edges[CaseTable::END_OF_POLYGON] = SurfaceParts<Id>::END;
    for (std::size_t i = 0; i < c.numEdges; ++i) {
      const std::array<std::uint8_t, 2>& ends = table.edge(c.edges[i]);
      edges[c.edges[i]] = m_part.find(static_cast<Id>(nodes[ends[0]]), static_cast<Id>(nodes[ends[1]]));
    }
    // Most lists are short: a fixed number of steps is faster than the right one.
    constexpr std::size_t SHORT = 8;
    std::uint16_t* indices = m_part.indices();
    for (std::size_t i = 0; i < SHORT; ++i)
      indices[i] = edges[list[i]];
    for (std::size_t i = SHORT; i < c.listSize; ++i)
      indices[i] = edges[list[i]];
    m_part.addIndices(c.listSize);
    m_part.addPolygons(cell, c.numPolygons);
  }

  void addPolyhedron(std::size_t cell, const std::vector<std::vector<std::size_t>>& faces,
                     const std::vector<std::size_t>& nodes) {
    std::vector<bool> inside(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i)
      inside[i] = m_job.value(nodes[i]) >= m_job.isovalue;
    Loops loops;
    if (!traceLoops(faces, inside, loops)) {
      m_job.faults.add(Faults::OPEN_POLYHEDRON, cell);
      return;
    }
    if (loops.empty()) return;
    std::vector<KbVec3<double>> corners;
    for (const std::size_t node : nodes)
      corners.push_back(m_job.mesh.points[node]);
    if (!std::all_of(corners.begin(), corners.end(), isFinite)) {
      m_job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      return;
    }
    const bool isInverted = signedSize(faces, corners) < 0.0;
    Job::LoopMaker maker(m_job, m_polygons);
    for (std::vector<LocalEdge>& edges : loops) {
      if (isInverted) std::reverse(edges.begin(), edges.end());
      for (const LocalEdge& e : edges)
        maker.add(nodes[e.a], nodes[e.b]);
      maker.finish();
    }
    addPolygons(cell);
  }

  void addPolygons(std::size_t cell) {
    std::size_t numEdges = 0;
    for (const NodeLoop& polygon : m_polygons)
      numEdges += polygon.size();
    if (numEdges > SurfaceParts<Id>::Builder::MAX_EDGES) {
      m_job.faults.add(Faults::TOO_MANY_EDGES, cell);
      return;
    }
    m_part.reserve(numEdges, numEdges + m_polygons.size(), m_polygons.size());
    for (const NodeLoop& polygon : m_polygons) {
      std::uint16_t* indices = m_part.indices();
      for (const NodeEdge& edge : polygon)
        *indices++ = m_part.find(static_cast<Id>(edge.first), static_cast<Id>(edge.second));
      *indices = SurfaceParts<Id>::END;
      m_part.addIndices(polygon.size() + 1);
    }
    m_part.addPolygons(cell, m_polygons.size());
  }

  const Job& m_job;
  CellIndex& m_index;
  std::size_t m_begin;
  typename SurfaceParts<Id>::Builder m_part;
  std::vector<NodeLoop> m_polygons;
  std::vector<std::vector<std::size_t>> m_faces;
  std::vector<std::size_t> m_nodes;
};

void EdgePolygoniser::cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue,
                          SurfaceData& output, Faults& faults) {
  Job job{run, mesh, field, isovalue, output, faults};
  if (job.endId() <= std::numeric_limits<std::uint32_t>::max())
    cut(job, m_parts);
  else
    cut(job, m_wideParts);
}

template <class Id>
void EdgePolygoniser::cut(Job& job, SurfaceParts<Id>& parts) {
  parts.reset(numBlocksOf(job.mesh.numCells, CHUNK), job.mesh.beginNode << job.mesh.slotBits, job.endId());
  if (m_stage == Stage::FIRST_CUT) m_index.reset(job.mesh);
  if (scansSides(job.mesh, job.field)) {
    scan(job, parts);
    m_stage = Stage::SECOND_CUT;
  } else {
    classify(job, parts);
    m_stage = Stage::HAS_INDEX;
  }

  typename SurfaceParts<Id>::Sizes sizes = parts.close();
  if (sizes.numIndices > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    job.faults.post("the surface needs " + std::to_string(sizes.numIndices) +
                    " indices, more than 32 bits address; it is empty");
    parts.reset(0, 0, 0);
    sizes = parts.close();
  }
  job.run.phase("share", parts.numParts(), [&](std::size_t number) { parts.share(number); });
  job.run.phase("merge", parts.numBlocks(), [&](std::size_t block) { parts.merge(block); });
  placeVertices(job, parts);
  job.output.indices.resize(sizes.numIndices);
  job.output.inputCells.resize(sizes.numPolygons, job.mesh.numCells);
  writePolygons(job, parts);
  parts.reset(0, 0, 0);
}

template <class Id>
void EdgePolygoniser::scan(Job& job, SurfaceParts<Id>& parts) {
  NodeSides sides;
  sides.fill(job.run, job.mesh, job.field, job.isovalue);
  job.run.phase("classify", numBlocksOf(job.mesh.numCells, CHUNK), [&](std::size_t chunk) {
    Classifier<Id> classifier(job, m_index, chunk, parts);
    std::visit([&](const auto& cells) { classifier.scan(cells, sides); }, job.mesh.cells);
  });
}

template <class Id>
void EdgePolygoniser::classify(Job& job, SurfaceParts<Id>& parts) {
  const bool buildsIndex = m_stage != Stage::HAS_INDEX;
  if (buildsIndex) m_index.prepare(job.mesh, job.field);
  // What is wrong with the mesh has been told by the first cut.
  Faults known("");
  Faults& faults = m_stage == Stage::FIRST_CUT ? job.faults : known;
  const auto* functionValues = std::get_if<FunctionValues>(&job.field);
  const ImplicitFunction* function = functionValues ? functionValues->function : nullptr;
  job.run.phase(buildsIndex ? "index" : "classify", numBlocksOf(job.mesh.numCells, CHUNK), [&](std::size_t chunk) {
    // The cells are still near when they have just been indexed.
    if (buildsIndex) m_index.build(job.mesh, job.field, chunk, faults);
    CellIndex::ChunkCells candidates;
    const std::size_t count = m_index.find(chunk, job.isovalue, function, candidates);
    if (count == 0) return;
    Classifier<Id> classifier(job, m_index, chunk, parts);
    std::visit(
        [&](const auto& cells, const auto& values) {
          const auto take = [&](const auto& corners) { classifier.take(cells, corners, candidates, count); };
          if constexpr (std::is_same_v<std::decay_t<decltype(values)>, FunctionValues>)
            withFunction(*values.function, [&](const auto& f) {
              withPositions(*values.points, [&](const auto& pointAt) { take(KnownFunctionValues{f, pointAt}); });
            });
          else
            take(values);
        },
        job.mesh.cells, job.field);
  });
}

template <class Id>
void EdgePolygoniser::placeVertices(Job& job, SurfaceParts<Id>& parts) {
  const std::vector<std::size_t> begins = parts.vertexBegins();
  const std::size_t numVertices = begins.back();
  const PointView& points = job.mesh.points;
  SurfaceData& output = job.output;
  output.vertices.resize(3 * numVertices);
  output.weights.resize(numVertices);
  output.edgeBegins.resize(numVertices, job.endId());
  output.edgeEnds.resize(numVertices, job.endId());

  job.run.phase("place vertices", parts.numParts(), [&](std::size_t number) {
    std::vector<NodeEdge> edges;
    parts.numberVertices(number, begins[number], edges);
    const auto walk = [&](const auto& values) {
      const auto prefetch = [&](std::size_t id) {
        points.prefetch(id);
        values.prefetch(id);
      };
      for (std::size_t at = 0; at < edges.size(); ++at) {
        if (at + AHEAD < edges.size()) {
          prefetch(edges[at + AHEAD].first);
          prefetch(edges[at + AHEAD].second);
        }
        const auto [a, b] = edges[at];
        KbVec3<double> p = points[a];
        double weight = 0.0;
        if (a != b) {
          const double va = values(a);
          weight = (job.isovalue - va) / (values(b) - va);
          p += (points[b] - p) * weight;
        }
        const std::size_t vertex = begins[number] + at;
        float* out = output.vertices.data() + 3 * vertex;
        out[0] = static_cast<float>(p[0]);
        out[1] = static_cast<float>(p[1]);
        out[2] = static_cast<float>(p[2]);
        output.weights[vertex] = static_cast<float>(weight);
        output.edgeBegins.set(vertex, a);
        output.edgeEnds.set(vertex, b);
      }
    };
    std::visit(walk, job.field);
  });
}

template <class Id>
void EdgePolygoniser::writePolygons(Job& job, const SurfaceParts<Id>& parts) {
  SurfaceData& output = job.output;
  job.run.phase("write polygons", parts.numParts(), [&](std::size_t number) {
    const typename SurfaceParts<Id>::Part& part = parts.part(number);
    const typename SurfaceParts<Id>::Sizes& begin = parts.begin(number);
    std::int32_t* indices = output.indices.data() + begin.numIndices;
    std::vector<std::int32_t> vertices;
    parts.findVertices(number, vertices);
    for (const std::uint16_t edge : part.indices)
      *indices++ = edge == SurfaceParts<Id>::END ? -1 : vertices[edge];
    for (std::size_t i = 0; i < part.cells.size(); ++i)
      output.inputCells.set(begin.numPolygons + i, part.firstCell + part.cells[i]);
  });
}

} // namespace kx
