// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/nodes/NxTransformation.h>

/// Moves what follows.
class NYX_CORE_API NxTranslation : public NxTransformation {
  NX_NODE_HEADER(NxTranslation);

public:
  NxTranslation();

  NxSFVec3f translation; ///< (0, 0, 0)

  NbMatrix getMatrixValue() const override;

protected:
  ~NxTranslation() override;
};
