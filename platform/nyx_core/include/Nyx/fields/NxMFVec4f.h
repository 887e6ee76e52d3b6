// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec4f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<NbVec4f>;

/// A field with any number of vectors of four floats.
class NYX_CORE_API NxMFVec4f : public NxMFieldOf<NbVec4f> {
  NX_FIELD_HEADER(NxMFVec4f, NxMFieldOf<NbVec4f>);
};
