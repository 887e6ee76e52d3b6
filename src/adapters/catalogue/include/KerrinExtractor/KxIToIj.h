// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <utility>

/// Splits the flat index of a structured surface into (i, j).
class KxIToIj {
public:
  /// With `iFastest`, `numI` is the count along i and the flat index i + `numI` * j; otherwise it is the count along j,
  /// and the index `numI` * i + j. A count of 0 is taken as 1.
  explicit KxIToIj(std::size_t numI = 1, bool iFastest = true)
      : m_iFastest(iFastest) {
    update(numI);
  }
  void update(std::size_t numI) { m_numI = numI > 0 ? numI : 1; }
  void getIj(std::size_t index, std::size_t& i, std::size_t& j) const {
    i = index % m_numI;
    j = index / m_numI;
    if (!m_iFastest) std::swap(i, j);
  }

private:
  std::size_t m_numI = 1;
  bool m_iFastest;
};
