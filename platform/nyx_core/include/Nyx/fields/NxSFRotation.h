// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRotation.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbRotation>;

/// A field with one rotation.
class NYX_CORE_API NxSFRotation : public NxSFieldOf<NbRotation> {
  NX_FIELD_HEADER(NxSFRotation, NxSFieldOf<NbRotation>);

public:
  using NxSFieldOf::setValue;
  /// An axis of any length and an angle in radians.
  void setValue(const NbVec3f& axis, float radians) { setValue(NbRotation(axis, radians)); }
};
