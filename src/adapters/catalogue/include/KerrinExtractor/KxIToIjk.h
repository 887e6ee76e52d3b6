// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <utility>

/// Splits the flat index of a structured volume into (i, j, k).
class KxIToIjk {
public:
  /// `numI` and `numJ` are the counts along the two fastest axes; with `iFastest` the flat index is
  /// i + `numI` * (j + `numJ` * k), otherwise k + `numI` * (j + `numJ` * i). A count of 0 is taken as 1.
  KxIToIjk(std::size_t numI = 1, std::size_t numJ = 1, bool iFastest = true)
      : m_iFastest(iFastest) {
    update(numI, numJ);
  }
  void update(std::size_t numI, std::size_t numJ) {
    m_numI = numI > 0 ? numI : 1;
    m_numJ = numJ > 0 ? numJ : 1;
  }
  void getIjk(std::size_t index, std::size_t& i, std::size_t& j, std::size_t& k) const {
    i = index % m_numI;
    j = index / m_numI % m_numJ;
    k = index / m_numI / m_numJ;
    if (!m_iFastest) std::swap(i, k);
  }

private:
  std::size_t m_numI = 1;
  std::size_t m_numJ = 1;
  bool m_iFastest;
};
