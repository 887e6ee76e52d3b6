// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellForm.h"
#include "NodeBlends.h"
#include "Numbers.h"

#include <KerrinExtractor/KiTessellator.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace kx {

/// Values at the nodes of a mesh that a subdivision follows besides the geometry.
struct SplitField {
  const double* values;
  const double* spreads; ///< the greatest difference of values within a cell at the node
};

/// Subdivides cells, given as lines, triangles or tetrahedra over their corners, by bisecting one edge after the other
/// until the tessellator is content.
///
/// A simplex is bisected at the longest of its edges that have to be split (M.-C. Rivara, Int. J. Numer. Meth. Eng. 20,
/// 1984). Whether an edge is split, where its middle lies and how edges compare with each other depends on its two ends
/// alone, down to the last bit; so cells that share a face or an edge subdivide it the same way, in any order, on any
/// thread and in another splitter. Nodes are numbered in the order in which they are met; `numberNodes` brings the
/// numbers of several splitters together.
class EdgeSplitter {
public:
  static constexpr std::uint32_t NO_NODE = 0xffffffffu;

  /// A node of a subdivision and its position in the cell.
  struct Vertex {
    std::uint32_t node;
    KbVec3<double> position;
  };

  EdgeSplitter(const KiTessellator& tessellator, const PointView& points, const SplitField* field = nullptr)
      : m_tessellator(tessellator)
      , m_maxDepth(tessellator.getMaxDepth())
      , m_points(points)
      , m_field(field) {}

  /// The vertex of a corner.
  Vertex corner(const CellForm& cell, std::size_t local) {
    return {nodeOf(cell.nodes[local], 0), cell.position(local)};
  }
  /// The middle of an edge, `NO_NODE` for an edge that stays whole.
  std::uint32_t middleOf(const CellForm& cell, const Vertex& a, const Vertex& b);
  /// Calls `emit(simplex)` for the parts of a simplex of a cell; those of a line from begin to end.
  template <std::size_t N, class Emit>
  void refine(const CellForm& cell, const std::array<Vertex, N>& simplex, const Emit& emit) {
    Middles<N> middles;
    for (std::size_t i = 0; i < N; ++i)
      for (std::size_t j = i + 1; j < N; ++j)
        middles[i][j] = middleOf(cell, simplex[i], simplex[j]);
    bisect(cell, simplex, middles, emit);
  }

  std::size_t numNodes() const { return m_nodes.size(); }
  const KbVec3<double>& position(std::uint32_t node) const { return m_nodes[node].position; }
  /// Forgets all that is needed to go on, but not the nodes.
  void finish();

  /// Gives the added nodes of a splitter their ids in `blends`; `known` holds the edges of those that have one.
  /// Returns the id of every node of the splitter.
  using KnownEdges = EdgeMiddles;
  std::vector<std::size_t> numberNodes(KnownEdges& known, NodeBlends& blends) const;

private:
  struct Node {
    std::size_t id;
    std::uint64_t key; ///< tells nodes apart in all splitters alike
    KbVec3<double> position;
    double value;
    double spread;
    std::array<std::uint32_t, 2> parents;
    std::uint32_t level;
    std::uint32_t numBlended;
    std::size_t firstBlended;
  };
  struct Edge {
    std::uint32_t a;
    std::uint32_t b;
    friend bool operator==(const Edge&, const Edge&) = default;
    friend std::uint64_t hashOf(const Edge& edge) {
      return mixHash(0, static_cast<std::uint64_t>(edge.a) << 32 | edge.b);
    }
  };
  struct MeshNode {
    std::size_t id;
    friend bool operator==(const MeshNode&, const MeshNode&) = default;
    friend std::uint64_t hashOf(const MeshNode& node) { return mixHash(0, node.id); }
  };

  /// Of the edges from a vertex of a simplex to one with a greater number.
  template <std::size_t N>
  using Middles = std::array<std::array<std::uint32_t, N>, N>;

  template <std::size_t N, class Emit>
  void bisect(const CellForm& cell, const std::array<Vertex, N>& simplex, const Middles<N>& middles, const Emit& emit) {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::uint32_t middle = NO_NODE;
    for (std::size_t i = 0; i < N; ++i)
      for (std::size_t j = i + 1; j < N; ++j) {
        if (middles[i][j] == NO_NODE) continue;
        if (middle != NO_NODE && !isBefore(simplex[i], simplex[j], simplex[begin], simplex[end])) continue;
        begin = i;
        end = j;
        middle = middles[i][j];
      }
    if (middle == NO_NODE) {
      emit(simplex);
      return;
    }
    const Vertex vertex{middle, (simplex[begin].position + simplex[end].position) * 0.5};
    for (const std::size_t replaced : {end, begin}) {
      std::array<Vertex, N> half = simplex;
      Middles<N> known = middles; // but for the edges of the new vertex
      half[replaced] = vertex;
      for (std::size_t i = 0; i < N; ++i)
        if (i != replaced) known[std::min(i, replaced)][std::max(i, replaced)] = middleOf(cell, half[i], vertex);
      bisect(cell, half, known, emit);
    }
  }
  std::uint32_t nodeOf(std::size_t id, std::uint32_t level);
  std::uint32_t addNode(const Edge& edge, const KbVec3<double>& position, double value, std::uint32_t level);
  /// The order in which edges are split.
  bool isBefore(const Vertex& a, const Vertex& b, const Vertex& c, const Vertex& d) const;

  const KiTessellator& m_tessellator;
  std::size_t m_maxDepth;
  const PointView& m_points;
  const SplitField* m_field;
  std::vector<Node> m_nodes;
  std::vector<std::size_t> m_blendedNodes;
  std::vector<double> m_blendedWeights;
  Numbers<MeshNode> m_meshNodes;
  std::vector<std::uint32_t> m_nodesOfMesh; ///< by the number of the mesh node
  Numbers<Edge> m_edges;
  std::vector<std::uint32_t> m_middles; ///< by the number of the edge
  Blend m_blend;
};

} // namespace kx
