// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>

/// Walks a graph so that nodes bring what they show up to date before it is shared across a cluster.
class NYX_CORE_API NxDistributeAction : public NxAction {
  NX_ACTION_HEADER(NxDistributeAction);

public:
  NxDistributeAction();
  ~NxDistributeAction() override;

protected:
  void callNode(NxNode* node) override;
};
