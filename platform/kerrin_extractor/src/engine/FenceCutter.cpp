// SPDX-License-Identifier: BSD-3-Clause
#include "FenceCutter.h"

#include "Blocks.h"
#include "CaseTable.h"
#include "CellGeometry.h"
#include "FaceCutter.h"
#include "FinitePosition.h"

#include "src/contract/CellFaces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <tuple>
#include <utility>

namespace kx {
namespace {

constexpr std::size_t PLACING_STEP = 4096; // vertices

/// A weight along an edge, whatever rounding has made of it.
double asWeight(double w) { return w >= 0.0 ? std::min(w, 1.0) : 0.0; }

int signOf(double v) { return v > 0.0 ? 1 : v < 0.0 ? -1 : 0; }

} // namespace

/// Cuts one cell after the other, with memory of its own.
class FenceCutter::CellCutter {
public:
  enum Result { DONE, NOT_FINITE, NOT_CLOSED, SKIPPED };

  CellCutter(const MeshView& mesh, const Curtain& curtain, Pieces& pieces)
      : m_mesh(mesh)
      , m_curtain(curtain)
      , m_pieces(pieces) {}

  /// Cuts a cell by those of the segments that meet it. Skips cells that cannot be read.
  template <class Cells>
  Result cut(const Cells& cells, std::size_t cell, const std::vector<std::size_t>& segments) {
    CellNodes nodes;
    m_code = cells.load(cell, nodes);
    if (m_code < POLYHEDRON)
      m_ids.assign(nodes.begin(), nodes.begin() + NUM_CORNERS[m_code]);
    else if (m_code == UNREADABLE || !m_mesh.loadPolyhedron(cell, m_faces, m_ids))
      return SKIPPED;
    for (const std::size_t id : m_ids)
      if (!m_mesh.hasNode(id >> m_mesh.slotBits)) return SKIPPED;

    m_corners.resize(m_ids.size());
    m_places.resize(m_ids.size());
    Curtain::Shadow shadow;
    bool areFinite = true;
    for (std::size_t i = 0; i < m_ids.size(); ++i) {
      m_corners[i] = m_mesh.points[m_ids[i]];
      m_places[i] = m_curtain.project(m_corners[i]);
      areFinite = areFinite && isFinite(m_corners[i]);
      shadow.add(m_places[i]);
    }
    if (!areFinite) return NOT_FINITE;

    bool hasFaces = false;
    for (const std::size_t segment : segments) {
      if (!m_curtain.meets(segment, shadow) || !evaluate(segment)) continue;
      if (!hasFaces) loadFaces();
      hasFaces = true;
      findTraces(segment);
      if (!cutBySegment(segment, cell)) return NOT_CLOSED;
    }
    return DONE;
  }

private:
  static constexpr std::size_t NO_TRACE = static_cast<std::size_t>(-1);

  /// Where the segment's plane cuts a face: from one cut edge to another, each given as inside and outside end.
  struct Trace {
    LocalEdge from;
    LocalEdge to;
    std::optional<std::array<std::size_t, 3>> triangle; ///< local corners, where it lies on one
    bool isUsed = false;
  };
  struct Vertex {
    Key key;
    std::array<int, 2> place; ///< before (-1), at or behind (1) the segment's begin and end
    std::size_t trace;        ///< that leads to the next vertex
  };
  using Polygon = std::vector<Vertex>;

