// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<double>;

/// A field with one double.
class NYX_CORE_API NxSFDouble : public NxSFieldOf<double> {
  NX_FIELD_HEADER(NxSFDouble, NxSFieldOf<double>);
};
