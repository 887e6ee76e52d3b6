// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>

#include <memory>

class NxOutput;

/// Writes a graph in the text format of scene files: first it counts how often each object is used, then it writes.
class NYX_CORE_API NxWriteAction : public NxAction {
  NX_ACTION_HEADER(NxWriteAction);

public:
  /// Writes to an output of its own, which goes to the standard output stream unless it is given a file or a buffer.
  NxWriteAction();
  /// Writes to the application's output, which must outlive the action.
  explicit NxWriteAction(NxOutput* output);
  ~NxWriteAction() override;

  NxOutput* getOutput() const { return m_output; }

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  std::unique_ptr<NxOutput> m_own;
  NxOutput* m_output;
};
