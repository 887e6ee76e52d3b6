// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbColor.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbColor>;

/// A field with one colour, red, green and blue in 0..1.
class NYX_CORE_API NxSFColor : public NxSFieldOf<NbColor> {
  NX_FIELD_HEADER(NxSFColor, NxSFieldOf<NbColor>);

public:
  using NxSFieldOf::setValue;
  void setValue(float red, float green, float blue) { setValue(NbColor(red, green, blue)); }
};
