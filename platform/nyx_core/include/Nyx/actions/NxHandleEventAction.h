// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>

/// Offers an event to the nodes of a graph.
class NYX_CORE_API NxHandleEventAction : public NxAction {
  NX_ACTION_HEADER(NxHandleEventAction);

public:
  NxHandleEventAction();
  ~NxHandleEventAction() override;

  /// Tells that a node has taken the event: the traversal ends.
  void setHandled();
  /// Whether a node of the last traversal took the event.
  bool isHandled() const { return m_isHandled; }

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  bool m_isHandled = false;
};
