// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec4f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbVec4f>;

/// A field with one vector of four floats.
class NYX_CORE_API NxSFVec4f : public NxSFieldOf<NbVec4f> {
  NX_FIELD_HEADER(NxSFVec4f, NxSFieldOf<NbVec4f>);

public:
  using NxSFieldOf::setValue;
  void setValue(float x, float y, float z, float w) { setValue(NbVec4f(x, y, z, w)); }
};
