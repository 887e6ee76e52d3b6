// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3.h>

/// Three floats without padding.
class NbVec3f : public NbVec3<NbVec3f, float> {
public:
  using NbVec3::NbVec3;
  constexpr NbVec3f() = default;
};

static_assert(sizeof(NbVec3f) == 3 * sizeof(float), "arrays of vectors are arrays of floats");
