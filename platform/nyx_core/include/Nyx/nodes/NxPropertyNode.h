// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/nodes/NxNode.h>

/// A node that only changes the traversal state: whatever the action, it runs `doAction`.
class NYX_CORE_API NxPropertyNode : public NxNode {
  NX_NODE_ABSTRACT_HEADER(NxPropertyNode);

public:
  void GLRender(NxGLRenderAction* action) override;
  void callback(NxCallbackAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;
  void handleEvent(NxHandleEventAction* action) override;
  void pick(NxPickAction* action) override;
  void rayPick(NxRayPickAction* action) override;
  void getPrimitiveCount(NxGetPrimitiveCountAction* action) override;
  void distribute(NxDistributeAction* action) override;
  bool affectsState() const override { return true; }

protected:
  NxPropertyNode();
  ~NxPropertyNode() override;
};
