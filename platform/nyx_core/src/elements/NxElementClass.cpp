// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/elements/NxElementClass.h>

#include <Nyx/actions/NxActionClass.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/elements/NxElement.h>

#include <string>

namespace {

/// The actions whose states carry every element, by name: an action class need not be known here to be given
/// elements.
constexpr const char* actionNames[] = {
    "NxCallbackAction",    "NxGLRenderAction",       "NxGetMatrixAction",
    "NxSearchAction",      "NxGetBoundingBoxAction", "NxWriteAction",
    "NxHandleEventAction", "NxPickAction",           "NxGetPrimitiveCountAction",
};

} // namespace

NxElementClass::NxElementClass(const char* className, NxElementClass* parentClass, void (*initFunction)(),
                               NxType::CreateFunction createFunction)
    : name(className)
    , parent(parentClass)
    , init(initFunction)
    , create(createFunction)
    , classElementKey(NxElement::badElementKey()) {}

void NxElementClass::initClass() {
  if (parent && parent->classTypeId.isBad()) {
    NxDebugError::post((std::string(name) + "::initClass").c_str(), "%s initialized before parent class %s\n", name,
                       parent->name);
    parent->init();
  }
  classTypeId = NxType::createType(parent ? parent->classTypeId : NxType::badType(), name, create, 0);

  if (!create) {
    // Values are on the stacks of the classes below.
    classStackIndex = -1;
    return;
  }
  if (classStackIndex == 0)
    classStackIndex = parent->classStackIndex >= 0 ? parent->classStackIndex : NxElement::createStackIndex(classTypeId);
  if (classElementKey == NxElement::badElementKey()) classElementKey = NxElement::createElementKey();
  for (const char* actionName : actionNames)
    if (NxActionClass* action = NxActionClass::find(actionName)) action->enableElement(classTypeId, classStackIndex);
}

void NxElementClass::exitClass() {
  if (!NxType::removeType(name)) {
    NxDebugError::post((std::string(name) + "::exitClass").c_str(),
                       "Unable to remove type (%s) for this class. Check exitClass() method is implemented and is "
                       "called only once.\n",
                       name);
    return;
  }
  NxActionClass::disableElement(classTypeId);
  classTypeId = NxType::badType();
  classStackIndex = 0;
}

void NxElementClass::construct(NxElement* element) {
  if (classTypeId.isBad()) {
    NxDebugError::post("Element Constructor", "Can't construct an element of type %s until initClass() has been called",
                       name);
    init();
  }
  NxTypedObject::checkDatabase(name, element, classTypeId, classTypeId);
  element->commonInit();
  element->setTypeId(classTypeId);
  element->setStackIndex(classStackIndex);
}
