// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/caches/NxCache.h>

#include <Nyx/base/NxPreferences.h>
#include <Nyx/elements/NxElement.h>
#include <Nyx/misc/NxState.h>

#include <algorithm>
#include <atomic>

namespace {

std::atomic<bool>& debugging() {
  static std::atomic<bool> value{NxPreferences::getBool("NYX_DEBUG_CACHE", false)};
  return value;
}

} // namespace

NxCache::NxCache(const NxState*) {}

NxCache::~NxCache() = default;

void NxCache::addElement(const NxElement* element) {
  if (!element) return;
  const bool isKnown =
      std::any_of(m_elements.begin(), m_elements.end(), [element](const std::unique_ptr<const NxElement>& recorded) {
        return recorded->getStackIndex() == element->getStackIndex();
      });
  if (!isKnown) m_elements.emplace_back(element->copyMatchInfo());
}

bool NxCache::isValid(const NxState* state) const {
  if (m_isInvalidated) return false;
  return std::all_of(m_elements.begin(), m_elements.end(), [state](const std::unique_ptr<const NxElement>& recorded) {
    const NxElement* present = state->getConstElement(recorded->getTypeId(), recorded->getStackIndex(), false);
    return present && recorded->matches(present);
  });
}

const NxElement* NxCache::getInvalidElement(const NxState* state) const {
  for (const std::unique_ptr<const NxElement>& recorded : m_elements) {
    const NxElement* present = state->getConstElement(recorded->getTypeId(), recorded->getStackIndex(), false);
    if (present && !recorded->matches(present)) return present;
  }
  return nullptr;
}

bool NxCache::isDebuggingCache() { return debugging(); }

void NxCache::setDebuggingCache(bool isDebugging) { debugging() = isDebugging; }
