// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>

class NxElement;

/// The record of an element class: its static data and what registration and construction of all element classes have
/// in common. The macros below declare one record a class and forward to it.
struct NYX_CORE_API NxElementClass {
  const char* const name;
  NxElementClass* const parent;        ///< Null for the root of the element classes.
  void (*const init)();                ///< The initClass of the class itself.
  const NxType::CreateFunction create; ///< Null for an abstract class.

  NxType classTypeId;       ///< Bad until initClass and again after exitClass.
  int classStackIndex = 0;  ///< 0 until registered; negative for a class without a stack of its own.
  uint16_t classElementKey; ///< Survives exitClass, so that a class keeps its key for the life of the process.

  NxElementClass(const char* className, NxElementClass* parentClass, void (*initFunction)(),
                 NxType::CreateFunction createFunction);

  /// Registers the type, takes a stack index and an element key, and enables the element in the actions that carry
  /// elements. A parent that is not registered yet is posted as an error and registered first.
  void initClass();
  /// Takes the type out; posts an error and changes nothing when it is not registered.
  void exitClass();
  /// The class's share in the construction of an instance.
  void construct(NxElement* element);
};

// What an element class declares and forwards. NX_ELEMENT_HEADER declares the default constructor and NX_ELEMENT_SOURCE
// defines it, so that data members state their values in place:
//
//   class NxThingElement : public NxReplacedElement {     NX_ELEMENT_SOURCE(NxThingElement, NxReplacedElement)
//     NX_ELEMENT_HEADER(NxThingElement);
//   ...
//
// `Parent` is the nearest registered class above; templates in between are left out.

#define NX_ELEMENT_ABSTRACT_HEADER(Class)                                                                              \
public:                                                                                                                \
  static void initClass();                                                                                             \
  static void exitClass();                                                                                             \
  static NxType getClassTypeId() { return s_class.classTypeId; }                                                       \
  static int getClassStackIndex() { return s_class.classStackIndex; }                                                  \
  static uint16_t getClassElementKey() { return s_class.classElementKey; }                                             \
  static NxElementClass& getElementClass() { return s_class; }                                                         \
  uint16_t getElementKey() const override;                                                                             \
  int getClassStackIndexInternal() const override;                                                                     \
                                                                                                                       \
protected:                                                                                                             \
  Class();                                                                                                             \
                                                                                                                       \
private:                                                                                                               \
  static NxElementClass s_class

#define NX_ELEMENT_HEADER(Class)                                                                                       \
  NX_ELEMENT_ABSTRACT_HEADER(Class);                                                                                   \
  static NxTypedObject* createInstance()

#define NX_ELEMENT_SOURCE_WITH(Class, Parent, create)                                                                  \
  NxElementClass Class::s_class(#Class, &Parent::getElementClass(), &Class::initClass, create);                        \
  void Class::initClass() { s_class.initClass(); }                                                                     \
  void Class::exitClass() { s_class.exitClass(); }                                                                     \
  uint16_t Class::getElementKey() const { return s_class.classElementKey; }                                            \
  int Class::getClassStackIndexInternal() const { return s_class.classStackIndex; }                                    \
  Class::Class() { s_class.construct(this); }

#define NX_ELEMENT_SOURCE(Class, Parent)                                                                               \
  NX_ELEMENT_SOURCE_WITH(Class, Parent, &Class::createInstance)                                                        \
  NxTypedObject* Class::createInstance() { return new Class; }
#define NX_ELEMENT_ABSTRACT_SOURCE(Class, Parent) NX_ELEMENT_SOURCE_WITH(Class, Parent, nullptr)
