// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <limits>

namespace kx {

/// A box around a cell, or around all of them.
struct Box {
  KbVec3<double> low{std::numeric_limits<double>::infinity()};
  KbVec3<double> high{-std::numeric_limits<double>::infinity()};

  bool isEmpty() const { return !(low[0] <= high[0]); }
  /// A coordinate that is not a number leaves the box alone.
  void add(const KbVec3<double>& point) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], point[axis]);
      high[axis] = std::max(high[axis], point[axis]);
    }
  }
  void add(const Box& box) {
    if (box.isEmpty()) return;
    add(box.low);
    add(box.high);
  }
  void grow(double margin) {
    low -= KbVec3<double>(margin);
    high += KbVec3<double>(margin);
  }
  double diagonal() const { return isEmpty() ? 0.0 : (high - low).length(); }
};

} // namespace kx
