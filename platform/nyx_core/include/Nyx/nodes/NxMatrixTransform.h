// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFMatrix.h>
#include <Nyx/nodes/NxTransformation.h>

/// Any affine transformation.
class NYX_CORE_API NxMatrixTransform : public NxTransformation {
  NX_NODE_HEADER(NxMatrixTransform);

public:
  NxMatrixTransform();

  NxSFMatrix matrix; ///< identity; points are rows and stand on the left

  NbMatrix getMatrixValue() const override;

protected:
  ~NxMatrixTransform() override;
};
