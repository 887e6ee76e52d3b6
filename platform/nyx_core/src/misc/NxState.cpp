// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxState.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/caches/NxCache.h>
#include <Nyx/elements/NxElement.h>

NxState::NxState(NxAction* action, const std::vector<NxType>& elements)
    : m_action(action)
    , m_bottoms(elements.size(), nullptr)
    , m_tops(elements.size(), nullptr) {
  for (size_t i = 0; i < elements.size(); ++i)
    if (elements[i].canCreateInstance())
      m_bottoms[i] = m_tops[i] = static_cast<NxElement*>(elements[i].createInstance());
  // Only now: the first value of an element may come from another.
  for (NxElement* element : m_bottoms)
    if (element) element->init(this);
}

NxState::~NxState() {
  for (NxElement* element : m_bottoms)
    while (element) {
      NxElement* const above = element->m_above;
      delete element;
      element = above;
    }
}

NxElement* NxState::getTop(int stackIndex) const {
  const auto index = static_cast<size_t>(stackIndex);
  return stackIndex >= 0 && index < m_tops.size() ? m_tops[index] : nullptr;
}

bool NxState::isElementEnabled(int stackIndex) const { return getTop(stackIndex) != nullptr; }

void NxState::pop() {
  if (m_levels.empty()) {
    NxDebugError::post("NxState::pop", "There is no push() left to undo.");
    return;
  }
  const size_t begin = m_levels.back();
  m_levels.pop_back();
  while (m_touched.size() > begin) {
    NxElement*& top = m_tops[static_cast<size_t>(m_touched.back())];
    m_touched.pop_back();
    const NxElement* const former = top;
    top = top->m_below;
    top->pop(this, former);
  }
}

NxElement* NxState::getElement(int stackIndex) {
  NxElement* top = getTop(stackIndex);
  const int depth = getDepth();
  if (!top || top->m_depth == depth) return top;
  NxElement* above = top->m_above;
  if (!above) {
    above = top->createSame();
    above->m_below = top;
    top->m_above = above;
  }
  above->m_depth = depth;
  above->push(this);
  m_tops[static_cast<size_t>(stackIndex)] = above;
  m_touched.push_back(stackIndex);
  return above;
}

const NxElement* NxState::getConstElement(NxType type, int stackIndex, bool record) const {
  const NxElement* const top = getTop(stackIndex);
  if (!top || (top->getTypeId() != type && !top->isOfType(type))) return nullptr;
  if (record)
    for (const OpenCache& open : m_openCaches)
      if (top->m_depth < open.depth) open.cache->addElement(top);
  return top;
}

void NxState::openCache(NxCache* cache) { m_openCaches.push_back({cache, getDepth()}); }

void NxState::closeCache() {
  if (m_openCaches.empty())
    NxDebugError::post("NxState::closeCache", "No cache is open.");
  else
    m_openCaches.pop_back();
}

void NxState::print(FILE* file) const {
  for (const NxElement* element : m_tops)
    if (element) element->print(file);
}
