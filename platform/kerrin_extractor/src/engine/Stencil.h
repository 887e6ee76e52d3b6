// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>

namespace kx {

/// An output vertex as a weighted mean of up to three input nodes.
struct Stencil {
  std::array<std::size_t, 3> nodes{};
  std::array<double, 3> weights{};

  static Stencil node(std::size_t id) { return {{id, id, id}, {1.0, 0.0, 0.0}}; }
  static Stencil edge(std::size_t a, std::size_t b, double weight) { return {{a, b, b}, {1.0 - weight, weight, 0.0}}; }

  /// A node without weight is not read: it may have no value.
  template <class Values>
  auto valueAt(const Values& values) const {
    decltype(values(nodes[0])) sum(0.0);
    for (std::size_t i = 0; i < 3; ++i)
      if (weights[i] != 0.0) sum = sum + values(nodes[i]) * weights[i];
    return sum;
  }
};

} // namespace kx