  /// The corners' distances from the segment's plane, up to a factor; false when the cell lies on one side of it, or
  /// before or behind the whole segment.
  bool evaluate(std::size_t segment) {
    const Curtain::Point& begin = m_curtain.begin(segment);
    const Curtain::Point& end = m_curtain.end(segment);
    m_along = end - begin;
    const double room = m_curtain.tolerance() * std::sqrt(m_along.dot(m_along));
    const auto isAt = [&](const Curtain::Point& p, const Curtain::Point& joint) {
      return (p - joint).dot(p - joint) <= m_curtain.tolerance() * m_curtain.tolerance();
    };
    m_values.resize(m_ids.size());
    m_atJoint.resize(m_ids.size());
    std::size_t numInside = 0;
    std::size_t numBefore = 0;
    std::size_t numBehind = 0;
    for (std::size_t i = 0; i < m_ids.size(); ++i) {
      const Curtain::Point& p = m_places[i];
      m_atJoint[i] = {isAt(p, begin), isAt(p, end)};
      const double value = m_along.cross(p - begin);
      m_values[i] = m_atJoint[i][0] || m_atJoint[i][1] || std::abs(value) <= room ? 0.0 : value;
      numInside += m_values[i] >= 0.0;
      numBefore += m_along.dot(p - begin) < -room;
      numBehind += m_along.dot(p - end) > room;
    }
    const std::size_t n = m_ids.size();
    return numInside > 0 && numInside < n && numBefore < n && numBehind < n;
  }

  void loadFaces() {
    if (m_code == POLYHEDRON) {
      m_isInverted = signedSize(m_faces, m_corners) < 0.0;
      return;
    }
    std::array<KbVec3<double>, 8> corners;
    std::copy(m_corners.begin(), m_corners.end(), corners.begin());
    m_isInverted = signedSize(m_code, corners) < 0.0;
    const CellFaces& table = CELL_FACES[m_code];
    m_faces.resize(table.numFaces);
    for (std::size_t f = 0; f < m_faces.size(); ++f)
      m_faces[f].assign(table.faces[f].corners.begin(), table.faces[f].corners.begin() + table.faces[f].numCorners);
  }

  void findTraces(std::size_t segment) {
    m_traces.clear();
    for (const std::vector<std::size_t>& face : m_faces) {
      const std::size_t n = face.size();
      if (n < 3) continue;
      std::size_t numRuns = 0; // of inside corners
      for (std::size_t i = 0; i < n; ++i)
        numRuns += m_values[face[i]] >= 0.0 && !(m_values[face[i > 0 ? i - 1 : n - 1]] >= 0.0);
      if (numRuns == 0) continue;
      if (n == 3) {
        traceFace(face, std::array{face[0], face[1], face[2]});
      } else if (numRuns > 1 || hasJointWithin(segment, face)) { // a plane cuts a convex, flat face once
        for (const std::array<std::size_t, 3>& triangle : trianglesOf(face))
          traceFace(triangle, triangle);
      } else {
        traceFace(face, std::nullopt);
      }
    }
  }

  bool hasJointWithin(std::size_t segment, const std::vector<std::size_t>& face) const {
    Curtain::Shadow shadow;
    for (const std::size_t corner : face)
      shadow.add(m_places[corner]);
    return m_curtain.hasJoint(segment, shadow) && !isSeenEdgeOn(face);
  }

  /// Whether the direction lies in a face: a plane cuts it along the direction then, and no joint between the ends.
  bool isSeenEdgeOn(const std::vector<std::size_t>& face) const {
    const auto [first, last] = std::minmax_element(face.begin(), face.end(), [this](std::size_t x, std::size_t y) {
      return std::tie(m_places[x].x, m_places[x].y) < std::tie(m_places[y].x, m_places[y].y);
    });
    const Curtain::Point& origin = m_places[*first];
    const Curtain::Point along = m_places[*last] - origin;
    const double room = m_curtain.tolerance() * std::sqrt(along.dot(along));
    return std::all_of(face.begin(), face.end(),
                       [&](std::size_t corner) { return std::abs(along.cross(m_places[corner] - origin)) <= room; });
  }

