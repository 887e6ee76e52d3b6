// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

#include <cstdint>

extern template class NYX_CORE_API NxSFieldOf<uint16_t>;

/// A field with one unsigned 16-bit number.
class NYX_CORE_API NxSFUShort : public NxSFieldOf<uint16_t> {
  NX_FIELD_HEADER(NxSFUShort, NxSFieldOf<uint16_t>);
};
