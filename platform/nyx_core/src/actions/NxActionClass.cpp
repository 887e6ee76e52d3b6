// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxActionClass.h>

#include <algorithm>
#include <cstring>

namespace {

/// In a function, because records are static objects of several files.
std::vector<NxActionClass*>& records() {
  static std::vector<NxActionClass*>& list = *new std::vector<NxActionClass*>;
  return list;
}

int enabledVersion = 0;

} // namespace

NxActionClass::NxActionClass(const char* className, NxActionClass* parentClass)
    : name(className)
    , parent(parentClass) {
  records().push_back(this);
}

void NxActionClass::initClass() {
  classTypeId = NxType::createType(parent ? parent->classTypeId : NxType::badType(), name);
}

void NxActionClass::exitClass() {
  NxType::removeType(name);
  classTypeId = NxType::badType();
}

void NxActionClass::enableElement(NxType elementType, int stackIndex) {
  const auto index = static_cast<size_t>(stackIndex);
  if (m_enabled.size() <= index) m_enabled.resize(index + 1);
  m_enabled[index] = elementType;
  ++enabledVersion;
}

std::vector<NxType> NxActionClass::getEnabledElements() const {
  std::vector<NxType> elements = parent ? parent->getEnabledElements() : std::vector<NxType>();
  elements.resize(std::max(elements.size(), m_enabled.size()));
  for (size_t i = 0; i < m_enabled.size(); ++i)
    if (!m_enabled[i].isBad()) elements[i] = m_enabled[i];
  return elements;
}

NxActionClass* NxActionClass::find(const char* name) {
  for (NxActionClass* record : records())
    if (std::strcmp(record->name, name) == 0) return record;
  return nullptr;
}

void NxActionClass::disableElement(NxType elementType) {
  for (NxActionClass* record : records())
    std::replace(record->m_enabled.begin(), record->m_enabled.end(), elementType, NxType::badType());
  ++enabledVersion;
}

int NxActionClass::getEnabledVersion() { return enabledVersion; }
