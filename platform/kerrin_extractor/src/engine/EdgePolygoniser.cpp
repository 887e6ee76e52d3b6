// SPDX-License-Identifier: BSD-3-Clause
#include "EdgePolygoniser.h"

#include "CaseTable.h"
#include "CellGeometry.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kx {
namespace {

constexpr std::size_t CHUNK = 4096;      // cells; local numbers fit 16 bits
constexpr std::size_t BOX_CELLS = 64;    // cells with a common box; a chunk is a multiple
constexpr unsigned NODE_BLOCK_BITS = 12; // nodes that get their vertex numbers in one step
constexpr std::size_t NODE_BLOCK = std::size_t{1} << NODE_BLOCK_BITS;
constexpr std::size_t TRANSLATION = 65536; // indices
constexpr std::size_t AHEAD = 12;          // crossed cells between the one at work and the one that is fetched
constexpr std::uint32_t NONE = 0xffffffffu;
constexpr unsigned KEY_SHIFT = 64 - CORNER_SLOT_BITS;
constexpr std::uint64_t KEY_MASK = (std::uint64_t{1} << KEY_SHIFT) - 1;

std::size_t numBlocks(std::size_t count, std::size_t block) { return (count + block - 1) / block; }

/// One bit for each of up to 64 cells: whether the isovalue's step lies in [low, high].
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

/// A cell polygon by its vertices' edges, as node ids.
using NodeEdge = std::pair<std::size_t, std::size_t>;
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

/// Six times the volume within the fans of a polyhedron's faces; positive when they turn outwards.
double polyhedronSize(const PointView& points, const std::vector<std::vector<std::size_t>>& faces,
                      const std::vector<std::size_t>& nodes) {
  const KbVec3<double> origin = points[nodes[0]];
  double size = 0.0;
  for (const std::vector<std::size_t>& face : faces) {
    const KbVec3<double> a = points[nodes[face[0]]] - origin;
    for (std::size_t i = 1; i + 1 < face.size(); ++i)
      size += a.dot((points[nodes[face[i]]] - origin).cross(points[nodes[face[i + 1]]] - origin));
  }
  return size;
}

/// What a cell's corners say about it, besides values. Found when the cell is first crossed.
enum CellState : std::uint8_t { UNKNOWN = 0, IS_KNOWN = 1, IS_INVERTED = 2, HAS_REPEATED_NODES = 4, IS_NOT_FINITE = 8 };

template <class PointAt>
std::uint8_t stateOf(CellCode code, const CellNodes& nodes, const PointAt& pointAt) {
  const std::size_t count = code == HEXAHEDRON ? 8 : NUM_CORNERS[code];
  std::array<KbVec3<double>, 8> corners;
  for (std::size_t i = 0; i < count; ++i)
    corners[i] = pointAt(nodes[i]);
  const double size = signedSize(code, corners);
  bool isRepeated = false;
  for (std::size_t i = 1; i < count; ++i)
    for (std::size_t j = 0; j < i; ++j)
      isRepeated |= nodes[i] == nodes[j];
  return static_cast<std::uint8_t>(IS_KNOWN | (size < 0.0 ? IS_INVERTED : 0) | (isRepeated ? HAS_REPEATED_NODES : 0) |
                                   (std::isfinite(size) ? 0 : IS_NOT_FINITE));
}

std::uint8_t stateOf(CellCode code, const CellNodes& nodes, const PointView& points) {
  switch (points.kind) {
  case PointView::Kind::FLOATS:
    return stateOf(code, nodes, [&](std::size_t id) { return points.triple<float>(id); });
  case PointView::Kind::DOUBLES:
    return stateOf(code, nodes, [&](std::size_t id) { return points.triple<double>(id); });
  default:
    return stateOf(code, nodes, [&](std::size_t id) { return points[id]; });
  }
}

} // namespace

struct EdgePolygoniser::Job {
  Run& run;
  const MeshView& mesh;
  const ScalarField& field;
  double isovalue;
  SurfaceData& output;
  Faults& faults;

  double value(std::size_t node) const {
    return std::visit([node](const auto& f) { return f(node); }, field);
  }
  bool isNode(std::size_t id) const {
    const std::size_t node = id >> mesh.slotBits;
    return node >= mesh.beginNode && node < mesh.endNode;
  }
  /// Calls `visit(cells)` with the view's own type.
  template <class Visit>
  void withCells(Visit&& visit) const {
    std::visit(std::forward<Visit>(visit), mesh.cells);
  }

