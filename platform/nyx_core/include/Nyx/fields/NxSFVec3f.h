// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbVec3f>;

/// A field with one vector of three floats.
class NYX_CORE_API NxSFVec3f : public NxSFieldOf<NbVec3f> {
  NX_FIELD_HEADER(NxSFVec3f, NxSFieldOf<NbVec3f>);

public:
  using NxSFieldOf::setValue;
  void setValue(float x, float y, float z) { setValue(NbVec3f(x, y, z)); }
};
