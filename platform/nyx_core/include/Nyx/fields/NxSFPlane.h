// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbPlane.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbPlane>;

/// A field with one plane.
class NYX_CORE_API NxSFPlane : public NxSFieldOf<NbPlane> {
  NX_FIELD_HEADER(NxSFPlane, NxSFieldOf<NbPlane>);
};
