// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRenderEngineMode.h>
#include <Nyx/base/NbThreadMutex.h>
#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <mutex>

class NxField;
class NxFieldContainer;
class NxFieldData;
class NxSFEnum;

/// The record of a node class: its static data and the operations of registration and construction that every node
/// class shares. The macros of NxNodeMacros.h declare one record a class and forward to it; nothing else is in them.
///
/// `classMutex` guards fieldData, parentFieldData and firstInstance: two threads may construct instances of one class
/// at the same time.
struct NYX_CORE_API NxNodeClass {
  const char* const name;
  const char* const sourceFile;        ///< Origin of messages about missing constructor macros.
  NxNodeClass* const parent;           ///< Null for the root of the node classes.
  void (*const init)();                ///< The initClass of the class itself.
  const NxType::CreateFunction create; ///< Null for an abstract class.
  const int isBuiltIn;                 ///< 1 for the toolkit's own classes.

  NxType classTypeId;                      ///< Bad until initClass and again after exitClass.
  NxFieldData* fieldData = nullptr;        ///< Made by the first instance.
  NxFieldData** parentFieldData = nullptr; ///< Address of the parent's fieldData.
  int firstInstance = 1;                   ///< 1 until a second instance has been constructed.
  NbThreadMutex classMutex;
  NbRenderEngineMode renderEngineMode;

  constexpr NxNodeClass(const char* className, const char* file, NxNodeClass* parentClass, void (*initFunction)(),
                        NxType::CreateFunction createFunction, int builtIn)
      : name(className)
      , sourceFile(file)
      , parent(parentClass)
      , init(initFunction)
      , create(createFunction)
      , isBuiltIn(builtIn) {}

  /// Registers the type. A parent that is not registered yet is posted as an error and registered first.
  void initClass();
  /// Takes the type out; posts an error and changes nothing when it is not registered.
  void exitClass();

  /// The class's share in the construction of an instance: initialises the class if that was forgotten, and makes the
  /// field table with the first instance.
  void construct(NxFieldContainer* instance);

  /// Puts a member field into the field table, gives it its default value and its container. `setDefault` is called
  /// without arguments and sets the value.
  template <class SetDefault>
  void addField(NxFieldContainer* instance, const char* fieldName, NxField& field, SetDefault setDefault) {
    const std::lock_guard<NbThreadMutex> lock(classMutex);
    registerField(instance, fieldName, field);
    setDefault();
    adoptField(instance, field);
  }

  /// Adds an enumerator to an enumeration of the class's table.
  void addEnumValue(const char* enumType, const char* valueName, int value);
  /// Gives a field the enumerators that were added for `enumType`.
  void setEnumType(NxSFEnum& field, const char* fieldName, const char* enumType, const char* file, int line);

  /// The field table; made, with a posted error, if no instance has been constructed properly.
  const NxFieldData* getFieldData();
  /// The address of the field table.
  NxFieldData** getFieldDataPtr();

private:
  void registerField(NxFieldContainer* instance, const char* fieldName, const NxField& field);
  static void adoptField(NxFieldContainer* instance, NxField& field);
  void makeFieldData();
  void requireFieldData(const char* origin);
};
