// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cmath>
#include <cstddef>
#include <type_traits>

/// What the vector classes have in common: N components of type T, stored without padding, and the usual arithmetic.
///
/// `Derived` is the vector class itself, so that sums and products keep their type. Components are not checked: an
/// index must lie in 0..N-1.
template <class Derived, class T, int N>
class NbVec {
public:
  using ValueType = T;
  static constexpr int SIZE = N;

  constexpr NbVec()
      : m_values{} {}

  constexpr const T& operator[](int i) const { return m_values[i]; }
  constexpr T& operator[](int i) { return m_values[i]; }

  /// The components, one after another.
  constexpr const T* getValue() const { return m_values; }

  Derived& setValue(const T* values) {
    for (int i = 0; i < N; ++i)
      m_values[i] = values[i];
    return self();
  }

  constexpr T dot(const Derived& other) const {
    T sum{};
    for (int i = 0; i < N; ++i)
      sum += m_values[i] * other[i];
    return sum;
  }

  constexpr T sqrLength() const { return dot(self()); }
  T length() const { return std::sqrt(sqrLength()); }

  /// Scales to length 1 and returns the former length; a null vector stays as it is and 0 is returned.
  T normalize() {
    const T former = length();
    if (former > T(0)) self() /= former;
    return former;
  }

  constexpr Derived& operator+=(const Derived& other) {
    for (int i = 0; i < N; ++i)
      m_values[i] += other[i];
    return self();
  }
  constexpr Derived& operator-=(const Derived& other) {
    for (int i = 0; i < N; ++i)
      m_values[i] -= other[i];
    return self();
  }
  constexpr Derived& operator*=(T factor) {
    for (int i = 0; i < N; ++i)
      m_values[i] *= factor;
    return self();
  }
  constexpr Derived& operator/=(T divisor) {
    for (int i = 0; i < N; ++i)
      m_values[i] /= divisor;
    return self();
  }

  constexpr Derived operator-() const {
    Derived result;
    for (int i = 0; i < N; ++i)
      result[i] = -m_values[i];
    return result;
  }

  friend constexpr Derived operator+(Derived a, const Derived& b) { return a += b; }
  friend constexpr Derived operator-(Derived a, const Derived& b) { return a -= b; }
  friend constexpr Derived operator*(Derived a, T factor) { return a *= factor; }
  friend constexpr Derived operator*(T factor, Derived a) { return a *= factor; }
  friend constexpr Derived operator/(Derived a, T divisor) { return a /= divisor; }

  friend constexpr bool operator==(const Derived& a, const Derived& b) {
    for (int i = 0; i < N; ++i)
      if (!(a[i] == b[i])) return false;
    return true;
  }
  friend constexpr bool operator!=(const Derived& a, const Derived& b) { return !(a == b); }

  /// True when each component differs by at most `tolerance` (an absolute length).
  bool equals(const Derived& other, T tolerance) const {
    for (int i = 0; i < N; ++i)
      if (!(std::abs(m_values[i] - other[i]) <= tolerance)) return false;
    return true;
  }

protected:
  T m_values[N];

private:
  constexpr Derived& self() { return static_cast<Derived&>(*this); }
  constexpr const Derived& self() const { return static_cast<const Derived&>(*this); }
};
