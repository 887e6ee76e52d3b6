// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// One end of a colour mapping: when enabled, values beyond `value` have the colour `color`.
template <class Value, class Color>
struct KdThreshold {
  bool enabled = false;
  Value value{};
  Color color{};

  friend bool operator==(const KdThreshold& a, const KdThreshold& b) {
    return a.enabled == b.enabled && a.value == b.value && a.color == b.color;
  }
};
