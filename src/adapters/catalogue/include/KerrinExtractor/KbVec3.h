// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cmath>
#include <cstddef>
#include <ostream>

/// A triple of numbers: a point, a direction, a vector value (`double` or `float`), or three indices (`size_t`).
///
/// Three values of `T` in a row and nothing else, so that an array of `KbVec3<float>` is an array of float triples.
template <class T>
class KbVec3 {
public:
  using ValueType = T;

  constexpr KbVec3()
      : m_value{T(0), T(0), T(0)} {}
  constexpr KbVec3(T x, T y, T z)
      : m_value{x, y, z} {}
  constexpr explicit KbVec3(T all)
      : m_value{all, all, all} {}
  /// Component-wise conversion, for example from double coordinates to the float triples that shapes take.
  template <class U>
  constexpr explicit KbVec3(const KbVec3<U>& other)
      : m_value{static_cast<T>(other[0]), static_cast<T>(other[1]), static_cast<T>(other[2])} {}

  constexpr T& operator[](std::size_t i) { return m_value[i]; }
  constexpr const T& operator[](std::size_t i) const { return m_value[i]; }
  constexpr const T* data() const { return m_value; }

  constexpr KbVec3& operator+=(const KbVec3& o) { return *this = *this + o; }
  constexpr KbVec3& operator-=(const KbVec3& o) { return *this = *this - o; }
  constexpr KbVec3& operator*=(T s) { return *this = *this * s; }
  constexpr KbVec3& operator/=(T s) { return *this = *this / s; }

  friend constexpr KbVec3 operator+(const KbVec3& a, const KbVec3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
  }
  friend constexpr KbVec3 operator-(const KbVec3& a, const KbVec3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
  }
  friend constexpr KbVec3 operator-(const KbVec3& a) { return {-a[0], -a[1], -a[2]}; }
  friend constexpr KbVec3 operator*(const KbVec3& a, T s) { return {a[0] * s, a[1] * s, a[2] * s}; }
  friend constexpr KbVec3 operator*(T s, const KbVec3& a) { return a * s; }
  friend constexpr KbVec3 operator/(const KbVec3& a, T s) { return {a[0] / s, a[1] / s, a[2] / s}; }
  friend constexpr bool operator==(const KbVec3& a, const KbVec3& b) {
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
  }
  friend constexpr bool operator!=(const KbVec3& a, const KbVec3& b) { return !(a == b); }

  constexpr T dot(const KbVec3& o) const { return m_value[0] * o[0] + m_value[1] * o[1] + m_value[2] * o[2]; }
  constexpr KbVec3 cross(const KbVec3& o) const {
    return {m_value[1] * o[2] - m_value[2] * o[1], m_value[2] * o[0] - m_value[0] * o[2],
            m_value[0] * o[1] - m_value[1] * o[0]};
  }
  constexpr T squaredLength() const { return dot(*this); }
  T length() const { return std::sqrt(squaredLength()); }
  /// The vector of length 1 in this direction; a vector of length 0 stays as it is.
  KbVec3 normalized() const {
    const T l = length();
    return l > T(0) ? *this / l : *this;
  }

private:
  T m_value[3];
};

template <class T>
std::ostream& operator<<(std::ostream& stream, const KbVec3<T>& v) {
  return stream << v[0] << ' ' << v[1] << ' ' << v[2];
}
