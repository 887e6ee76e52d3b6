// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxChildList.h>

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/nodes/NxNode.h>

#include <algorithm>
#include <string>

NxChildList::NxChildList(NxNode* owner, int size)
    : m_owner(owner) {
  m_nodes.reserve(static_cast<size_t>(std::max(size, 0)));
}

NxChildList::~NxChildList() {
  for (NxNode* node : m_nodes)
    release(node);
}

void NxChildList::acquire(NxNode* node) {
  node->ref();
  node->getAuditors().append(m_owner);
}

void NxChildList::release(NxNode* node) {
  node->getAuditors().remove(m_owner);
  node->unref();
}

bool NxChildList::isInRange(int index, int end, const char* operation) const {
  if (index >= 0 && index < end) return true;
  NxDebugError::post(operation, "The index %d is not in 0..%d.", index, end - 1);
  return false;
}

int NxChildList::find(const NxNode* node) const {
  const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
  return found == m_nodes.end() ? -1 : static_cast<int>(found - m_nodes.begin());
}

void NxChildList::insert(NxNode* node, int index) {
  if (!node) {
    NxDebugError::post("NxChildList::insert", "A null node cannot be a child.");
    return;
  }
  if (!isInRange(index, getLength() + 1, "NxChildList::insert")) return;
  acquire(node);
  m_nodes.insert(m_nodes.begin() + index, node);
  m_owner->startNotify();
}

void NxChildList::set(int index, NxNode* node) {
  if (!node) {
    NxDebugError::post("NxChildList::set", "A null node cannot be a child.");
    return;
  }
  if (!isInRange(index, getLength(), "NxChildList::set")) return;
  acquire(node);
  release(std::exchange(m_nodes[static_cast<size_t>(index)], node));
  m_owner->startNotify();
}

void NxChildList::remove(int index) {
  if (!isInRange(index, getLength(), "NxChildList::remove")) return;
  NxNode* const node = m_nodes[static_cast<size_t>(index)];
  m_nodes.erase(m_nodes.begin() + index);
  release(node);
  m_owner->startNotify();
}

void NxChildList::truncate(int length) {
  if (!isInRange(length, getLength() + 1, "NxChildList::truncate") || length == getLength()) return;
  const std::vector<NxNode*> removed(m_nodes.begin() + length, m_nodes.end());
  m_nodes.resize(static_cast<size_t>(length));
  for (NxNode* node : removed)
    release(node);
  m_owner->startNotify();
}

void NxChildList::traverse(NxAction* action) { traverse(action, 0, getLength() - 1); }

void NxChildList::traverse(NxAction* action, int first, int last) {
  switch (action->getPathCode()) {
  case NxAction::NO_PATH:
  case NxAction::BELOW_PATH:
    // The length is asked again each time: a node may change the list while it is traversed.
    for (int i = first; i <= last && i < getLength() && !action->hasTerminated(); ++i)
      action->traverseChild(i, (*this)[i]);
    break;
  case NxAction::OFF_PATH:
  case NxAction::IN_PATH: {
    const int onPath = action->getPathCode() == NxAction::IN_PATH ? action->getPathChildIndex() : -1;
    const int end = onPath >= 0 ? std::min(last, onPath) : last;
    for (int i = first; i <= end && i < getLength() && !action->hasTerminated(); ++i)
      if (i == onPath || (*this)[i]->affectsState()) action->traverseChild(i, (*this)[i]);
    break;
  }
  }
}
