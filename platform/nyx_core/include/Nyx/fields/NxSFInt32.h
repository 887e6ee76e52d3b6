// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

#include <cstdint>

extern template class NYX_CORE_API NxSFieldOf<int32_t>;

/// A field with one signed 32-bit number.
class NYX_CORE_API NxSFInt32 : public NxSFieldOf<int32_t> {
  NX_FIELD_HEADER(NxSFInt32, NxSFieldOf<int32_t>);
};
