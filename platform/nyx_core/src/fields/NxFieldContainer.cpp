// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxFieldContainer.h>

#include "NxTextScanner.h"

#include <Nyx/base/NxDebugError.h>
#include <Nyx/fields/NxField.h>
#include <Nyx/fields/NxFieldData.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxNotList.h>

#include <utility>

NxType NxFieldContainer::s_classTypeId;

void NxFieldContainer::initClass() { s_classTypeId = NxType::createType(NxBase::getClassTypeId(), "NxFieldContainer"); }

void NxFieldContainer::exitClass() {
  NxType::removeType("NxFieldContainer");
  s_classTypeId = NxType::badType();
}

NxType NxFieldContainer::getClassTypeId() { return s_classTypeId; }

NxFieldContainer::~NxFieldContainer() = default;

const NxFieldData* NxFieldContainer::getFieldData() const { return nullptr; }

int NxFieldContainer::getFields(std::vector<NxField*>& fields) const {
  getAllFields(fields);
  std::erase_if(fields, [](const NxField* field) { return field->getFieldType() == NxField::PRIVATE_FIELD; });
  return static_cast<int>(fields.size());
}

int NxFieldContainer::getAllFields(std::vector<NxField*>& fields) const {
  fields.clear();
  if (const NxFieldData* data = getFieldData())
    for (int i = 0; i < data->getNumFields(); ++i)
      fields.push_back(data->getField(this, i));
  return static_cast<int>(fields.size());
}

NxField* NxFieldContainer::getField(const NbName& name) const {
  const NxFieldData* const data = getFieldData();
  const int index = data ? data->getIndex(name) : -1;
  return index < 0 ? nullptr : data->getField(this, index);
}

bool NxFieldContainer::getFieldName(const NxField* field, NbName& name) const {
  const NxFieldData* const data = getFieldData();
  const int index = data ? data->getIndex(this, field) : -1;
  if (index < 0) return false;
  name = data->getFieldName(index);
  return true;
}

bool NxFieldContainer::set(const std::string& text) {
  NxTextScanner scanner(text);
  while (!scanner.isAtEnd()) {
    const std::string name(scanner.readWord());
    NxField* const field = getField(NbName(name));
    if (!field || !field->readText(scanner)) {
      NxDebugError::post("NxFieldContainer::set",
                         field ? "The field %s of %s has no value of this form." : "There is no field %s in %s.",
                         name.c_str(), getTypeId().getName().getString());
      return false;
    }
  }
  return true;
}

bool NxFieldContainer::enableNotify(bool enable) { return std::exchange(m_notifyEnabled, enable); }

void NxFieldContainer::fieldHasChanged(NxField* field) {
  NxNotList list(this, field);
  notify(&list);
}

bool NxFieldContainer::validateNewFieldValue(NxField*, const void*) { return true; }

void NxFieldContainer::notify(NxNotList* list) {
  if (m_notifyEnabled && !isConstructing()) NxBase::notify(list);
}

bool NxFieldContainer::fieldsAreEqual(const NxFieldContainer& other) const {
  if (other.getTypeId() != getTypeId()) return false;
  std::vector<NxField*> mine, others;
  getAllFields(mine);
  other.getAllFields(others);
  for (size_t i = 0; i < mine.size(); ++i)
    if (!mine[i]->isSame(*others[i])) return false;
  return true;
}

void NxFieldContainer::copyFieldValues(const NxFieldContainer& from, bool copyConnections) {
  std::vector<NxField*> mine, others;
  getAllFields(mine);
  from.getAllFields(others);
  if (mine.size() != others.size()) {
    NxDebugError::post("NxFieldContainer::copyFieldValues", "A %s has other fields than a %s.",
                       from.getTypeId().getName().getString(), getTypeId().getName().getString());
    return;
  }
  for (size_t i = 0; i < mine.size(); ++i) {
    mine[i]->copyFrom(*others[i]);
    if (copyConnections && others[i]->isConnected()) mine[i]->connectFrom(others[i]->getConnectedField());
  }
}

void NxFieldContainer::copyContents(const NxFieldContainer* from, bool copyConnections) {
  setName(from->getName());
  copyFieldValues(*from, copyConnections);
  std::vector<NxField*> fields;
  getAllFields(fields);
  for (NxField* field : fields)
    field->fixCopy();
}

void NxFieldContainer::addWriteReference(NxOutput* output, bool isFromField) {
  NxBase::addWriteReference(output, isFromField);
  if (hasMultipleWriteRefs()) return;
  std::vector<NxField*> fields;
  getFields(fields);
  for (const NxField* field : fields)
    if (!field->isDefault()) field->countWriteReferences(output);
}

void NxFieldContainer::writeFields(NxOutput& output) const {
  const NxFieldData* const data = getFieldData();
  if (!data) return;
  for (int i = 0; i < data->getNumFields(); ++i) {
    const NxField* const field = data->getField(this, i);
    if (field->getFieldType() == NxField::PRIVATE_FIELD || (field->isDefault() && !field->isIgnored())) continue;
    output.write(data->getFieldName(i).getString());
    output.write(" ");
    if (!field->isDefault()) field->writeValue(output);
    if (field->isIgnored()) output.write(field->isDefault() ? "~" : " ~");
    output.endLine();
  }
}
