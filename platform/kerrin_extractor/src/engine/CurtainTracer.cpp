// SPDX-License-Identifier: BSD-3-Clause
#include "CurtainTracer.h"

#include "Blocks.h"

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 4096; // cells
constexpr std::size_t JOINT = std::size_t{1} << 62;
/// How near to a joint, in lengths of its segment, an edge counts as cut at the joint itself.
constexpr double AT_JOINT = 1e-12;

} // namespace

/// Cuts one cell after the other, with memory of its own.
class CurtainTracer::Cutter {
public:
  Cutter(const FlatMesh& mesh, const Curtain& curtain, std::vector<Piece>& pieces)
      : m_mesh(mesh)
      , m_curtain(curtain)
      , m_pieces(pieces) {}

  /// False when a position is not finite.
  bool cut(std::size_t cell, const CellNodeList& nodes) {
    const std::size_t n = nodes.numCorners;
    m_corners.resize(n);
    m_shadow.resize(n);
    m_values.resize(n);
    Curtain::Shadow box;
    for (std::size_t i = 0; i < n; ++i) {
      m_corners[i] = m_mesh.points[nodes.ids[i]];
      m_shadow[i] = m_curtain.project(m_corners[i]);
      box.add(m_shadow[i]);
    }
    if (!FaceCutter::isFinite(m_corners)) return false;
    m_segments.clear();
    m_curtain.findSegments(box, m_segments);
    if (m_segments.empty()) return true;
    const bool hasJoint =
        std::any_of(m_segments.begin(), m_segments.end(), [&](std::size_t s) { return m_curtain.hasJoint(s, box); });
    if (n > 3 && (hasJoint || !isConvexPolygon(m_corners) || isWarpedPolygon(m_corners))) {
      triangulatePolygon(m_corners, m_triangles);
    } else {
      m_triangles.clear();
    }
    for (const std::size_t segment : m_segments) {
      for (std::size_t i = 0; i < n; ++i)
        m_values[i] = m_curtain.side(segment, m_shadow[i]);
      if (m_triangles.empty()) cutPart(AllCorners{n}, 0, segment, cell, nodes);
      for (std::size_t t = 0; t < m_triangles.size(); ++t)
        cutPart(m_triangles[t], t, segment, cell, nodes);
    }
    return true;
  }

private:
  template <class Corners>
  void cutPart(const Corners& corners, std::size_t part, std::size_t segment, std::size_t cell,
               const CellNodeList& nodes) {
    cutConvexFace(corners, nodes.ids, m_values.data(), 0.0, [&](const NodeEdge& from, const NodeEdge& to) {
      Piece piece{makeEnd(segment, from), makeEnd(segment, to), cell};
      const double a = parameterOf(segment, piece.from);
      const double b = parameterOf(segment, piece.to);
      if (std::abs(a - b) <= AT_JOINT) {
        // The face is parallel to the direction. Only the segment that begins at a joint takes what lies on it.
        const double middle = 0.5 * (a + b);
        const bool isLast = segment + 1 == m_curtain.numSegments() && m_curtain.joint(segment + 1) != 0;
        if (middle >= 0.0 && (middle < 1.0 || (isLast && middle <= 1.0))) m_pieces.push_back(piece);
        return;
      }
      if (std::max(a, b) <= AT_JOINT || std::min(a, b) >= 1.0 - AT_JOINT) return;
      const End whole[2] = {piece.from, piece.to};
      const double parameters[2] = {a, b};
      End* ends[2] = {&piece.from, &piece.to};
      for (std::size_t e = 0; e < 2; ++e) {
        for (const double limit : {0.0, 1.0}) {
          const std::size_t joint = m_curtain.joint(segment + (limit > 0.0 ? 1 : 0));
          if (std::abs(parameters[e] - limit) <= AT_JOINT) {
            ends[e]->key.tag = 2 * joint + 1;
          } else if (limit > 0.0 ? parameters[e] > limit : parameters[e] < limit) {
            ends[e]->key = {{cell, part}, JOINT + joint};
            ends[e]->stencil = between(whole[0], whole[1], (limit - a) / (b - a), corners, nodes);
          }
        }
      }
      m_pieces.push_back(piece);
    });
  }

