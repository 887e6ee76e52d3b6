// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace kx {

/// Why cells cannot be scaled by a factor; empty when they can. Beyond a million, vertices leave the range of what can
/// be shown.
inline std::string faultOfFactor(double factor) {
  if (!(factor > 0.0)) return "the factor " + std::to_string(factor) + " is not greater than 0";
  if (!(factor <= 1e6)) return "the factor " + std::to_string(factor) + " is greater than 1000000";
  return "";
}

} // namespace kx
