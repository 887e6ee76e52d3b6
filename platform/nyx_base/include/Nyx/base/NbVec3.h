// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec.h>

/// The part that the three-component vectors share beside NbVec.
template <class Derived, class T>
class NbVec3 : public NbVec<Derived, T, 3> {
public:
  using NbVec<Derived, T, 3>::setValue;

  constexpr NbVec3() = default;
  constexpr NbVec3(T x, T y, T z) { setValue(x, y, z); }

  constexpr Derived& setValue(T x, T y, T z) {
    this->m_values[0] = x;
    this->m_values[1] = y;
    this->m_values[2] = z;
    return static_cast<Derived&>(*this);
  }

  constexpr Derived cross(const Derived& other) const {
    const T* a = this->m_values;
    return Derived(a[1] * other[2] - a[2] * other[1], a[2] * other[0] - a[0] * other[2],
                   a[0] * other[1] - a[1] * other[0]);
  }
};
