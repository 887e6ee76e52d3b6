// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellMap.h"

#include <cstddef>
#include <vector>

namespace kx {

/// The cell at a point and the shape functions there.
class CellHit {
public:
  static constexpr std::size_t NO_CELL = static_cast<std::size_t>(-1);

  std::size_t cell = NO_CELL;
  /// Filled for linear cells, whose nodes are their corners.
  CellNodes corners{};
  std::array<double, 8> cornerWeights{};
  std::size_t numCorners = 0; ///< 0 when the vectors below hold nodes and weights
  std::vector<std::size_t> nodes;
  std::vector<double> weights;
  /// Linear volume cells only: what a next search in the same cell starts from.
  CellMap map;
  KbVec3<double> position;
  std::size_t mappedCell = NO_CELL; ///< the cell of `map`, found or only tried

  bool isFound() const { return cell != NO_CELL; }
  std::size_t numNodes() const { return numCorners > 0 ? numCorners : nodes.size(); }
  std::size_t node(std::size_t i) const { return numCorners > 0 ? corners[i] : nodes[i]; }
  double weight(std::size_t i) const { return numCorners > 0 ? cornerWeights[i] : weights[i]; }

  /// The value of a set given per node. A node without weight has no say, even if it has no value (NaN).
  template <class Values>
  auto interpolate(const Values& values) const {
    decltype(values(std::size_t(0))) sum(0.0);
    for (std::size_t i = 0; i < numNodes(); ++i)
      if (const double w = weight(i); w != 0.0) sum += values(node(i)) * w;
    return sum;
  }
};

} // namespace kx
