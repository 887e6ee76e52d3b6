// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <mutex>

/// A value that is computed from data with a time stamp when somebody asks for it, once a stamp. Any thread may ask.
template <class T>
class KbStampedCache {
public:
  template <class Compute>
  T get(std::size_t stamp, Compute compute) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stamp != stamp) {
      m_value = compute();
      m_stamp = stamp;
    }
    return m_value;
  }

private:
  mutable std::mutex m_mutex;
  mutable std::size_t m_stamp = static_cast<std::size_t>(-1);
  mutable T m_value{};
};
