// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<float>;

/// A field with one float.
class NYX_CORE_API NxSFFloat : public NxSFieldOf<float> {
  NX_FIELD_HEADER(NxSFFloat, NxSFieldOf<float>);
};
