// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbMatrix.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>

extern template class NYX_CORE_API NxSFieldOf<NbMatrix>;

/// A field with one 4x4 matrix.
class NYX_CORE_API NxSFMatrix : public NxSFieldOf<NbMatrix> {
  NX_FIELD_HEADER(NxSFMatrix, NxSFieldOf<NbMatrix>);
};
