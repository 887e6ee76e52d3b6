// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxSwitch.h>

#include <Nyx/actions/NxSearchAction.h>

NX_NODE_SOURCE(NxSwitch, NxGroup)

NxSwitch::NxSwitch() {
  NX_NODE_CONSTRUCTOR(NxSwitch);
  NX_NODE_ADD_FIELD(whichChild, (SWITCH_NONE));
}

NxSwitch::~NxSwitch() = default;

bool NxSwitch::affectsState() const { return whichChild.getValue() != SWITCH_NONE && NxGroup::affectsState(); }

void NxSwitch::doAction(NxAction* action) {
  const int which = whichChild.getValue();
  if (which == SWITCH_ALL)
    NxGroup::doAction(action);
  else if (which >= 0 && which < getNumChildren())
    getChildren()->traverse(action, which, which);
}

void NxSwitch::search(NxSearchAction* action) {
  if (!action->isSearchingAll()) {
    NxGroup::search(action);
    return;
  }
  NxNode::search(action);
  if (!action->hasTerminated()) getChildren()->traverse(action);
}
