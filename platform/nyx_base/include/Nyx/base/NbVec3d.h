// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3.h>
#include <Nyx/base/NbVec3f.h>

/// Three doubles without padding.
class NbVec3d : public NbVec3<NbVec3d, double> {
public:
  using NbVec3::NbVec3;
  constexpr NbVec3d() = default;
  constexpr explicit NbVec3d(const NbVec3f& v)
      : NbVec3(static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])) {}
};

static_assert(sizeof(NbVec3d) == 3 * sizeof(double), "arrays of vectors are arrays of doubles");
