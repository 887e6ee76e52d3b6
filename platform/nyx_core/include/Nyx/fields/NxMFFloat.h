// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<float>;

/// A field with any number of floats.
class NYX_CORE_API NxMFFloat : public NxMFieldOf<float> {
  NX_FIELD_HEADER(NxMFFloat, NxMFieldOf<float>);
};