  /// The polygons of an irregular cell.
  void tracePolygons(std::size_t cell, const ActiveCell& active, const CellNodes& corners,
                     std::vector<NodeLoop>& polygons) const {
    polygons.clear();
    NodeLoop loop;
    const auto add = [&](std::size_t a, std::size_t b) {
      const double va = value(a);
      const double vb = value(b);
      if (va >= isovalue ? va == isovalue : vb == isovalue) (va >= isovalue ? b : a) = va >= isovalue ? a : b;
      loop.emplace_back(std::min(a, b), std::max(a, b));
    };
    const auto finish = [&] {
      splitLoop(loop, polygons);
      loop.clear();
    };
    if (active.code == POLYHEDRON) {
      std::vector<std::vector<std::size_t>> faces;
      std::vector<std::size_t> nodes;
      Loops loops;
      if (!tracePolyhedron(cell, faces, nodes, loops)) return;
      for (std::vector<LocalEdge>& edges : loops) {
        if (active.isInverted) std::reverse(edges.begin(), edges.end());
        for (const LocalEdge& e : edges)
          add(nodes[e.a], nodes[e.b]);
        finish();
      }
      return;
    }
    const CaseTable& table = CaseTable::of(active.code);
    const CaseTable::Case& c = table[active.caseNumber];
    for (std::size_t i = 0; i < c.listSize; ++i) {
      const std::uint8_t number = c.lists[active.isInverted][i];
      if (number == CaseTable::END_OF_POLYGON)
        finish();
      else
        add(corners[table.edge(number)[0]], corners[table.edge(number)[1]]);
    }
  }

  bool tracePolyhedron(std::size_t cell, std::vector<std::vector<std::size_t>>& faces, std::vector<std::size_t>& nodes,
                       Loops& loops) const {
    if (!mesh.loadPolyhedron(cell, faces, nodes)) return false;
    std::vector<bool> inside(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i)
      inside[i] = value(nodes[i]) >= isovalue;
    return traceLoops(faces, inside, loops);
  }
};

void EdgePolygoniser::cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
                          SurfaceData& output, Faults& faults) {
  Job job{run, mesh, field, isovalue, output, faults};
  m_chunks.resize(numBlocks(mesh.numCells, CHUNK));
  if (!m_headsAreClean || m_heads.size() != mesh.endNode) {
    m_heads.resize(mesh.endNode);
    std::fill_n(m_heads.data(), m_heads.size(), NONE);
  }
  m_headsAreClean = false;
  if (buildsIndex) buildIndex(job);
  classify(job);
  collectEdges(job);
  placeVertices(job);
  numberPolygons(job);
  m_headsAreClean = true;
}

