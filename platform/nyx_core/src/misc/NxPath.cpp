// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxPath.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxChildList.h>

#include <algorithm>

NxType NxPath::s_classTypeId;

void NxPath::initClass() { s_classTypeId = NxType::createType(NxBase::getClassTypeId(), "NxPath"); }

void NxPath::exitClass() {
  NxType::removeType("NxPath");
  s_classTypeId = NxType::badType();
}

NxType NxPath::getClassTypeId() { return s_classTypeId; }

NxType NxPath::getTypeId() const { return s_classTypeId; }

NxPath::~NxPath() = default;

NxFullPath::~NxFullPath() = default;

NxPath* NxPath::create(NxNode* head) {
  NxPath* const path = new NxFullPath;
  if (head) path->appendUnchecked(head, 0);
  return path;
}

NxPath* NxPath::copy() const {
  NxPath* const path = create();
  path->m_nodes = m_nodes;
  path->m_indices = m_indices;
  return path;
}

const NxFullPath* NxPath::getFullPath() const { return static_cast<const NxFullPath*>(this); }

NxFullPath* NxPath::getFullPath() { return static_cast<NxFullPath*>(this); }

int NxPath::getLength() const {
  const auto hiding = std::find_if(m_nodes.begin(), m_nodes.end(), [](const NbRefPtr<NxNode>& node) {
    return node->getChildren() && !node->isGroup();
  });
  return static_cast<int>(hiding == m_nodes.end() ? m_nodes.size() : hiding - m_nodes.begin() + 1);
}

NxNode* NxPath::getTail() const { return getNode(getLength() - 1); }

NxNode* NxPath::getNode(int index) const { return index < getLength() ? getFullPath()->getNode(index) : nullptr; }

int NxPath::getIndex(int index) const { return index < getLength() ? getFullPath()->getIndex(index) : -1; }

bool NxPath::containsNode(const NxNode* node) const {
  for (int i = 0, length = getLength(); i < length; ++i)
    if (m_nodes[static_cast<size_t>(i)].get() == node) return true;
  return false;
}

void NxPath::appendUnchecked(NxNode* node, int childIndex) {
  m_nodes.emplace_back(node);
  m_indices.push_back(childIndex);
}

void NxPath::append(int childIndex) {
  const NxChildList* const children = m_nodes.empty() ? nullptr : m_nodes.back()->getChildren();
  if (children && childIndex >= 0 && childIndex < children->getLength())
    appendUnchecked((*children)[childIndex], childIndex);
  else
    NxDebugError::post("NxPath::append", "The end of the path has no child %d.", childIndex);
}

void NxPath::append(NxNode* child) {
  if (child && m_nodes.empty()) {
    appendUnchecked(child, 0);
    return;
  }
  const NxChildList* const children = m_nodes.empty() ? nullptr : m_nodes.back()->getChildren();
  const int index = children ? children->find(child) : -1;
  if (index >= 0)
    appendUnchecked(child, index);
  else
    NxDebugError::post("NxPath::append", "The node %p is no child of the end of the path.", static_cast<void*>(child));
}

void NxPath::truncate(int length) {
  const auto num = static_cast<size_t>(std::max(length, 0));
  if (num >= m_nodes.size()) return;
  m_nodes.resize(num);
  m_indices.resize(num);
}

bool operator==(const NxPath& a, const NxPath& b) {
  return a.m_indices == b.m_indices &&
         std::equal(a.m_nodes.begin(), a.m_nodes.end(), b.m_nodes.begin(), b.m_nodes.end(),
                    [](const NbRefPtr<NxNode>& x, const NbRefPtr<NxNode>& y) { return x.get() == y.get(); });
}

NxNode* NxFullPath::getNode(int index) const {
  return index >= 0 && index < getLength() ? m_nodes[static_cast<size_t>(index)].get() : nullptr;
}

int NxFullPath::getIndex(int index) const {
  return index >= 0 && index < getLength() ? m_indices[static_cast<size_t>(index)] : -1;
}
