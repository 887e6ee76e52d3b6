// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

/// The record of a detail class. Detail classes have no creation function and no fields, and registering one twice
/// makes a second type of the same name.
struct NYX_CORE_API NxDetailClass {
  const char* const name;
  NxDetailClass* const parent; ///< Null for the root of the detail classes.
  void (*const init)();        ///< The initClass of the class itself.

  NxType classTypeId; ///< Bad until initClass and again after exitClass.

  constexpr NxDetailClass(const char* className, NxDetailClass* parentClass, void (*initFunction)())
      : name(className)
      , parent(parentClass)
      , init(initFunction) {}

  /// Registers the type. A parent that is not registered yet is posted as an error and registered first.
  void initClass();
  /// Takes the type out; posts an error and changes nothing when it is not registered.
  void exitClass();
};

// What a detail class declares and forwards; `copy` is the class's own.

#define NX_DETAIL_HEADER(Class)                                                                                        \
public:                                                                                                                \
  static void initClass();                                                                                             \
  static void exitClass();                                                                                             \
  static NxType getClassTypeId() { return s_class.classTypeId; }                                                       \
  static NxDetailClass& getDetailClass() { return s_class; }                                                           \
  NxType getTypeId() const override;                                                                                   \
                                                                                                                       \
private:                                                                                                               \
  static NxDetailClass s_class

#define NX_DETAIL_SOURCE(Class, Parent)                                                                                \
  NxDetailClass Class::s_class(#Class, &Parent::getDetailClass(), &Class::initClass);                                  \
  void Class::initClass() { s_class.initClass(); }                                                                     \
  void Class::exitClass() { s_class.exitClass(); }                                                                     \
  NxType Class::getTypeId() const { return s_class.classTypeId; }
