// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFRotation.h>
#include <Nyx/nodes/NxTransformation.h>

/// Turns what follows.
class NYX_CORE_API NxRotation : public NxTransformation {
  NX_NODE_HEADER(NxRotation);

public:
  NxRotation();

  NxSFRotation rotation; ///< none

  NbMatrix getMatrixValue() const override;

protected:
  ~NxRotation() override;
};
