// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/misc/NyxCoreExport.h>
#include <Nyx/nodes/NxGroup.h>

/// A group of which one child, all or none are traversed.
class NYX_CORE_API NxSwitch : public NxGroup {
  NX_NODE_HEADER(NxSwitch);

public:
  static constexpr int SWITCH_NONE = -1;
  static constexpr int SWITCH_ALL = -3;

  NxSwitch();

  /// Index of the child to traverse, SWITCH_NONE (the default) or SWITCH_ALL. Any other number traverses none.
  NxSFInt32 whichChild;

  bool affectsState() const override;
  void doAction(NxAction* action) override;
  /// Looks at the traversed children only, unless the action searches all.
  void search(NxSearchAction* action) override;

protected:
  ~NxSwitch() override;
};
