// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<NbVec3f>;

/// A field with any number of vectors of three floats.
class NYX_CORE_API NxMFVec3f : public NxMFieldOf<NbVec3f> {
  NX_FIELD_HEADER(NxMFVec3f, NxMFieldOf<NbVec3f>);

public:
  using NxMFieldOf::setValue;
  void setValue(float x, float y, float z) { setValue(NbVec3f(x, y, z)); }
};
