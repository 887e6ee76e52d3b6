// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>
#include <Nyx/nodes/NxGroup.h>

/// A group that leaves the traversal state as it found it.
class NYX_CORE_API NxSeparator : public NxGroup {
  NX_NODE_HEADER(NxSeparator);

public:
  NxSeparator();

  bool affectsState() const override;
  void doAction(NxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;

protected:
  ~NxSeparator() override;
};
