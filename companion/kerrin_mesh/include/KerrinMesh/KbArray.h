// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinMesh/KbSpan.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

/// Numbers of the caller's, with the element type told at run time, so that one constructor takes float or double
/// coordinates and 32- or 64-bit indices.
///
/// It points at the caller's memory, which must stay alive and in place as long as the mesh or set that got the array.
/// `KbVec3` triples count as three numbers each. An array without elements is of no type.
class KbArray {
public:
  KbArray() = default;
  template <class T>
  KbArray(const T* data, std::size_t size)
      : m_raw{data, size, size != 0 ? typeOf<T>() : KiRawArray::NONE} {}
  template <class T>
  KbArray(const KbVec3<T>* data, std::size_t size)
      : m_raw{data, 3 * size, size != 0 ? typeOf<T>() : KiRawArray::NONE} {}
  template <class T>
  KbArray(const KbSpan<T>& values)
      : KbArray(values.data(), values.size()) {}
  template <class T>
  KbArray(const std::vector<T>& values)
      : KbArray(values.data(), values.size()) {}
  template <class T>
  KbArray(std::vector<T>&&) = delete; // the values would be gone before the first use
  template <class T, std::size_t N>
  KbArray(const std::array<T, N>& values)
      : KbArray(values.data(), N) {}
  template <class T, std::size_t N>
  KbArray(std::array<T, N>&&) = delete;
  template <class T, std::size_t N>
  KbArray(const T (&values)[N])
      : KbArray(values + 0, N) {}

  /// Number of scalars.
  std::size_t size() const { return m_raw.size; }
  bool empty() const { return m_raw.size == 0; }
  KiRawArray::Type type() const { return m_raw.type; }
  /// Whether the elements are 32- or 64-bit integers.
  bool isIndex() const { return m_raw.type == KiRawArray::INT32 || m_raw.type == KiRawArray::INT64; }
  /// Whether the elements are float or double.
  bool isReal() const { return m_raw.type == KiRawArray::FLOAT32 || m_raw.type == KiRawArray::FLOAT64; }
  const KiRawArray& raw() const { return m_raw; }

  /// An element as an index; the array must be one of indices.
  std::size_t index(std::size_t i) const {
    return m_raw.type == KiRawArray::INT32 ? static_cast<std::size_t>(static_cast<const std::int32_t*>(m_raw.data)[i])
                                           : static_cast<std::size_t>(static_cast<const std::int64_t*>(m_raw.data)[i]);
  }
  /// An element as a number, whatever its type.
  double value(std::size_t i) const {
    switch (m_raw.type) {
    case KiRawArray::UINT8:
      return static_cast<const std::uint8_t*>(m_raw.data)[i];
    case KiRawArray::INT32:
      return static_cast<const std::int32_t*>(m_raw.data)[i];
    case KiRawArray::INT64:
      return static_cast<double>(static_cast<const std::int64_t*>(m_raw.data)[i]);
    case KiRawArray::FLOAT32:
      return static_cast<double>(static_cast<const float*>(m_raw.data)[i]);
    case KiRawArray::FLOAT64:
      return static_cast<const double*>(m_raw.data)[i];
    case KiRawArray::NONE:
      break;
    }
    return 0.0;
  }
  /// The elements 3 `i` to 3 `i` + 2.
  KbVec3<double> triple(std::size_t i) const {
    if (m_raw.type != KiRawArray::FLOAT32) return {value(3 * i), value(3 * i + 1), value(3 * i + 2)};
    const float* v = static_cast<const float*>(m_raw.data) + 3 * i;
    return {static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])};
  }

private:
  template <class T>
  static constexpr KiRawArray::Type typeOf() {
    if constexpr (std::is_same_v<T, std::uint8_t>) return KiRawArray::UINT8;
    if constexpr (std::is_same_v<T, float>) return KiRawArray::FLOAT32;
    if constexpr (std::is_same_v<T, double>) return KiRawArray::FLOAT64;
    if constexpr (std::is_integral_v<T> && std::is_signed_v<T> && sizeof(T) == 4) return KiRawArray::INT32;
    if constexpr (std::is_integral_v<T> && std::is_signed_v<T> && sizeof(T) == 8) return KiRawArray::INT64;
    static_assert(std::is_same_v<T, std::uint8_t> || std::is_floating_point_v<T> ||
                      (std::is_integral_v<T> && std::is_signed_v<T> && sizeof(T) >= 4),
                  "float, double, 32- or 64-bit signed integers, or bytes");
    return KiRawArray::NONE;
  }

  KiRawArray m_raw;
};