  /// Where a segment's line cuts an edge; the same from both sides of it.
  End makeEnd(std::size_t segment, const NodeEdge& edge) const {
    if (edge.a == edge.b) return {{edge, 0}, Stencil::node(edge.a)};
    const double fa = m_curtain.side(segment, m_curtain.project(m_mesh.points[edge.a]));
    const double fb = m_curtain.side(segment, m_curtain.project(m_mesh.points[edge.b]));
    return {{edge, 2 * segment}, Stencil::edge(edge.a, edge.b, fa / (fa - fb))};
  }
  double parameterOf(std::size_t segment, const End& end) const {
    return m_curtain.parameter(
        segment, m_curtain.project(end.stencil.valueAt([this](std::size_t id) { return m_mesh.points[id]; })));
  }

  /// A point between two ends on the edges of a triangle. (A face that is cut whole has no joint in its shadow, so that
  /// its pieces are never shortened.)
  template <class Corners>
  static Stencil between(const End& from, const End& to, double weight, const Corners& corners,
                         const CellNodeList& nodes) {
    Stencil result;
    for (std::size_t c = 0; c < 3; ++c) {
      result.nodes[c] = nodes.ids[corners[c]];
      for (std::size_t i = 0; i < 3; ++i) {
        if (from.stencil.nodes[i] == result.nodes[c]) result.weights[c] += (1.0 - weight) * from.stencil.weights[i];
        if (to.stencil.nodes[i] == result.nodes[c]) result.weights[c] += weight * to.stencil.weights[i];
      }
    }
    return result;
  }

  const FlatMesh& m_mesh;
  const Curtain& m_curtain;
  std::vector<Piece>& m_pieces;
  std::vector<KbVec3<double>> m_corners;
  std::vector<Curtain::Point> m_shadow;
  std::vector<double> m_values;
  std::vector<std::size_t> m_segments;
  std::vector<std::array<std::size_t, 3>> m_triangles;
};

void CurtainTracer::trace(Run& run, const FlatMesh& mesh, const Curtain& curtain, LineData& output,
                          std::vector<Stencil>& sources, Faults& faults) {
  std::vector<std::vector<Piece>> chunks(numBlocksOf(mesh.numCells, CHUNK));
  run.phase("cut", chunks.size(), [&](std::size_t number) {
    const std::size_t begin = number * CHUNK;
    const std::size_t end = std::min(begin + CHUNK, mesh.numCells);
    Cutter cutter(mesh, curtain, chunks[number]);
    CellNodeList nodes;
    const auto walk = [&](const auto& cells) {
      for (std::size_t cell = begin; cell < end; ++cell) {
        if (mesh.hasClosedCells() && !mesh.isOpen(cell)) continue;
        cells.load(cell, nodes);
        if (nodes.numCorners == 0)
          faults.add(Faults::UNREADABLE_CELL, cell);
        else if (!mesh.hasValidNodes(nodes))
          faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        else if (!cutter.cut(cell, nodes))
          faults.add(Faults::COORDINATE_NOT_FINITE, cell);
      }
    };
    std::visit(walk, mesh.cells);
  });
  run.phase("join", 1, [&](std::size_t) {
    std::size_t numPieces = 0;
    for (const std::vector<Piece>& pieces : chunks)
      numPieces += pieces.size();
    Numbers<Key> numbers;
    numbers.reset(numPieces);
    sources.clear();
    output.indices.resize(3 * numPieces);
    output.inputCells.resize(numPieces, mesh.numCells);
    const auto vertexOf = [&](const End& end) {
      const std::size_t vertex = numbers.numberOf(end.key);
      if (vertex == sources.size()) sources.push_back(end.stencil);
      return vertex;
    };
    std::size_t segment = 0;
    for (const std::vector<Piece>& pieces : chunks) {
      for (const Piece& piece : pieces) {
        const std::size_t from = vertexOf(piece.from);
        output.setSegment(segment, from, vertexOf(piece.to));
        output.inputCells.set(segment++, piece.cell);
      }
    }
    output.vertices.resize(3 * sources.size());
    for (std::size_t v = 0; v < sources.size(); ++v) {
      const KbVec3<double> p = sources[v].valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
      setPosition(output.vertices, v, p);
    }
  });
}

} // namespace kx
