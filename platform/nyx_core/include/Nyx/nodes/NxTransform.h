// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFRotation.h>
#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/nodes/NxTransformation.h>

/// Scales what follows (along axes that `scaleOrientation` turns), then turns it, both about `center`, then moves it.
class NYX_CORE_API NxTransform : public NxTransformation {
  NX_NODE_HEADER(NxTransform);

public:
  NxTransform();

  NxSFVec3f translation;         ///< (0, 0, 0)
  NxSFRotation rotation;         ///< none
  NxSFVec3f scaleFactor;         ///< (1, 1, 1)
  NxSFRotation scaleOrientation; ///< none
  NxSFVec3f center;              ///< (0, 0, 0)

  NbMatrix getMatrixValue() const override;

protected:
  ~NxTransform() override;
};
