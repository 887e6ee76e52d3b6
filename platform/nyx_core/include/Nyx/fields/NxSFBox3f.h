// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbBox3f.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbBox3f>;

/// A field with one axis-aligned box.
class NYX_CORE_API NxSFBox3f : public NxSFieldOf<NbBox3f> {
  NX_FIELD_HEADER(NxSFBox3f, NxSFieldOf<NbBox3f>);
};
