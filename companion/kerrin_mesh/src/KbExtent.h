// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace kx {

/// Least and greatest of every third value (`Stride` 3: a box) or of all values (1); NaN doesn't count. Without values,
/// the least is greater than the greatest.
///
/// Twelve independent lanes let the compiler use the vector unit for the comparisons, which it may not reorder itself.
template <std::size_t Stride, class T>
void extentOf(const T* values, std::size_t size, std::array<T, Stride>& min, std::array<T, Stride>& max) {
  constexpr std::size_t lanes = 12;
  T low[lanes];
  T high[lanes];
  for (std::size_t l = 0; l < lanes; ++l) {
    low[l] = std::numeric_limits<T>::has_infinity ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();
    high[l] =
        std::numeric_limits<T>::has_infinity ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();
  }
  const auto take = [&low, &high](std::size_t l, T v) {
    low[l] = v < low[l] ? v : low[l];
    high[l] = v > high[l] ? v : high[l];
  };
  std::size_t i = 0;
  for (; i + lanes <= size; i += lanes) {
    for (std::size_t l = 0; l < lanes; ++l)
      take(l, values[i + l]);
  }
  for (; i < size; ++i)
    take(i % lanes, values[i]);
  for (std::size_t l = lanes - 1; l >= Stride; --l) {
    low[l - Stride] = std::min(low[l - Stride], low[l]);
    high[l - Stride] = std::max(high[l - Stride], high[l]);
  }
  for (std::size_t l = 0; l < Stride; ++l) {
    min[l] = low[l];
    max[l] = high[l];
  }
}

} // namespace kx
