// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec.h>

/// Four floats without padding.
class NbVec4f : public NbVec<NbVec4f, float, 4> {
public:
  using NbVec::setValue;

  constexpr NbVec4f() = default;
  constexpr NbVec4f(float x, float y, float z, float w) { setValue(x, y, z, w); }

  constexpr NbVec4f& setValue(float x, float y, float z, float w) {
    m_values[0] = x;
    m_values[1] = y;
    m_values[2] = z;
    m_values[3] = w;
    return *this;
  }
};

static_assert(sizeof(NbVec4f) == 4 * sizeof(float), "arrays of vectors are arrays of floats");
