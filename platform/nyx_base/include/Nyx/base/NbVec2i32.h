// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// Two 32-bit integers, for sizes and positions in pixels.
class NbVec2i32 {
public:
  constexpr NbVec2i32() = default;
  constexpr NbVec2i32(int32_t x, int32_t y)
      : m_values{x, y} {}

  constexpr int32_t operator[](int i) const { return m_values[i]; }
  constexpr int32_t& operator[](int i) { return m_values[i]; }

  friend constexpr bool operator==(const NbVec2i32& a, const NbVec2i32& b) { return a[0] == b[0] && a[1] == b[1]; }
  friend constexpr bool operator!=(const NbVec2i32& a, const NbVec2i32& b) { return !(a == b); }

private:
  int32_t m_values[2] = {0, 0};
};
