// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCell.h>

#include <vector>

/// A cell with node ids of its own.
class KERRIN_EXTRACTOR_API KeCell : public virtual KiCell {
public:
  explicit KeCell(std::size_t numNodes = 0);
  std::size_t getNumNodes() const override { return m_nodes.size(); }
  std::size_t getNodeIndex(std::size_t localIndex) const override;
  void setNodeIndex(std::size_t localIndex, std::size_t node) { m_nodes[localIndex] = node; }

private:
  std::vector<std::size_t> m_nodes;
};