void EdgePolygoniser::buildIndex(Job& job) {
  const MeshView& mesh = job.mesh;
  m_low.resize(mesh.numCells);
  m_high.resize(mesh.numCells);
  m_states.resize(mesh.numCells);
  // The steps span the values of a sample: a wrong range costs time, never cells.
  constexpr std::size_t SAMPLES = 1024;
  const std::size_t numNodes = mesh.endNode - std::min(mesh.beginNode, mesh.endNode);
  double low = std::numeric_limits<double>::infinity();
  double high = -low;
  const bool isFunction = std::holds_alternative<FunctionValues>(job.field);
  m_boxes.resize(isFunction ? numBlocks(mesh.numCells, BOX_CELLS) : 0);
  for (std::size_t s = 0; s < std::min(SAMPLES, numNodes) && !isFunction; ++s) {
    const std::size_t node = mesh.beginNode + s * numNodes / std::min(SAMPLES, numNodes);
    const double v = job.value(node << mesh.slotBits);
    if (!std::isfinite(v)) continue;
    low = std::min(low, v);
    high = std::max(high, v);
  }
  m_base = low < high ? low : 0.0;
  m_scale = low < high ? 256.0 / (high - low) : 0.0;
  if (!std::isfinite(m_scale)) m_scale = 0.0;

  job.run.phase("index", m_chunks.size(), [&](std::size_t chunk) {
    const std::size_t begin = chunk * CHUNK;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    const bool hasClosedCells = mesh.hasClosedCells();
    const auto step = [this](double v) {
      const double s = (v - m_base) * m_scale;
      return static_cast<std::uint8_t>(s > 0.0 ? (s < 255.0 ? s : 255.0) : 0.0);
    };
    const auto index = [&](const auto& cells, const auto& values) {
      CellNodes nodes;
      std::vector<std::vector<std::size_t>> faces;
      std::vector<std::size_t> all;
      const auto range = [&](const auto& ids, std::size_t count, double& least, double& greatest) {
        double notFinite = 0.0;
        least = greatest = values(ids[0]);
        notFinite += least - least;
        for (std::size_t i = 1; i < count; ++i) {
          const double v = values(ids[i]);
          least = v < least ? v : least;
          greatest = v > greatest ? v : greatest;
          notFinite += v - v;
        }
        return notFinite == 0.0;
      };
      const auto areNodes = [&](const auto& ids, std::size_t count) {
        std::size_t greatest = 0;
        for (std::size_t i = 0; i < count; ++i)
          greatest = std::max(greatest, (ids[i] >> mesh.slotBits) - mesh.beginNode);
        return greatest < numNodes;
      };
      for (std::size_t cell = begin; cell < end; ++cell) {
        m_low[cell] = 255;
        m_high[cell] = 0;
        m_states[cell] = UNKNOWN;
        if (hasClosedCells && !mesh.isOpen(cell)) continue;
        const CellCode code = cells.loadForValues(cell, nodes);
        double least = 0.0;
        double greatest = 0.0;
        bool hasValues = false;
        if (code < POLYHEDRON) {
          const std::size_t count = code == HEXAHEDRON ? 8 : NUM_CORNERS[code];
          if (!areNodes(nodes, count)) {
            job.faults.add(Faults::NODE_OUT_OF_RANGE, cell);
            continue;
          }
          if (!isFunction) hasValues = range(nodes, count, least, greatest);
        } else {
          if (code == UNREADABLE || !mesh.loadPolyhedron(cell, faces, all)) {
            job.faults.add(Faults::UNREADABLE_CELL, cell);
            continue;
          }
          if (!areNodes(all, all.size())) {
            job.faults.add(Faults::NODE_OUT_OF_RANGE, cell);
            continue;
          }
          if (!isFunction) hasValues = range(all, all.size(), least, greatest);
        }
        if (isFunction) {
          m_low[cell] = 0;
          m_high[cell] = 255;
          continue;
        }
        if (!hasValues || least == greatest) continue;
        m_low[cell] = step(least);
        m_high[cell] = step(greatest);
      }
    };
    std::visit(index, mesh.cells, job.field);
    if (isFunction) buildBoxes(job, begin, end);
  });
}

void EdgePolygoniser::buildBoxes(const Job& job, std::size_t begin, std::size_t end) {
  const MeshView& mesh = job.mesh;
  job.withCells([&](const auto& cells) {
    CellNodes nodes;
    std::vector<std::vector<std::size_t>> faces;
    std::vector<std::size_t> all;
    for (std::size_t base = begin; base < end; base += BOX_CELLS) {
      Box box{KbVec3<double>(std::numeric_limits<double>::infinity()),
              KbVec3<double>(-std::numeric_limits<double>::infinity())};
      const auto add = [&](std::size_t id) {
        const KbVec3<double> p = mesh.points[id];
        for (std::size_t axis = 0; axis < 3; ++axis) {
          // Ordered so that a coordinate that is not a number leaves the box alone; its cells are refused when crossed.
          if (p[axis] < box.low[axis]) box.low[axis] = p[axis];
          if (p[axis] > box.high[axis]) box.high[axis] = p[axis];
        }
      };
      for (std::size_t cell = base; cell < std::min(base + BOX_CELLS, end); ++cell) {
        if (m_low[cell] > m_high[cell]) continue;
        const CellCode code = cells.load(cell, nodes);
        if (code < POLYHEDRON) {
          for (std::size_t i = 0; i < NUM_CORNERS[code]; ++i)
            add(nodes[i]);
        } else if (mesh.loadPolyhedron(cell, faces, all)) {
          for (const std::size_t id : all)
            add(id);
        }
      }
      m_boxes[base / BOX_CELLS] = box;
    }
  });
}

