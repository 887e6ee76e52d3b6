// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbString.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbString>;

/// A field with one text.
class NYX_CORE_API NxSFString : public NxSFieldOf<NbString> {
  NX_FIELD_HEADER(NxSFString, NxSFieldOf<NbString>);
};
