// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>

/// Calls functions of the application before and after nodes of given types.
class NYX_CORE_API NxCallbackAction : public NxAction {
  NX_ACTION_HEADER(NxCallbackAction);

public:
  enum Response {
    CONTINUE, ///< Go on.
    ABORT,    ///< End the traversal.
    PRUNE,    ///< Before a node: pass over the node and what lies below it.
  };
  using Callback = Response(void* data, NxCallbackAction* action, const NxNode* node);

  NxCallbackAction();
  ~NxCallbackAction() override;

  /// Adds a function to be called before, or after, each node of this type or of one derived from it. Functions are
  /// called in the order in which they were added.
  void addPreCallback(NxType type, Callback* callback, void* data);
  void addPostCallback(NxType type, Callback* callback, void* data);

protected:
  void callNode(NxNode* node) override;

private:
  struct Entry {
    NxType type;
    Callback* callback;
    void* data;
  };
  Response call(const std::vector<Entry>& entries, const NxNode* node);

  std::vector<Entry> m_pre;
  std::vector<Entry> m_post;
};
