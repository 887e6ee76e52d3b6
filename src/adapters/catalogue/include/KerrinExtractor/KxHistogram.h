// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

/// Counts values in bins of equal width.
template <class T>
class KxHistogram {
public:
  /// Starts again with `bins` (at least 1) empty bins between `min` and `max`.
  void init(T min, T max, std::size_t bins) {
    m_min = min;
    m_max = max;
    m_counts.assign(bins > 0 ? bins : 1, 0);
    m_total = 0;
  }
  /// Counts a value; one outside the range counts in the bin at that end, NaN does not count.
  void push(T value) {
    if (m_counts.empty() || std::isnan(value)) return;
    const T position = m_max > m_min ? (value - m_min) / (m_max - m_min) * static_cast<T>(m_counts.size()) : T(0);
    const T last = static_cast<T>(m_counts.size() - 1);
    ++m_counts[static_cast<std::size_t>(position > T(0) ? (position < last ? position : last) : T(0))];
    ++m_total;
  }
  /// The value below which a fraction, in [0, 1], of all values lies, as if they were evenly spread in each bin; the
  /// minimum when there are none.
  T getValueBelow(double fraction) const {
    const double wanted = fraction * static_cast<double>(m_total);
    const T width = (m_max - m_min) / static_cast<T>(m_counts.empty() ? 1 : m_counts.size());
    double below = 0.0;
    for (std::size_t bin = 0; bin < m_counts.size(); ++bin) {
      const double count = static_cast<double>(m_counts[bin]);
      if (count > 0.0 && below + count >= wanted) {
        const double inBin = wanted > below ? (wanted - below) / count : 0.0;
        return m_min + width * static_cast<T>(static_cast<double>(bin) + inBin);
      }
      below += count;
    }
    return m_total > 0 ? m_max : m_min;
  }
  std::size_t getNumValues() const { return m_total; }

private:
  T m_min = T(0);
  T m_max = T(0);
  std::vector<std::size_t> m_counts;
  std::size_t m_total = 0;
};
