// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbColor.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<NbColor>;

/// A field with any number of colours.
class NYX_CORE_API NxMFColor : public NxMFieldOf<NbColor> {
  NX_FIELD_HEADER(NxMFColor, NxMFieldOf<NbColor>);

public:
  using NxMFieldOf::setValue;
  void setValue(float red, float green, float blue) { setValue(NbColor(red, green, blue)); }
};