  /// The triangles of a face, the same for both cells that share it.
  const std::vector<std::array<std::size_t, 3>>& trianglesOf(const std::vector<std::size_t>& face) {
    const std::size_t n = face.size();
    std::size_t first = 0;
    for (std::size_t i = 1; i < n; ++i)
      if (m_ids[face[i]] < m_ids[face[first]]) first = i;
    const bool isReversed = m_ids[face[(first + n - 1) % n]] < m_ids[face[(first + 1) % n]];
    const auto cornerAt = [&](std::size_t i) { return face[(first + (isReversed ? n - i : i)) % n]; };
    m_faceCorners.resize(n);
    for (std::size_t i = 0; i < n; ++i)
      m_faceCorners[i] = m_corners[cornerAt(i)];
    triangulatePolygon(m_faceCorners, m_triangles);
    for (std::array<std::size_t, 3>& triangle : m_triangles) {
      triangle = {cornerAt(triangle[0]), cornerAt(triangle[1]), cornerAt(triangle[2])};
      if (isReversed) std::swap(triangle[1], triangle[2]);
    }
    return m_triangles;
  }

  /// Every run of inside corners around a face is cut off by one segment.
  template <class Corners>
  void traceFace(const Corners& corners, const std::optional<std::array<std::size_t, 3>>& triangle) {
    const std::size_t n = corners.size();
    const auto isInside = [&](std::size_t i) { return m_values[corners[i]] >= 0.0; };
    for (std::size_t before = 0; before < n; ++before) {
      const std::size_t first = (before + 1) % n;
      if (isInside(before) || !isInside(first)) continue;
      std::size_t last = first;
      while (isInside((last + 1) % n))
        last = (last + 1) % n;
      m_traces.push_back(
          {{corners[first], corners[before]}, {corners[last], corners[(last + 1) % n]}, triangle, false});
    }
  }

  /// False when the traces don't close.
  bool cutBySegment(std::size_t segment, std::size_t cell) {
    Polygon loop;
    for (Trace& start : m_traces) {
      if (start.isUsed) continue;
      loop.clear();
      for (Trace* trace = &start;;) {
        trace->isUsed = true;
        loop.push_back(vertexOf(trace->from, segment, static_cast<std::size_t>(trace - m_traces.data())));
        if (trace->to == start.from) break;
        const auto next = std::find_if(m_traces.begin(), m_traces.end(),
                                       [&](const Trace& t) { return !t.isUsed && t.from == trace->to; });
        if (next == m_traces.end()) return false;
        trace = &*next;
      }
      m_whole.clear();
      splitLoop(loop);
      m_fromBegin.clear();
      for (const Polygon& polygon : m_whole)
        clip(polygon, segment, 0, m_fromBegin);
      m_clipped.clear();
      for (const Polygon& polygon : m_fromBegin)
        clip(polygon, segment, 1, m_clipped);
      for (const Polygon& polygon : m_clipped)
        keep(polygon, cell);
    }
    return true;
  }

  Vertex vertexOf(const LocalEdge& edge, std::size_t segment, std::size_t trace) const {
    const std::size_t in = edge.a;
    const std::size_t out = edge.b;
    const std::array<const Curtain::Point*, 2> joints{&m_curtain.begin(segment), &m_curtain.end(segment)};
    Vertex vertex{{}, {}, trace};
    if (m_values[in] == 0.0) {
      for (std::size_t j = 0; j < 2; ++j)
        vertex.place[j] = m_atJoint[in][j] ? 0 : signOf(m_along.dot(m_places[in] - *joints[j]));
      vertex.key = {m_ids[in], m_ids[in], m_ids[in], 0};
      return vertex;
    }
    const bool isAscending = m_ids[in] < m_ids[out];
    const std::size_t a = isAscending ? in : out;
    const std::size_t b = isAscending ? out : in;
    vertex.key = {m_ids[a], m_ids[b], m_ids[b], bySegment(segment)};
    const Curtain::Point ab = m_places[b] - m_places[a];
    const double room = m_curtain.tolerance() * std::sqrt(ab.dot(ab));
    for (std::size_t j = 0; j < 2; ++j) {
      // A joint to the left of the way from inside to outside is behind the point where the segment cuts the edge.
      const double side = ab.cross(*joints[j] - m_places[a]);
      if (std::abs(side) > room)
        vertex.place[j] = (side > 0.0) == isAscending ? -1 : 1;
      else
        vertex.key.cut = byJoint(m_curtain.joint(segment + j));
    }
    return vertex;
  }

