// SPDX-License-Identifier: BSD-3-Clause
#include "EdgeSplitter.h"

#include <algorithm>

namespace kx {

std::uint32_t EdgeSplitter::nodeOf(std::size_t id, std::uint32_t level) {
  const std::size_t number = m_meshNodes.numberOf({id});
  if (number < m_nodesOfMesh.size()) return m_nodesOfMesh[number];
  const auto node = static_cast<std::uint32_t>(m_nodes.size());
  m_nodes.push_back({id,
                     mixHash(1, id),
                     m_points[id],
                     m_field ? m_field->values[id] : 0.0,
                     m_field ? m_field->spreads[id] : 0.0,
                     {NO_NODE, NO_NODE},
                     level,
                     0,
                     0});
  m_nodesOfMesh.push_back(node);
  return node;
}

std::uint32_t EdgeSplitter::addNode(const Edge& edge, const KbVec3<double>& position, double value,
                                    std::uint32_t level) {
  const Node& a = m_nodes[edge.a];
  const Node& b = m_nodes[edge.b];
  const Node node{EdgeMiddles::NONE,
                  mixHash(mixHash(2, std::min(a.key, b.key)), std::max(a.key, b.key)),
                  position,
                  value,
                  std::min(a.spread, b.spread),
                  {edge.a, edge.b},
                  level,
                  static_cast<std::uint32_t>(m_blend.count),
                  m_blendedNodes.size()};
  const auto count = static_cast<std::ptrdiff_t>(m_blend.count);
  m_blendedNodes.insert(m_blendedNodes.end(), m_blend.nodes.begin(), m_blend.nodes.begin() + count);
  m_blendedWeights.insert(m_blendedWeights.end(), m_blend.weights.begin(), m_blend.weights.begin() + count);
  m_nodes.push_back(node);
  return static_cast<std::uint32_t>(m_nodes.size() - 1);
}

std::uint32_t EdgeSplitter::middleOf(const CellForm& cell, const Vertex& a, const Vertex& b) {
  if (a.node == b.node) return NO_NODE;
  const Edge edge{std::min(a.node, b.node), std::max(a.node, b.node)};
  const std::size_t number = m_edges.numberOf(edge);
  const std::uint32_t level = std::max(m_nodes[a.node].level, m_nodes[b.node].level);
  if (number < m_middles.size()) {
    // Levels grow with every bisection, which ends it even where a mesh has a node in the middle of its own half.
    const std::uint32_t known = m_middles[number];
    return known != NO_NODE && m_nodes[known].level > level ? known : NO_NODE;
  }
  m_middles.push_back(NO_NODE);
  if (level >= m_maxDepth) return NO_NODE;
  cell.blendAt((a.position + b.position) * 0.5, m_blend);
  const KbVec3<double> position = m_blend.valueAt([this](std::size_t id) { return m_points[id]; });
  const double value = m_field ? m_blend.valueAt([this](std::size_t id) { return m_field->values[id]; }) : 0.0;
  const bool isInOrder = m_nodes[a.node].key < m_nodes[b.node].key;
  const Node& first = m_nodes[isInOrder ? a.node : b.node];
  const Node& last = m_nodes[isInOrder ? b.node : a.node];
  const bool isSplit = m_tessellator.isEdgeSplit(first.position, position, last.position, level) ||
                       (m_field && m_tessellator.isEdgeSplitByValue(first.value, value, last.value,
                                                                    std::min(first.spread, last.spread)));
  if (!isSplit) return NO_NODE;
  const std::uint32_t middle =
      m_blend.count == 1 ? nodeOf(m_blend.nodes[0], level + 1) : addNode(edge, position, value, level + 1);
  if (middle == a.node || middle == b.node) return NO_NODE;
  m_nodes[middle].level = std::max(m_nodes[middle].level, level + 1); // it may be a corner elsewhere
  m_middles[number] = middle;
  return middle;
}

bool EdgeSplitter::isBefore(const Vertex& a, const Vertex& b, const Vertex& c, const Vertex& d) const {
  const Node& na = m_nodes[a.node];
  const Node& nb = m_nodes[b.node];
  const Node& nc = m_nodes[c.node];
  const Node& nd = m_nodes[d.node];
  const double first = (na.position - nb.position).squaredLength();
  const double second = (nc.position - nd.position).squaredLength();
  if (first != second) return first > second;
  return std::minmax(na.key, nb.key) < std::minmax(nc.key, nd.key);
}

void EdgeSplitter::finish() {
  m_meshNodes = {};
  m_nodesOfMesh = {};
  m_edges = {};
  m_middles = {};
}

std::vector<std::size_t> EdgeSplitter::numberNodes(KnownEdges& known, NodeBlends& blends) const {
  std::vector<std::size_t> ids;
  ids.reserve(m_nodes.size());
  for (const Node& node : m_nodes) {
    if (node.id != EdgeMiddles::NONE) {
      ids.push_back(node.id);
      continue;
    }
    const std::array<std::size_t, 2> parents{ids[node.parents[0]], ids[node.parents[1]]};
    std::size_t id = known.find(parents[0], parents[1]);
    if (id == EdgeMiddles::NONE) {
      id = blends.endId();
      known.add(parents[0], parents[1], id);
      blends.add(node.position, parents, m_blendedNodes.data() + node.firstBlended,
                 m_blendedWeights.data() + node.firstBlended, node.numBlended);
    }
    ids.push_back(id);
  }
  return ids;
}

} // namespace kx
