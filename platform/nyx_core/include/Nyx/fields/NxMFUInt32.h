// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

#include <cstdint>

extern template class NYX_CORE_API NxMFieldOf<uint32_t>;

/// A field with any number of unsigned 32-bit numbers.
class NYX_CORE_API NxMFUInt32 : public NxMFieldOf<uint32_t> {
  NX_FIELD_HEADER(NxMFUInt32, NxMFieldOf<uint32_t>);
};
