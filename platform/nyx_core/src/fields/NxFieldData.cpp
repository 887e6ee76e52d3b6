// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxFieldData.h>

#include <Nyx/fields/NxField.h>
#include <Nyx/fields/NxFieldContainer.h>

#include <algorithm>

namespace {

ptrdiff_t offsetOf(const NxFieldContainer* container, const NxField* field) {
  return reinterpret_cast<const char*>(field) - reinterpret_cast<const char*>(container);
}

} // namespace

NxFieldData::NxFieldData(const NxFieldData* parent) {
  if (parent) *this = *parent;
}

void NxFieldData::addField(const NxFieldContainer* container, const char* name, const NxField* field) {
  if (getIndex(NbName(name)) < 0) m_fields.push_back({NbName(name), offsetOf(container, field)});
}

NxField* NxFieldData::getField(const NxFieldContainer* container, int index) const {
  const char* const base = reinterpret_cast<const char*>(container);
  return reinterpret_cast<NxField*>(const_cast<char*>(base + m_fields[static_cast<size_t>(index)].offset));
}

int NxFieldData::getIndex(const NxFieldContainer* container, const NxField* field) const {
  const ptrdiff_t offset = offsetOf(container, field);
  for (size_t i = 0; i < m_fields.size(); ++i)
    if (m_fields[i].offset == offset) return static_cast<int>(i);
  return -1;
}

int NxFieldData::getIndex(const NbName& name) const {
  for (size_t i = 0; i < m_fields.size(); ++i)
    if (m_fields[i].name == name) return static_cast<int>(i);
  return -1;
}

void NxFieldData::addEnumValue(const char* typeName, const char* valueName, int value) {
  const NbName type(typeName);
  auto found = std::find_if(m_enumerations.begin(), m_enumerations.end(),
                            [&type](const Enumeration& candidate) { return candidate.typeName == type; });
  if (found == m_enumerations.end()) found = m_enumerations.insert(found, Enumeration{type, {}, {}});
  const NbName name(valueName);
  if (std::find(found->names.begin(), found->names.end(), name) != found->names.end()) return;
  found->values.push_back(value);
  found->names.push_back(name);
}

void NxFieldData::getEnumData(const char* typeName, int& num, const int*& values, const NbName*& names) const {
  const NbName type(typeName);
  num = 0;
  values = nullptr;
  names = nullptr;
  for (const Enumeration& enumeration : m_enumerations)
    if (enumeration.typeName == type) {
      num = static_cast<int>(enumeration.values.size());
      values = enumeration.values.data();
      names = enumeration.names.data();
    }
}
