// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <utility>

/// Splits the flat index of a structured surface into (i, j).
class KxIToIj {
public:
  /// `numI` is the count along i; with `iFastest` the flat index is i + `numI` * j, otherwise `numI` * i + j.
  explicit KxIToIj(std::size_t numI = 1, bool iFastest = true)
      : m_numI(numI)
      , m_iFastest(iFastest) {}
  void update(std::size_t numI) { m_numI = numI; }
  void getIj(std::size_t index, std::size_t& i, std::size_t& j) const {
    i = index % m_numI;
    j = index / m_numI;
    if (!m_iFastest) std::swap(i, j);
  }

private:
  std::size_t m_numI;
  bool m_iFastest;
};
