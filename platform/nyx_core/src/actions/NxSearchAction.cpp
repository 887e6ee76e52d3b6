// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxSearchAction.h>

#include <Nyx/nodes/NxNode.h>

NX_ACTION_SOURCE(NxSearchAction, NxAction)

NxSearchAction::NxSearchAction() = default;

NxSearchAction::~NxSearchAction() = default;

void NxSearchAction::setType(NxType type, bool derivedIsOk) {
  m_type = type;
  m_derivedIsOk = derivedIsOk;
}

void NxSearchAction::reset() {
  m_node = nullptr;
  m_type = NxType::badType();
  m_name = NbName();
  m_interest = FIRST;
  m_derivedIsOk = true;
  m_isSearchingAll = false;
  m_paths.clear();
}

NxPath* NxSearchAction::getPath() const {
  return m_interest == ALL || m_paths.empty() ? nullptr : m_paths.front().get();
}

bool NxSearchAction::isWanted(const NxNode* node) const {
  if (m_node && m_node != node) return false;
  if (!m_name.isEmpty() && m_name != node->getName()) return false;
  return m_type.isBad() || (m_derivedIsOk ? node->isOfType(m_type) : node->getTypeId() == m_type);
}

void NxSearchAction::addCurrentPath() {
  if (m_interest == LAST) m_paths.clear();
  m_paths.push_back(getCurPath());
  if (m_interest == FIRST) terminate();
}

void NxSearchAction::beginTraversal(NxNode* root) {
  m_paths.clear();
  traverse(root);
}

void NxSearchAction::callNode(NxNode* node) { node->search(this); }
