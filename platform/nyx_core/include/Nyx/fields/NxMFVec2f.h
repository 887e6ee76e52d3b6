// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec2f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<NbVec2f>;

/// A field with any number of vectors of two floats.
class NYX_CORE_API NxMFVec2f : public NxMFieldOf<NbVec2f> {
  NX_FIELD_HEADER(NxMFVec2f, NxMFieldOf<NbVec2f>);
};
