// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <vector>

/// Read access to contiguous values that somebody else owns and keeps alive.
template <class T>
class KbSpan {
public:
  constexpr KbSpan() = default;
  constexpr KbSpan(const T* data, std::size_t size)
      : m_data(data)
      , m_size(size) {}
  KbSpan(const std::vector<T>& values)
      : m_data(values.data())
      , m_size(values.size()) {}
  KbSpan(std::vector<T>&&) = delete; // the values would be gone before the first use
  template <std::size_t N>
  constexpr KbSpan(const std::array<T, N>& values)
      : m_data(values.data())
      , m_size(N) {}
  template <std::size_t N>
  KbSpan(std::array<T, N>&&) = delete;
  template <std::size_t N>
  constexpr KbSpan(const T (&values)[N])
      : m_data(values)
      , m_size(N) {}

  constexpr const T* data() const { return m_data; }
  constexpr std::size_t size() const { return m_size; }
  constexpr bool empty() const { return m_size == 0; }
  constexpr const T& operator[](std::size_t i) const { return m_data[i]; }
  constexpr const T* begin() const { return m_data; }
  constexpr const T* end() const { return m_data + m_size; }

private:
  const T* m_data = nullptr;
  std::size_t m_size = 0;
};
