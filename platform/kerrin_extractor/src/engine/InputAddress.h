// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PointView.h"

#include <KerrinExtractor/KeXTopologyI.h>

namespace kx {

/// How the input mesh of an output addresses its cells. Where it uses two or three indices, `dims` splits the flat
/// index; `dims.k` is 0 for two.
struct InputAddress {
  bool isStructured = false;
  Dims dims;

  std::size_t index(std::size_t flat, std::size_t axis) const {
    if (!isStructured) return axis == 0 ? flat : KeXTopologyI::UNDEFINED_INDEX;
    return axis == 2 && dims.k == 0 ? KeXTopologyI::UNDEFINED_INDEX : dims.split(flat)[axis];
  }
};

} // namespace kx
