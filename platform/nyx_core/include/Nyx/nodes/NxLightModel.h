// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// Whether shapes below are lit.
class NYX_CORE_API NxLightModel : public NxPropertyNode {
  NX_NODE_HEADER(NxLightModel);

public:
  NxLightModel();

  /// BASE_COLOR shows colours as they are.
  enum Model { BASE_COLOR = 0, PHONG = 1 };

  NxSFEnum model; ///< PHONG

  void doAction(NxAction* action) override;

protected:
  ~NxLightModel() override;
};