void EdgePolygoniser::classify(Job& job) {
  const MeshView& mesh = job.mesh;
  const double scaled = (job.isovalue - m_base) * m_scale;
  const auto isoStep = static_cast<std::uint8_t>(scaled > 0.0 ? (scaled < 255.0 ? scaled : 255.0) : 0.0);

  const auto* functionField = std::get_if<FunctionValues>(&job.field);
  const ImplicitFunction* function = functionField ? functionField->function : nullptr;

  job.run.phase("classify", m_chunks.size(), [&](std::size_t number) {
    Chunk& chunk = m_chunks[number];
    chunk.active.clear();
    chunk.numPolygons = chunk.numIndices = chunk.numEdges = 0;
    const std::size_t begin = number * CHUNK;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    std::vector<NodeLoop> polygons;

    const auto addIrregular = [&](std::size_t cell, const ActiveCell& active, const CellNodes& nodes) {
      job.tracePolygons(cell, active, nodes, polygons);
      if (polygons.empty()) return;
      for (const NodeLoop& polygon : polygons) {
        chunk.numIndices += polygon.size() + 1;
        chunk.numEdges += polygon.size();
      }
      chunk.numPolygons += polygons.size();
      chunk.active.push_back(active);
    };

    const auto addPolyhedron = [&](std::size_t cell) {
      ActiveCell active{static_cast<std::uint16_t>(cell - begin), 0, POLYHEDRON, 0, 1};
      std::vector<std::vector<std::size_t>> faces;
      std::vector<std::size_t> nodes;
      Loops loops;
      if (!job.tracePolyhedron(cell, faces, nodes, loops)) {
        job.faults.add(Faults::OPEN_POLYHEDRON, cell);
        return;
      }
      if (loops.empty()) return;
      const double size = polyhedronSize(mesh.points, faces, nodes);
      if (!std::isfinite(size)) {
        job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        return;
      }
      active.isInverted = size < 0.0;
      addIrregular(cell, active, CellNodes{});
    };

    const auto walk = [&](const auto& cells, const auto& values) {
      CellNodes nodes;
      std::array<std::uint16_t, CHUNK> crossed;
      std::size_t numCrossed = 0;
      static_assert(BOX_CELLS == 64, "a box covers the cells of one word of bits");
      for (std::size_t base = begin; base < end; base += 64) {
        if (function) {
          const Box& box = m_boxes[base / BOX_CELLS];
          if (!(box.low[0] <= box.high[0]) || !function->boundsIn(box.low, box.high).hasZero()) continue;
        }
        std::uint64_t bits =
            candidates(m_low.data() + base, m_high.data() + base, std::min<std::size_t>(64, end - base), isoStep);
        for (; bits != 0; bits &= bits - 1)
          crossed[numCrossed++] =
              static_cast<std::uint16_t>(base - begin + static_cast<std::size_t>(__builtin_ctzll(bits)));
      }
      for (std::size_t at = 0; at < numCrossed; ++at) {
        const std::size_t cell = begin + crossed[at];
        if (at + AHEAD < numCrossed) cells.prefetch(begin + crossed[at + AHEAD]);
        const CellCode code = cells.load(cell, nodes);
        if (code >= POLYHEDRON) {
          addPolyhedron(cell);
          continue;
        }
        const std::size_t count = code == HEXAHEDRON ? 8 : NUM_CORNERS[code];
        unsigned caseNumber = 0;
        bool isExact = false;
        double notFinite = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
          const double v = values(nodes[i]);
          caseNumber |= static_cast<unsigned>(v >= job.isovalue) << i;
          isExact |= v == job.isovalue;
          notFinite += v - v;
        }
        if (notFinite != 0.0) {
          job.faults.add(Faults::COORDINATE_NOT_FINITE, cell); // the index has kept such values of sets away
          continue;
        }
        const CaseTable::Case& c = CaseTable::of(code)[caseNumber];
        if (c.numPolygons == 0) continue;
        if (m_states[cell] == UNKNOWN) m_states[cell] = stateOf(code, nodes, mesh.points);
        const unsigned state = m_states[cell];
        if ((state & IS_NOT_FINITE) != 0) {
          job.faults.add(Faults::COORDINATE_NOT_FINITE, cell);
          continue;
        }
        const ActiveCell active{static_cast<std::uint16_t>(cell - begin), static_cast<std::uint8_t>(caseNumber),
                                static_cast<std::uint8_t>(code & 7), (state & IS_INVERTED) != 0,
                                isExact || (state & HAS_REPEATED_NODES) != 0};
        if (active.isIrregular) {
          addIrregular(cell, active, nodes);
          continue;
        }
        chunk.numPolygons += c.numPolygons;
        chunk.numIndices += c.listSize;
        chunk.numEdges += c.numEdges;
        chunk.active.push_back(active);
      }
    };
    std::visit(walk, mesh.cells, job.field);
  });
}

