// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <cmath>
#include <limits>

namespace kx {

/// Whether a position can be worked with and shown: its coordinates are numbers within the range of `float`, in which
/// all output is. Products of six of them are finite.
inline bool isFinite(const KbVec3<double>& p) {
  constexpr double LIMIT = std::numeric_limits<float>::max();
  return std::abs(p[0]) <= LIMIT && std::abs(p[1]) <= LIMIT && std::abs(p[2]) <= LIMIT;
}

} // namespace kx
