// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/nodes/NxLight.h>

/// Light with parallel rays.
class NYX_CORE_API NxDirectionalLight : public NxLight {
  NX_NODE_HEADER(NxDirectionalLight);

public:
  NxDirectionalLight();

  NxSFVec3f direction; ///< the way the light travels, in local coordinates, (0, 0, -1)

  void doAction(NxAction* action) override;

protected:
  ~NxDirectionalLight() override;
};
