// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

#include <cstdint>

extern template class NYX_CORE_API NxMFieldOf<int32_t>;

/// A field with any number of signed 32-bit numbers.
class NYX_CORE_API NxMFInt32 : public NxMFieldOf<int32_t> {
  NX_FIELD_HEADER(NxMFInt32, NxMFieldOf<int32_t>);
};
