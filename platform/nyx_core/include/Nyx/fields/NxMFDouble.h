// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>

extern template class NYX_CORE_API NxMFieldOf<double>;

/// A field with any number of doubles.
class NYX_CORE_API NxMFDouble : public NxMFieldOf<double> {
  NX_FIELD_HEADER(NxMFDouble, NxMFieldOf<double>);
};