inline std::uint32_t EdgePolygoniser::findEdge(const Job& job, std::size_t a, std::size_t b, std::size_t& nextFree) {
  const unsigned slotBits = job.mesh.slotBits;
  const std::size_t node = a >> slotBits;
  const std::uint64_t slot = a & ((std::uint64_t{1} << slotBits) - 1);
  const std::uint64_t key = slot << KEY_SHIFT | b;
  const std::atomic_ref<std::uint32_t> head(m_heads[node]);
  std::uint32_t first = head.load(std::memory_order_acquire);
  std::uint32_t searched = NONE; // edges from here on are known to be others
  for (;;) {
    for (std::uint32_t e = first; e != searched; e = m_edges[e].next)
      if (m_edges[e].key == key) return e;
    const auto created = static_cast<std::uint32_t>(nextFree);
    m_edges[created] = {key, first, 0};
    searched = first;
    if (head.compare_exchange_strong(first, created, std::memory_order_acq_rel, std::memory_order_acquire)) {
      ++nextFree;
      std::atomic_ref<std::uint32_t>(m_blockCounts[node >> NODE_BLOCK_BITS]).fetch_add(1, std::memory_order_relaxed);
      return created;
    }
  }
}

void EdgePolygoniser::collectEdges(Job& job) {
  // Sums in front of each chunk: where it writes.
  struct Begin {
    std::size_t polygon;
    std::size_t index;
    std::size_t edge;
  };
  std::vector<Begin> begins;
  begins.reserve(m_chunks.size());
  Begin sum{0, 0, 0};
  for (const Chunk& chunk : m_chunks) {
    begins.push_back(sum);
    sum.polygon += chunk.numPolygons;
    sum.index += chunk.numIndices;
    sum.edge += chunk.numEdges;
  }
  if (sum.index > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    job.faults.post("the surface needs " + std::to_string(sum.index) +
                    " indices, more than 32 bits address; it is empty");
    for (Chunk& chunk : m_chunks)
      chunk.active.clear();
    sum = {0, 0, 0};
  }
  SurfaceData& output = job.output;
  output.indices.resize(sum.index);
  output.inputCells.resize(sum.polygon, job.mesh.numCells);
  m_edges.resize(sum.edge);
  m_blockCounts.resize(numBlocks(m_heads.size(), NODE_BLOCK));
  std::fill_n(m_blockCounts.data(), m_blockCounts.size(), 0u);

  job.run.phase("connect", m_chunks.size(), [&](std::size_t number) {
    const Chunk& chunk = m_chunks[number];
    std::int32_t* indices = output.indices.data() + begins[number].index;
    std::size_t polygon = begins[number].polygon;
    std::size_t nextFree = begins[number].edge;
    std::vector<NodeLoop> polygons;
    const auto walk = [&](const auto& cells) {
      CellNodes nodes;
      std::array<std::int32_t, 13> edges{};
      edges[CaseTable::END_OF_POLYGON] = -1;
      for (std::size_t at = 0; at < chunk.active.size(); ++at) {
        const ActiveCell& active = chunk.active[at];
        const std::size_t cell = number * CHUNK + active.local;
        if (at + AHEAD < chunk.active.size()) cells.prefetch(number * CHUNK + chunk.active[at + AHEAD].local);
        cells.load(cell, nodes);
        if (active.isIrregular) {
          job.tracePolygons(cell, active, nodes, polygons);
          for (const NodeLoop& loop : polygons) {
            for (const NodeEdge& e : loop)
              *indices++ = static_cast<std::int32_t>(findEdge(job, e.first, e.second, nextFree));
            *indices++ = -1;
            output.inputCells.set(polygon++, cell);
          }
          continue;
        }
        const CaseTable& table = CaseTable::of(active.code);
        const CaseTable::Case& c = table[active.caseNumber];
        for (std::size_t i = 0; i < c.numEdges; ++i) {
          const std::array<std::uint8_t, 2>& ends = table.edge(c.edges[i]);
          const std::size_t a = nodes[ends[0]];
          const std::size_t b = nodes[ends[1]];
          edges[c.edges[i]] = static_cast<std::int32_t>(findEdge(job, std::min(a, b), std::max(a, b), nextFree));
        }
        const std::uint8_t* list = c.lists[active.isInverted].data();
        for (std::size_t i = 0; i < c.listSize; ++i)
          *indices++ = edges[list[i]];
        for (std::size_t i = 0; i < c.numPolygons; ++i)
          output.inputCells.set(polygon++, cell);
      }
    };
    job.withCells(walk);
  });
}

