// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbTime.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbTime>;

/// A field with one time in seconds.
class NYX_CORE_API NxSFTime : public NxSFieldOf<NbTime> {
  NX_FIELD_HEADER(NxSFTime, NxSFieldOf<NbTime>);
};
