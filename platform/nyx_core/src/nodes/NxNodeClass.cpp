// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxNodeClass.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/fields/NxFieldContainer.h>
#include <Nyx/fields/NxFieldData.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/nodes/NxNode.h>

#include <string>

namespace {

constexpr const char* notConstructed =
    "Instance not properly constructed.\nDid you forget to put NX_NODE_CONSTRUCTOR() in the constructor?";

} // namespace

void NxNodeClass::initClass() {
  const std::lock_guard<NbThreadMutex> lock(classMutex);
  renderEngineMode.setRenderMode(NbRenderEngineMode::NYX_RENDERING);
  if (parent && parent->renderEngineMode.isChildrenInherit()) renderEngineMode.setChildrenInherit(true);
  if (parent && parent->classTypeId.isBad()) {
    NxDebugError::post((std::string(name) + "::initClass").c_str(), "%s initialized before parent class %s\n", name,
                       parent->name);
    parent->init();
  }
  const int actionMethodIndex = NxNode::getNextActionMethodIndex();
  const NxType parentType = parent ? NxType::fromName(parent->name) : NxFieldContainer::getClassTypeId();
  classTypeId = NxType::createType(parentType, name, create, actionMethodIndex);
  if (!parentFieldData) NxNode::incNextActionMethodIndex();
  if (parent) parentFieldData = parent->getFieldDataPtr();
}

void NxNodeClass::exitClass() {
  if (!NxType::removeType(name)) {
    NxDebugError::post((std::string(name) + "::exitClass").c_str(),
                       "Unable to remove type (%s) for this class. Check exitClass() method is implemented and is "
                       "called only once.\n",
                       name);
    return;
  }
  classTypeId = NxType::badType();
  delete fieldData;
  fieldData = nullptr;
  parentFieldData = nullptr;
  firstInstance = 1;
}

void NxNodeClass::construct(NxFieldContainer* instance) {
  std::unique_lock<NbThreadMutex> lock(classMutex);
  if (classTypeId.isBad()) {
    NxDebugError::post("NX_NODE_CONSTRUCTOR", "Can't construct a node of type %s until initClass() has been called",
                       name);
    lock.unlock(); // initClass takes it.
    init();
    lock.lock();
  }
  NxTypedObject::checkDatabase(name, instance, classTypeId, classTypeId);
  if (!fieldData)
    makeFieldData();
  else
    firstInstance = 0;
}

void NxNodeClass::makeFieldData() { fieldData = new NxFieldData(parentFieldData ? *parentFieldData : nullptr); }

void NxNodeClass::requireFieldData(const char* origin) {
  if (fieldData) return;
  NxDebugError::post(origin, "%s", notConstructed);
  makeFieldData();
}

void NxNodeClass::registerField(NxFieldContainer* instance, const char* fieldName, const NxField& field) {
  requireFieldData(sourceFile);
  // A second thread may have ended the first-instance state while the first instance was still adding its fields.
  if (firstInstance != 0 || fieldData->getIndex(instance, &field) < 0) fieldData->addField(instance, fieldName, &field);
}

void NxNodeClass::adoptField(NxFieldContainer* instance, NxField& field) {
  field.setDefault(true);
  field.setContainer(instance);
  field.setFieldType(NxField::EXPOSED_FIELD);
}

void NxNodeClass::addEnumValue(const char* enumType, const char* valueName, int value) {
  const std::lock_guard<NbThreadMutex> lock(classMutex);
  requireFieldData(sourceFile);
  fieldData->addEnumValue(enumType, valueName, value);
}

void NxNodeClass::setEnumType(NxSFEnum& field, const char* fieldName, const char* enumType, const char* file,
                              int line) {
  const std::lock_guard<NbThreadMutex> lock(classMutex);
  requireFieldData(sourceFile);
  int num;
  const int* values;
  const NbName* names;
  fieldData->getEnumData(enumType, num, values, names);
  if (num == 0 && firstInstance != 0)
    NxDebugError::post("NX_SET_SF_ENUM_TYPE",
                       "Field %s (%s, line %d): Did you forget to use NX_%s_DEFINE_ENUM_VALUE(%s, ...)?", fieldName,
                       file, line, "NODE", enumType);
  field.setEnums(num, values, names);
}

const NxFieldData* NxNodeClass::getFieldData() {
  const std::lock_guard<NbThreadMutex> lock(classMutex);
  requireFieldData(name);
  return fieldData;
}

NxFieldData** NxNodeClass::getFieldDataPtr() {
  const std::lock_guard<NbThreadMutex> lock(classMutex);
  return &fieldData;
}
