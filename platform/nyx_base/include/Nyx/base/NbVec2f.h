// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec.h>

/// Two floats without padding.
class NbVec2f : public NbVec<NbVec2f, float, 2> {
public:
  using NbVec::setValue;

  constexpr NbVec2f() = default;
  constexpr NbVec2f(float x, float y) { setValue(x, y); }

  constexpr NbVec2f& setValue(float x, float y) {
    m_values[0] = x;
    m_values[1] = y;
    return *this;
  }
};

static_assert(sizeof(NbVec2f) == 2 * sizeof(float), "arrays of vectors are arrays of floats");