  /// Brings a loop whose vertices may coincide to proper polygons: a loop that touches itself falls apart, and what has
  /// fewer than three corners is dropped.
  void splitLoop(const Polygon& loop) {
    Polygon open;
    for (const Vertex& vertex : loop) {
      const auto seen =
          std::find_if(open.begin(), open.end(), [&](const Vertex& other) { return other.key == vertex.key; });
      if (seen == open.end()) {
        open.push_back(vertex);
        continue;
      }
      if (open.end() - seen >= 3) m_whole.emplace_back(seen, open.end());
      seen->trace = vertex.trace; // the way goes on from here
      open.erase(seen + 1, open.end());
    }
    if (open.size() >= 3) m_whole.push_back(std::move(open));
  }

  /// Where the way between two vertices passes the line through a joint.
  Vertex crossing(const Vertex& from, const Vertex& to, std::size_t segment, std::size_t which) const {
    Vertex vertex = from;
    vertex.place = which == 0 ? std::array{0, -1} : std::array{1, 0};
    const std::size_t cut = byJoint(m_curtain.joint(segment + which));
    if (from.key.isNode() && to.key.isNode()) {
      const auto [a, b] = std::minmax(from.key.a, to.key.a);
      vertex.key = {a, b, b, cut};
    } else if (from.trace != NO_TRACE && m_traces[from.trace].triangle) {
      std::array<std::size_t, 3> ids;
      for (std::size_t c = 0; c < 3; ++c)
        ids[c] = m_ids[(*m_traces[from.trace].triangle)[c]];
      std::sort(ids.begin(), ids.end());
      vertex.key = {ids[0], ids[1], ids[2], cut};
    }
    return vertex;
  }

  /// Appends what of a polygon lies behind the segment's begin (`which` 0) or before its end (1).
  void clip(const Polygon& polygon, std::size_t segment, std::size_t which, std::vector<Polygon>& result) const {
    const auto depth = [which](const Vertex& v) { return which == 0 ? v.place[0] : -v.place[1]; };
    const std::size_t n = polygon.size();
    const auto isInside = [&](const Vertex& v) { return depth(v) > 0; };
    if (std::none_of(polygon.begin(), polygon.end(), isInside)) return;
    const auto outside = std::find_if(polygon.begin(), polygon.end(), [&](const Vertex& v) { return depth(v) < 0; });
    if (outside == polygon.end()) {
      result.push_back(polygon);
      return;
    }
    // Chains of what stays, each from the line to the line.
    std::vector<Polygon> chains;
    Polygon chain;
    const auto start = static_cast<std::size_t>(outside - polygon.begin());
    for (std::size_t i = 1; i <= n; ++i) {
      const Vertex& last = polygon[(start + i - 1) % n];
      const Vertex& vertex = polygon[(start + i) % n];
      if (depth(vertex) >= 0) {
        if (depth(last) < 0 && depth(vertex) > 0) chain.push_back(crossing(last, vertex, segment, which));
        chain.push_back(vertex);
      } else if (depth(last) >= 0) {
        if (depth(last) > 0) chain.push_back(crossing(last, vertex, segment, which));
        chain.back().trace = NO_TRACE;
        if (std::any_of(chain.begin(), chain.end(), isInside)) chains.push_back(chain);
        chain.clear();
      }
    }
    if (chains.size() > 1) joinChains(chains);
    for (Polygon& closed : chains)
      if (closed.size() >= 3) result.push_back(std::move(closed));
  }

