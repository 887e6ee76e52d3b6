// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

#include <cstdint>

extern template class NYX_CORE_API NxSFieldOf<uint32_t>;

/// A field with one unsigned 32-bit number.
class NYX_CORE_API NxSFUInt32 : public NxSFieldOf<uint32_t> {
  NX_FIELD_HEADER(NxSFUInt32, NxSFieldOf<uint32_t>);
};
