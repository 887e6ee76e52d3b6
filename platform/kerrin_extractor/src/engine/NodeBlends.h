// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellForm.h"

#include <array>
#include <cstddef>
#include <vector>

namespace kx {

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

  /// The value at any node. A node without weight has no say, even if it has no value (NaN).
  template <class Values>
  auto valueAt(const Values& values, std::size_t id) const {
    if (!isAdded(id)) return values(id);
    decltype(values(id)) sum(0.0);
    const std::size_t added = id - m_firstId;
    for (std::size_t i = m_begins[added]; i < m_begins[added + 1]; ++i)
      sum += values(m_nodes[i]) * m_weights[i];
    return sum;
  }

  template <class Node, class Weight>
  void add(const KbVec3<double>& position, const std::array<std::size_t, 2>& parents, const Node* nodes,
           const Weight* weights, std::size_t count) {
    m_positions.push_back(position);
    m_parents.push_back(parents);
    m_nodes.insert(m_nodes.end(), nodes, nodes + count);
    m_weights.insert(m_weights.end(), weights, weights + count);
    m_begins.push_back(m_nodes.size());
  }

private:
  std::size_t m_firstId;
  std::vector<KbVec3<double>> m_positions;
  std::vector<std::array<std::size_t, 2>> m_parents;
  std::vector<std::size_t> m_begins{0};
  std::vector<std::size_t> m_nodes;
  std::vector<double> m_weights;
};

} // namespace kx
