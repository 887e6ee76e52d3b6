// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbString.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<NbString>;

/// A field with any number of texts.
class NYX_CORE_API NxMFString : public NxMFieldOf<NbString> {
  NX_FIELD_HEADER(NxMFString, NxMFieldOf<NbString>);
};
