// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/nodes/NxTransformation.h>

/// Scales what follows about the origin.
class NYX_CORE_API NxScale : public NxTransformation {
  NX_NODE_HEADER(NxScale);

public:
  NxScale();

  NxSFVec3f scaleFactor; ///< (1, 1, 1)

  NbMatrix getMatrixValue() const override;

protected:
  ~NxScale() override;
};
