// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxSFEnum.h>

#include "NxTextScanner.h"

#include <Nyx/base/NxDebugError.h>

#include <algorithm>
#include <string>

bool NxSFEnum::isEnumerator(int value) const {
  return m_values.empty() || std::find(m_values.begin(), m_values.end(), value) != m_values.end();
}

void NxSFEnum::setValue(int value) {
  if (isEnumerator(value))
    NxSFieldOf<int>::setValue(value);
  else
    NxDebugError::post("NxSFEnum::setValue", "%d is none of the %d enumerators.", value, getNumEnums());
}

void NxSFEnum::setValue(const NbName& name) {
  const auto found = std::find(m_names.begin(), m_names.end(), name);
  if (found != m_names.end())
    NxSFieldOf<int>::setValue(m_values[static_cast<size_t>(found - m_names.begin())]);
  else
    NxDebugError::post("NxSFEnum::setValue", "%s is none of the %d enumerators.", name.getString(), getNumEnums());
}

void NxSFEnum::setEnums(int num, const int* values, const NbName* names) {
  m_values.assign(values, values + num);
  m_names.assign(names, names + num);
}

int NxSFEnum::getEnum(int index, NbName& name) const {
  name = m_names[static_cast<size_t>(index)];
  return m_values[static_cast<size_t>(index)];
}

NbName NxSFEnum::getEnumName(int value) const {
  const auto found = std::find(m_values.begin(), m_values.end(), value);
  return found == m_values.end() ? NbName() : m_names[static_cast<size_t>(found - m_values.begin())];
}

void NxSFEnum::copyFrom(const NxField& field) {
  const auto& other = static_cast<const NxSFEnum&>(field);
  if (m_values.empty()) {
    m_values = other.m_values;
    m_names = other.m_names;
  }
  NxSFieldOf<int>::copyFrom(field);
}

bool NxSFEnum::readText(NxTextScanner& scanner) {
  const std::string word(scanner.readWord());
  const auto found = std::find(m_names.begin(), m_names.end(), NbName(word));
  if (found != m_names.end()) {
    setValue(m_values[static_cast<size_t>(found - m_names.begin())]);
    return true;
  }
  NxTextScanner number(word);
  int value;
  if (!number.readNumber(value) || !isEnumerator(value)) return false;
  setValue(value);
  return true;
}

void NxSFEnum::writeText(std::string& text) const {
  const NbName name = getEnumName(getValue());
  if (name.isEmpty())
    NxSFieldOf<int>::writeText(text);
  else
    text += name.getString();
}
