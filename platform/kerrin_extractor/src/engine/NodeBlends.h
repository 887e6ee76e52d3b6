// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellForm.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace kx {

/// Points as weighted means of any number of nodes.
class BlendList {
public:
  std::size_t size() const { return m_begins.size() - 1; }
  void clear() { *this = {}; }
  template <class Node, class Weight>
  void add(const Node* nodes, const Weight* weights, std::size_t count) {
    m_nodes.insert(m_nodes.end(), nodes, nodes + count);
    m_weights.insert(m_weights.end(), weights, weights + count);
    m_begins.push_back(m_nodes.size());
  }
  void add(const Blend& blend) { add(blend.nodes.data(), blend.weights.data(), blend.count); }

  template <class Values>
  auto valueAt(const Values& values, std::size_t point) const {
    decltype(values(point)) sum(0.0);
    for (std::size_t i = m_begins[point]; i < m_begins[point + 1]; ++i)
      sum += values(m_nodes[i]) * m_weights[i];
    return sum;
  }

  template <class Visit>
  void visit(std::size_t point, const Visit& visitNode) const {
    for (std::size_t i = m_begins[point]; i < m_begins[point + 1]; ++i)
      visitNode(m_nodes[i], m_weights[i]);
  }

private:
  std::vector<std::size_t> m_begins{0};
  std::vector<std::size_t> m_nodes;
  std::vector<double> m_weights;
};

/// The nodes that a subdivision has added to those of a mesh. Their ids go on where those of the mesh end.
class NodeBlends {
public:
  /// Without an id nothing is added.
  explicit NodeBlends(std::size_t firstId = static_cast<std::size_t>(-1))
      : m_firstId(firstId) {}

  std::size_t firstId() const { return m_firstId; }
  std::size_t endId() const { return m_firstId + m_positions.size(); }
  bool isAdded(std::size_t id) const { return id >= m_firstId; }
  const KbVec3<double>& position(std::size_t id) const { return m_positions[id - m_firstId]; }
  /// The ends of the edge that an added node lies in the middle of.
  const std::array<std::size_t, 2>& parents(std::size_t id) const { return m_parents[id - m_firstId]; }

  /// The value at any node.
  template <class Values>
  auto valueAt(const Values& values, std::size_t id) const {
    return isAdded(id) ? m_blends.valueAt(values, id - m_firstId) : values(id);
  }

  /// Calls `visitNode(node, weight)` for the nodes that an added one is a mean of.
  template <class Visit>
  void visitBlend(std::size_t id, const Visit& visitNode) const {
    m_blends.visit(id - m_firstId, visitNode);
  }
  /// Where a node of the subdivision of a cell lies in it.
  KbVec3<double> positionIn(const CellForm& form, std::size_t id) const {
    if (isAdded(id)) return (positionIn(form, parents(id)[0]) + positionIn(form, parents(id)[1])) * 0.5;
    const auto end = form.nodes.begin() + static_cast<std::ptrdiff_t>(form.numNodes);
    const auto local = static_cast<std::size_t>(std::find(form.nodes.begin(), end, id) - form.nodes.begin());
    return form.position(std::min(local, form.numNodes - 1));
  }

  template <class Node, class Weight>
  void add(const KbVec3<double>& position, const std::array<std::size_t, 2>& parents, const Node* nodes,
           const Weight* weights, std::size_t count) {
    m_positions.push_back(position);
    m_parents.push_back(parents);
    m_blends.add(nodes, weights, count);
  }

private:
  std::size_t m_firstId;
  std::vector<KbVec3<double>> m_positions;
  std::vector<std::array<std::size_t, 2>> m_parents;
  BlendList m_blends;
};

} // namespace kx
