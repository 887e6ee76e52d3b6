// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFBox3f.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// Says where the bounding box of what follows in the same separator comes from. With USER_DEFINED the bounding-box
/// action takes `boundingBox` and walks no vertices. In the other modes the shapes work out their own boxes; with
/// NO_BOUNDING_BOX the node is switched off.
class NYX_CORE_API NxBBox : public NxPropertyNode {
  NX_NODE_HEADER(NxBBox);

public:
  NxBBox();

  enum Mode { NO_BOUNDING_BOX = 0, AUTO = 1, USER_DEFINED = 2 };

  NxSFEnum mode;         ///< AUTO
  NxSFBox3f boundingBox; ///< in the node's local coordinates; empty

  void doAction(NxAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;

protected:
  ~NxBBox() override;
};
