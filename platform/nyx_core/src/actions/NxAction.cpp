// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxAction.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/misc/NxPath.h>
#include <Nyx/misc/NxState.h>
#include <Nyx/nodes/NxNode.h>

#include <cstddef>
#include <string>
#include <utility>

namespace {

/// Runs a function at the end of a scope, also when an exception of a node leaves it.
template <class Function>
struct AtExit {
  Function function;
  ~AtExit() { function(); }
};
template <class Function>
AtExit(Function) -> AtExit<Function>;

} // namespace

NxActionClass NxAction::s_class("NxAction", nullptr);

NxAction::NxAction() = default;

NxAction::~NxAction() = default;

void NxAction::apply(NxNode* root) {
  m_path = nullptr;
  m_pathCode = NO_PATH;
  run(root);
}

void NxAction::apply(NxPath* path) {
  const NbRefPtr<NxPath> held(path);
  m_path = path;
  m_pathCode = path && path->getFullPath()->getLength() > 1 ? IN_PATH : BELOW_PATH;
  run(path ? path->getHead() : nullptr);
  m_path = nullptr;
  m_pathCode = NO_PATH;
}

void NxAction::run(NxNode* root) {
  if (!root || m_isRunning) {
    const std::string origin = std::string(getTypeId().getName().getString()) + "::apply";
    NxDebugError::post(origin.c_str(), "%s",
                       root ? "The action is being applied already." : "There is no node to apply the action to.");
    return;
  }
  NxDB::readlock();
  root->ref();
  m_isRunning = true;
  m_hasTerminated = false;
  m_root = root;
  m_current.assign(1, Step{root, 0});
  NxState* const state = getState();
  state->push();
  const AtExit cleanUp{[this, root, state] {
    while (state->getDepth() > 0)
      state->pop();
    m_current.clear();
    m_root = nullptr;
    m_isRunning = false;
    root->unref();
    NxDB::readunlock();
  }};
  beginTraversal(root);
  endTraversal(root);
}

NxState* NxAction::getState() {
  // Within a traversal the state stays what it is, even if elements come or go meanwhile.
  const bool isOutdated = m_enabledVersion != NxActionClass::getEnabledVersion();
  if (!m_state || (isOutdated && m_state->getDepth() == 0)) {
    m_state = std::make_unique<NxState>(this, getRecord().getEnabledElements());
    m_enabledVersion = NxActionClass::getEnabledVersion();
  }
  return m_state.get();
}

void NxAction::invalidateState() { m_enabledVersion = -1; }

int NxAction::getPathChildIndex() const { return m_path->getFullPath()->getIndex(static_cast<int>(m_current.size())); }

NbRefPtr<NxPath> NxAction::getCurPath() const {
  NbRefPtr<NxPath> path(NxPath::create());
  for (const Step& step : m_current)
    path->appendUnchecked(step.node, step.index);
  return path;
}

void NxAction::traverseChild(int index, NxNode* child) {
  if (m_hasTerminated) return;
  const PathCode former = m_pathCode;
  if (former == IN_PATH) {
    const int lastOfPath = m_path->getFullPath()->getLength() - 1;
    if (index != getPathChildIndex())
      m_pathCode = OFF_PATH;
    else if (static_cast<int>(m_current.size()) == lastOfPath)
      m_pathCode = BELOW_PATH;
  }
  m_current.push_back({child, index});
  const AtExit cleanUp{[this, former] {
    m_current.pop_back();
    m_pathCode = former;
  }};
  callNode(child);
}

void NxAction::traverse(NxNode* node) {
  if (!m_hasTerminated) callNode(node);
}

void NxAction::beginTraversal(NxNode* root) { traverse(root); }

void NxAction::endTraversal(NxNode*) {}