  /// A polygon that is not convex may leave several chains: along the line, its inside lies between every other pair of
  /// their ends.
  void joinChains(std::vector<Polygon>& chains) const {
    struct End {
      double height;
      std::size_t chain;
      bool isLast;
    };
    std::vector<End> ends;
    for (std::size_t c = 0; c < chains.size(); ++c)
      for (const bool isLast : {false, true}) {
        const Key& key = (isLast ? chains[c].back() : chains[c].front()).key;
        const KbVec3<double> p =
            stencilOf(m_mesh, m_curtain, key).valueAt([this](std::size_t id) { return m_mesh.points[id]; });
        ends.push_back({m_curtain.height(p), c, isLast});
      }
    std::sort(ends.begin(), ends.end(), [](const End& x, const End& y) {
      return std::tie(x.height, x.chain, x.isLast) < std::tie(y.height, y.chain, y.isLast);
    });
    std::vector<std::size_t> next(chains.size());
    for (std::size_t e = 0; e < ends.size(); e += 2) {
      const End& x = ends[e];
      const End& y = ends[e + 1];
      if (x.isLast == y.isLast) return; // rounding has mixed them up: each chain is closed by itself
      next[x.isLast ? x.chain : y.chain] = x.isLast ? y.chain : x.chain;
    }
    std::vector<Polygon> joined;
    std::vector<bool> isUsed(chains.size(), false);
    for (std::size_t c = 0; c < chains.size(); ++c) {
      if (isUsed[c]) continue;
      joined.emplace_back();
      for (std::size_t part = c; !isUsed[part]; part = next[part]) {
        isUsed[part] = true;
        joined.back().insert(joined.back().end(), chains[part].begin(), chains[part].end());
      }
    }
    chains = std::move(joined);
  }

  void keep(const Polygon& polygon, std::size_t cell) {
    for (std::size_t i = 0; i < polygon.size(); ++i)
      m_pieces.corners.push_back(polygon[m_isInverted ? polygon.size() - 1 - i : i].key);
    m_pieces.sizes.push_back(static_cast<std::uint32_t>(polygon.size()));
    m_pieces.cells.push_back(cell);
  }

  const MeshView& m_mesh;
  const Curtain& m_curtain;
  Pieces& m_pieces;

