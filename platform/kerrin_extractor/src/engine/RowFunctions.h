// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FinitePosition.h"
#include "ImplicitFunction.h"

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>
#include <utility>
#include <vector>

namespace kx {

/// The first axis of a regular or rectilinear grid, where coordinates rise or fall all the way.
class RowAxis {
public:
  explicit RowAxis(const std::vector<double>& nodes)
      : m_nodes(nodes)
      , m_isFalling(nodes.back() < nodes.front())
      , m_perLength(static_cast<double>(nodes.size() - 1) / (nodes.back() - nodes.front())) {
    for (std::size_t i = 0; i < nodes.size(); ++i)
      m_isUniform = m_isUniform && std::abs(position(nodes[i]) - static_cast<double>(i)) < 0.25;
  }

  std::size_t size() const { return m_nodes.size(); }
  double operator[](std::size_t i) const { return m_nodes[i]; }
  /// First and one past last of the nodes in a stretch, give or take one.
  std::pair<std::size_t, std::size_t> nodesIn(const Stretch& stretch) const {
    const std::size_t begin = numBefore(m_isFalling ? stretch.end : stretch.begin);
    const std::size_t end = numBefore(m_isFalling ? stretch.begin : stretch.end);
    return {std::min(begin, end), end};
  }

  static bool isFinite(const std::vector<double>& nodes) {
    return std::all_of(nodes.begin(), nodes.end(), [](double x) { return kx::isFinite({x, 0.0, 0.0}); });
  }
  /// Whether coordinates are finite and rise or fall all the way (or stay).
  static bool isMonotone(const std::vector<double>& nodes) {
    return isFinite(nodes) &&
           (std::is_sorted(nodes.begin(), nodes.end()) || std::is_sorted(nodes.rbegin(), nodes.rend()));
  }

private:
  double position(double x) const { return (x - m_nodes.front()) * m_perLength; }
  std::size_t numBefore(double x) const {
    if (m_isUniform) {
      const double p = position(x);
      if (!(p > 0.0)) return 0;
      const auto below = static_cast<std::size_t>(std::min(p, static_cast<double>(size())));
      return below < size() && static_cast<double>(below) < p ? below + 1 : below;
    }
    const auto isBefore = [&](double node) { return m_isFalling ? node > x : node < x; };
    return static_cast<std::size_t>(std::partition_point(m_nodes.begin(), m_nodes.end(), isBefore) - m_nodes.begin());
  }

  const std::vector<double>& m_nodes;
  bool m_isFalling;
  double m_perLength;
  bool m_isUniform = true;
};

/// The nodes of a row where a function is not negative, of a kind that never falls and then rises along x.
struct InsideNodes {
  std::size_t begin;
  std::size_t end;

  /// `value(i)` is what the function is at node i; the ends come from there, whatever the stretch says.
  template <class Value>
  InsideNodes(const RowAxis& axis, const Stretch& stretch, const Value& value) {
    std::tie(begin, end) = axis.nodesIn(stretch);
    while (begin > 0 && value(begin - 1) >= 0.0)
      --begin;
    while (begin < end && !(value(begin) >= 0.0))
      ++begin;
    while (end < axis.size() && value(end) >= 0.0)
      ++end;
    while (end > begin && !(value(end - 1) >= 0.0))
      --end;
  }
};

} // namespace kx
