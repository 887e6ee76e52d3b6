// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3d.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbVec3d>;

/// A field with one vector of three doubles.
class NYX_CORE_API NxSFVec3d : public NxSFieldOf<NbVec3d> {
  NX_FIELD_HEADER(NxSFVec3d, NxSFieldOf<NbVec3d>);
};