  // The cell.
  CellCode m_code = UNREADABLE;
  bool m_isInverted = false;
  std::vector<std::size_t> m_ids;
  std::vector<KbVec3<double>> m_corners;
  std::vector<Curtain::Point> m_places;
  std::vector<std::vector<std::size_t>> m_faces;
  // The segment.
  Curtain::Point m_along{};
  std::vector<double> m_values;
  std::vector<std::array<bool, 2>> m_atJoint;
  std::vector<Trace> m_traces;
  std::vector<KbVec3<double>> m_faceCorners;
  std::vector<std::array<std::size_t, 3>> m_triangles;
  std::vector<Polygon> m_whole;
  std::vector<Polygon> m_fromBegin;
  std::vector<Polygon> m_clipped;
};

Stencil FenceCutter::stencilOf(const MeshView& mesh, const Curtain& curtain, const Key& key) {
  if (key.isNode()) return Stencil::node(key.a);
  const Curtain::Point a = curtain.project(mesh.points[key.a]);
  const Curtain::Point b = curtain.project(mesh.points[key.b]);
  if (key.cut % 2 != 0) {
    const double atA = curtain.side((key.cut - 1) / 2, a);
    const double atB = curtain.side((key.cut - 1) / 2, b);
    return Stencil::edge(key.a, key.b, asWeight(atA / (atA - atB)));
  }
  const Curtain::Point& joint = curtain.jointPoint((key.cut - 2) / 2);
  if (key.b == key.c) return Stencil::edge(key.a, key.b, asWeight((joint - a).dot(b - a) / (b - a).dot(b - a)));
  const Curtain::Point c = curtain.project(mesh.points[key.c]);
  const double size = (b - a).cross(c - a);
  std::array<double, 3> weights{asWeight((b - joint).cross(c - joint) / size),
                                asWeight((c - joint).cross(a - joint) / size),
                                asWeight((a - joint).cross(b - joint) / size)};
  const double sum = weights[0] + weights[1] + weights[2];
  if (!(sum > 0.0)) return Stencil::node(key.a);
  return {{key.a, key.b, key.c}, {weights[0] / sum, weights[1] / sum, weights[2] / sum}};
}

void FenceCutter::cut(Run& run, const MeshView& mesh, const Curtain& curtain, SurfaceData& output,
                      std::vector<Stencil>& sources, Faults& faults) {
  m_boxes.update(run, mesh, faults);

  std::vector<Pieces> chunks(m_boxes.numChunks());
  run.phase("cut", chunks.size(), [&](std::size_t chunk) {
    std::vector<std::size_t> segments;
    curtain.findSegments(curtain.project(m_boxes.chunk(chunk)), segments);
    if (segments.empty()) return;
    CellCutter cutter(mesh, curtain, chunks[chunk]);
    m_boxes.forEachRun(mesh, chunk, [&](const Box& box, std::size_t begin, std::size_t end) {
      segments.clear();
      curtain.findSegments(curtain.project(box), segments);
      if (segments.empty()) return;
      std::visit(
          [&](const auto& cells) {
            for (std::size_t cell = begin; cell < end; ++cell) {
              if (mesh.hasClosedCells() && !mesh.isOpen(cell)) continue;
              const CellCutter::Result result = cutter.cut(cells, cell, segments);
              if (result == CellCutter::NOT_FINITE) faults.add(Faults::COORDINATE_NOT_FINITE, cell);
              if (result == CellCutter::NOT_CLOSED) faults.add(Faults::OPEN_POLYHEDRON, cell);
            }
          },
          mesh.cells);
    });
  });

  std::vector<Key> keys;
  run.phase("connect", 1, [&](std::size_t) {
    std::size_t numCorners = 0;
    std::size_t numPolygons = 0;
    for (const Pieces& pieces : chunks) {
      numCorners += pieces.corners.size();
      numPolygons += pieces.sizes.size();
    }
    if (numCorners + numPolygons > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
      faults.post("the surface needs " + std::to_string(numCorners + numPolygons) +
                  " indices, more than 32 bits address; it is empty");
      chunks.clear();
      numCorners = numPolygons = 0;
    }
    output.indices.resize(numCorners + numPolygons);
    output.inputCells.resize(numPolygons, mesh.numCells);
    Numbers<Key> numbers;
    numbers.reset(numCorners / 3);
    std::int32_t* index = output.indices.data();
    std::size_t polygon = 0;
    for (Pieces& pieces : chunks) {
      const Key* corner = pieces.corners.data();
      for (std::size_t p = 0; p < pieces.sizes.size(); ++p) {
        for (std::size_t i = 0; i < pieces.sizes[p]; ++i)
          *index++ = static_cast<std::int32_t>(numbers.numberOf(*corner++));
        *index++ = -1;
        output.inputCells.set(polygon++, pieces.cells[p]);
      }
      pieces = {};
    }
    keys = numbers.keys();
  });

  sources.resize(keys.size());
  output.vertices.resize(3 * keys.size());
  output.edgeBegins.resize(0, 0);
  output.edgeEnds.resize(0, 0);
  output.weights.resize(0);
  run.phase("place vertices", numBlocksOf(keys.size(), PLACING_STEP), [&](std::size_t step) {
    for (std::size_t v = step * PLACING_STEP; v < std::min((step + 1) * PLACING_STEP, keys.size()); ++v) {
      sources[v] = stencilOf(mesh, curtain, keys[v]);
      const KbVec3<double> p = sources[v].valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
      setPosition(output.vertices, v, p);
    }
  });
}

} // namespace kx
