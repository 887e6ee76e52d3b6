// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// How shapes below are picked.
class NYX_CORE_API NxPickStyle : public NxPropertyNode {
  NX_NODE_HEADER(NxPickStyle);

public:
  NxPickStyle();

  enum Style { SHAPE = 0, BOUNDING_BOX = 1, UNPICKABLE = 2 };

  NxSFEnum style; ///< SHAPE

  void doAction(NxAction* action) override;

protected:
  ~NxPickStyle() override;
};
