// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <vector>

/// The record of an action class: its type and the elements that its state carries, beside those of the class above.
/// Every record is known by its class's name as soon as its library is loaded.
struct NYX_CORE_API NxActionClass {
  const char* const name;
  NxActionClass* const parent; ///< Null for the root of the action classes.

  NxType classTypeId;

  NxActionClass(const char* className, NxActionClass* parentClass);

  void initClass();
  void exitClass();

  /// Makes states of this action class, and of those below it, carry an element. On one stack the last one counts.
  void enableElement(NxType elementType, int stackIndex);
  /// The element type for each stack, those of the classes above included; bad for none.
  std::vector<NxType> getEnabledElements() const;

  /// The record of the class with this name, or null.
  static NxActionClass* find(const char* name);
  /// Takes an element out of all action classes.
  static void disableElement(NxType elementType);
  /// A number that changes whenever an element is enabled or disabled anywhere.
  static int getEnabledVersion();

private:
  std::vector<NxType> m_enabled;
};

#define NX_ACTION_HEADER(Class)                                                                                        \
public:                                                                                                                \
  static void initClass() { s_class.initClass(); }                                                                     \
  static void exitClass() { s_class.exitClass(); }                                                                     \
  static NxType getClassTypeId() { return s_class.classTypeId; }                                                       \
  static NxActionClass& getActionClass() { return s_class; }                                                           \
  static void enableElement(NxType elementType, int stackIndex) { s_class.enableElement(elementType, stackIndex); }    \
  NxType getTypeId() const override;                                                                                   \
                                                                                                                       \
protected:                                                                                                             \
  const NxActionClass& getRecord() const override;                                                                     \
                                                                                                                       \
private:                                                                                                               \
  static NxActionClass s_class

#define NX_ACTION_SOURCE(Class, Parent)                                                                                \
  NxActionClass Class::s_class(#Class, &Parent::getActionClass());                                                     \
  NxType Class::getTypeId() const { return s_class.classTypeId; }                                                      \
  const NxActionClass& Class::getRecord() const { return s_class; }
