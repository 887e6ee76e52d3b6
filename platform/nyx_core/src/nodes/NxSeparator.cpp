// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxSeparator.h>

#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/misc/NxState.h>

NX_NODE_SOURCE(NxSeparator, NxGroup)

NxSeparator::NxSeparator() { NX_NODE_CONSTRUCTOR(NxSeparator); }

NxSeparator::~NxSeparator() = default;

bool NxSeparator::affectsState() const { return false; }

void NxSeparator::doAction(NxAction* action) {
  NxState* const state = action->getState();
  state->push();
  NxGroup::doAction(action);
  state->pop();
}

void NxSeparator::getMatrix(NxGetMatrixAction* action) {
  if (action->getPathCode() == NxAction::IN_PATH) doAction(action);
}
