// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace kx {

/// The values of a record as the text has them: repeated ones (300*0.2) take one place until they are asked for, so
/// that a short text can't ask for more memory than there is.
template <class T>
class GrdeclRecord {
public:
  void add(T value, std::size_t repeat) {
    if (repeat != 1) m_runs.push_back({m_values.size(), repeat});
    m_values.push_back(value);
    m_size = repeat > std::numeric_limits<std::size_t>::max() - m_size ? std::numeric_limits<std::size_t>::max()
                                                                       : m_size + repeat;
  }

  /// Number of values, repeats included; all bits set when it doesn't fit.
  std::size_t size() const { return m_size; }
  /// How many of them the text doesn't have.
  std::size_t numImplied() const { return m_size - m_values.size(); }
  /// All values; the record is empty afterwards.
  std::vector<T> take() {
    if (m_runs.empty()) return std::move(m_values);
    std::vector<T> all(m_size);
    auto to = all.begin();
    std::size_t from = 0;
    const auto copyUpTo = [&](std::size_t end) {
      to = std::copy(m_values.begin() + static_cast<std::ptrdiff_t>(from),
                     m_values.begin() + static_cast<std::ptrdiff_t>(end), to);
    };
    for (const Run& run : m_runs) {
      copyUpTo(run.at);
      to = std::fill_n(to, run.repeat, m_values[run.at]);
      from = run.at + 1;
    }
    copyUpTo(m_values.size());
    *this = GrdeclRecord();
    return all;
  }

private:
  struct Run {
    std::size_t at; ///< index of the value that is repeated
    std::size_t repeat;
  };
  std::vector<T> m_values;
  std::vector<Run> m_runs;
  std::size_t m_size = 0;
};

} // namespace kx
