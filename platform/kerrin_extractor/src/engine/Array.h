// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiBuffer.h>

#include <algorithm>
#include <cstddef>
#include <memory>

namespace kx {

/// Contiguous plain values that several threads fill at known offsets: a resize neither initialises nor keeps the
/// content, and memory is reused as long as at least three quarters of it are needed.
template <class T>
class Array final : public KiBuffer {
public:
  Array() = default;
  Array(const Array& other)
      : KiBuffer() {
    resize(other.m_size);
    std::copy_n(other.data(), m_size, data());
  }
  Array& operator=(const Array&) = delete;

  void resize(std::size_t size) {
    if (size > m_capacity || size < m_capacity / 4 * 3) {
      m_values.reset(); // before the new block, so that both never exist together
      m_capacity = 0;
      m_size = 0;
      m_values.reset(size > 0 ? new T[size] : nullptr);
      m_capacity = size;
    }
    m_size = size;
  }
  void clear() { resize(0); }

  std::size_t size() const { return m_size; }
  T* data() { return m_values.get(); }
  const T* data() const { return m_values.get(); }
  T& operator[](std::size_t i) { return m_values[i]; }
  const T& operator[](std::size_t i) const { return m_values[i]; }

  const void* getData() const override { return m_values.get(); }
  std::size_t getByteSize() const override { return m_size * sizeof(T); }

private:
  std::unique_ptr<T[]> m_values;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

/// Indices that are kept as 32-bit values where the largest one allows it.
class IndexArray {
public:
  void resize(std::size_t size, std::size_t endIndex) {
    m_isWide = endIndex > 0xffffffffu;
    m_narrow.resize(m_isWide ? 0 : size);
    m_wide.resize(m_isWide ? size : 0);
  }
  void set(std::size_t i, std::size_t index) {
    if (m_isWide)
      m_wide[i] = index;
    else
      m_narrow[i] = static_cast<unsigned>(index);
  }
  std::size_t operator[](std::size_t i) const { return m_isWide ? m_wide[i] : m_narrow[i]; }
  std::size_t size() const { return m_isWide ? m_wide.size() : m_narrow.size(); }

private:
  bool m_isWide = false;
  Array<unsigned> m_narrow;
  Array<std::size_t> m_wide;
};

} // namespace kx
