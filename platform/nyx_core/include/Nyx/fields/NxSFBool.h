// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<bool>;

/// A field with one truth value.
class NYX_CORE_API NxSFBool : public NxSFieldOf<bool> {
  NX_FIELD_HEADER(NxSFBool, NxSFieldOf<bool>);
};
