// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec2f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbVec2f>;

/// A field with one vector of two floats.
class NYX_CORE_API NxSFVec2f : public NxSFieldOf<NbVec2f> {
  NX_FIELD_HEADER(NxSFVec2f, NxSFieldOf<NbVec2f>);

public:
  using NxSFieldOf::setValue;
  void setValue(float x, float y) { setValue(NbVec2f(x, y)); }
};