void EdgePolygoniser::placeVertices(Job& job) {
  std::vector<std::size_t> begins;
  begins.reserve(m_blockCounts.size());
  std::size_t numVertices = 0;
  for (std::size_t block = 0; block < m_blockCounts.size(); ++block) {
    begins.push_back(numVertices);
    numVertices += m_blockCounts[block];
  }
  const MeshView& mesh = job.mesh;
  SurfaceData& output = job.output;
  output.vertices.resize(3 * numVertices);
  output.weights.resize(numVertices);
  output.edgeBegins.resize(numVertices, mesh.endNode << mesh.slotBits);
  output.edgeEnds.resize(numVertices, mesh.endNode << mesh.slotBits);

  job.run.phase("place vertices", m_blockCounts.size(), [&](std::size_t block) {
    if (m_blockCounts[block] == 0) return;
    std::size_t vertex = begins[block];
    std::vector<std::uint32_t> list;
    const std::size_t end = std::min((block + 1) * NODE_BLOCK, m_heads.size());
    const auto walk = [&](const auto& values) {
      for (std::size_t node = block * NODE_BLOCK; node < end; ++node) {
        if (m_heads[node] == NONE) continue;
        list.clear();
        for (std::uint32_t e = m_heads[node]; e != NONE; e = m_edges[e].next)
          list.push_back(e);
        m_heads[node] = NONE;
        if (list.size() > 1)
          std::sort(list.begin(), list.end(),
                    [this](std::uint32_t x, std::uint32_t y) { return m_edges[x].key < m_edges[y].key; });
        for (const std::uint32_t e : list) {
          const std::size_t a = node << mesh.slotBits | static_cast<std::size_t>(m_edges[e].key >> KEY_SHIFT);
          const std::size_t b = static_cast<std::size_t>(m_edges[e].key & KEY_MASK);
          m_edges[e].vertex = static_cast<std::uint32_t>(vertex);
          KbVec3<double> p = mesh.points[a];
          double weight = 0.0;
          if (a != b) {
            const double va = values(a);
            weight = (job.isovalue - va) / (values(b) - va);
            p += (mesh.points[b] - p) * weight;
          }
          float* out = output.vertices.data() + 3 * vertex;
          out[0] = static_cast<float>(p[0]);
          out[1] = static_cast<float>(p[1]);
          out[2] = static_cast<float>(p[2]);
          output.weights[vertex] = static_cast<float>(weight);
          output.edgeBegins.set(vertex, a);
          output.edgeEnds.set(vertex, b);
          ++vertex;
        }
      }
    };
    std::visit(walk, job.field);
  });
}

void EdgePolygoniser::numberPolygons(Job& job) {
  Array<std::int32_t>& indices = job.output.indices;
  job.run.phase("number polygons", numBlocks(indices.size(), TRANSLATION), [&](std::size_t block) {
    const std::size_t end = std::min((block + 1) * TRANSLATION, indices.size());
    for (std::size_t i = block * TRANSLATION; i < end; ++i)
      if (indices[i] >= 0) indices[i] = static_cast<std::int32_t>(m_edges[static_cast<std::size_t>(indices[i])].vertex);
  });
}

} // namespace kx
