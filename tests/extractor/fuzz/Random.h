// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <array>
#include <cstdint>
#include <limits>
#include <random>

namespace fuzz {

using Vec3 = KbVec3<double>;
using Counts = std::array<std::size_t, 3>;

/// Random choices, the same for the same seed on every platform.
class Random {
public:
  explicit Random(std::uint64_t seed)
      : m_engine(seed) {}

  std::size_t below(std::size_t count) { return static_cast<std::size_t>(m_engine() % count); }
  bool chance(double probability) { return unit() < probability; }
  double unit() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }
  double between(double low, double high) { return low + (high - low) * unit(); }
  Vec3 pointBetween(double low, double high) {
    const double x = between(low, high);
    const double y = between(low, high);
    return {x, y, between(low, high)};
  }
  /// A number that programs tend not to expect.
  double odd() {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double odd[] = {
        0.0,   -0.0,  1.0,    -1.0, 1e-30, -1e-12,   1e-300,    1e30,
        -1e30, 1e300, -1e300, 1e12, 1e-9,  infinite, -infinite, std::numeric_limits<double>::quiet_NaN()};
    return odd[below(std::size(odd))];
  }
  /// Mostly between the limits.
  double number(double low, double high) { return chance(0.06) ? odd() : between(low, high); }
  Vec3 point(double low, double high) {
    const double x = number(low, high);
    const double y = number(low, high);
    return {x, y, number(low, high)};
  }

private:
  std::mt19937_64 m_engine;
};

} // namespace fuzz
