// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxBaseInitializer.h>
#include <Nyx/nodes/NxNodeClass.h>

// What a node class declares and forwards. A node class `NxThing` below `NxNode` reads
//
//   class NxThing : public NxNode {            NX_NODE_SOURCE(NxThing, NxNode)
//     NX_NODE_HEADER(NxThing);
//   public:                                    NxThing::NxThing() {
//     enum Kind { SMALL, LARGE };                NX_NODE_CONSTRUCTOR(NxThing);
//     NxSFFloat size; ///< Default 1.            NX_NODE_ADD_FIELD(size, (1.f));
//     NxSFEnum kind;  ///< Default SMALL.        NX_NODE_ADD_FIELD(kind, (SMALL));
//     NxMFFloat data; ///< Empty by default.     NX_NODE_ADD_EMPTY_FIELD(data);
//     NxThing();                                 NX_NODE_DEFINE_ENUM_VALUE(Kind, SMALL);
//   };                                           NX_NODE_DEFINE_ENUM_VALUE(Kind, LARGE);
//                                                NX_SET_SF_ENUM_TYPE(kind, Kind);
//                                              }
//
// A class that does more in initClass or exitClass than its record writes NX_NODE_RECORD (or NX_NODE_ABSTRACT_RECORD)
// in place of NX_NODE_SOURCE and defines those two itself, calling s_class.initClass() and s_class.exitClass().

#ifdef NYX_CORE_BUILD
#define NX_CLASSES_ARE_BUILT_IN 1
#else
#define NX_CLASSES_ARE_BUILT_IN 0
#endif

#define NX_NODE_ABSTRACT_HEADER(Class)                                                                                 \
public:                                                                                                                \
  static void initClass();                                                                                             \
  static void exitClass();                                                                                             \
  static NxType getClassTypeId() { return s_class.classTypeId; }                                                       \
  static NbRenderEngineMode& getClassRenderEngineMode() { return s_class.renderEngineMode; }                           \
  static NxFieldData** getFieldDataPtr() { return s_class.getFieldDataPtr(); }                                         \
  static NxNodeClass& getNodeClass() { return s_class; }                                                               \
  NxType getTypeId() const override;                                                                                   \
  int getIsBuiltIn() const override;                                                                                   \
  const NxFieldData* getFieldData() const override;                                                                    \
  NbRenderEngineMode& getRenderEngineMode() const override;                                                            \
                                                                                                                       \
private:                                                                                                               \
  static NxNodeClass s_class

#define NX_NODE_HEADER(Class)                                                                                          \
  NX_NODE_ABSTRACT_HEADER(Class);                                                                                      \
  static NxTypedObject* createInstance()

#define NX_NODE_RECORD_WITH(Class, Parent, create)                                                                     \
  NxNodeClass Class::s_class(#Class, __FILE__, Parent, &Class::initClass, create, NX_CLASSES_ARE_BUILT_IN);            \
  NxType Class::getTypeId() const { return s_class.classTypeId; }                                                      \
  int Class::getIsBuiltIn() const { return s_class.isBuiltIn; }                                                        \
  const NxFieldData* Class::getFieldData() const { return s_class.getFieldData(); }                                    \
  NbRenderEngineMode& Class::getRenderEngineMode() const { return getClassRenderEngineMode(); }

#define NX_NODE_RECORD(Class, Parent)                                                                                  \
  NX_NODE_RECORD_WITH(Class, &Parent::getNodeClass(), &Class::createInstance)                                          \
  NxTypedObject* Class::createInstance() { return new Class; }
#define NX_NODE_ABSTRACT_RECORD(Class, Parent) NX_NODE_RECORD_WITH(Class, &Parent::getNodeClass(), nullptr)

#define NX_NODE_REGISTRATION(Class)                                                                                    \
  void Class::initClass() { s_class.initClass(); }                                                                     \
  void Class::exitClass() { s_class.exitClass(); }

#define NX_NODE_SOURCE(Class, Parent)                                                                                  \
  NX_NODE_RECORD(Class, Parent)                                                                                        \
  NX_NODE_REGISTRATION(Class)
#define NX_NODE_ABSTRACT_SOURCE(Class, Parent)                                                                         \
  NX_NODE_ABSTRACT_RECORD(Class, Parent)                                                                               \
  NX_NODE_REGISTRATION(Class)

/// First statement of a constructor of a node class.
#define NX_NODE_CONSTRUCTOR(Class)                                                                                     \
  const NxBaseInitializer nxBaseInitializer(this);                                                                     \
  Class::getNodeClass().construct(this)

/// Adds a field; `defaultArguments` are the arguments of its setValue, in parentheses.
#define NX_NODE_ADD_FIELD(field, defaultArguments)                                                                     \
  s_class.addField(this, #field, this->field, [this] { this->field.setValue defaultArguments; })
/// Adds a field that starts as it is constructed: without values, or null.
#define NX_NODE_ADD_EMPTY_FIELD(field) s_class.addField(this, #field, this->field, [] {})

/// Declares an enumerator, and gives a field the enumerators declared for its type.
#define NX_NODE_DEFINE_ENUM_VALUE(EnumType, value) s_class.addEnumValue(#EnumType, #value, static_cast<int>(value))
#define NX_SET_SF_ENUM_TYPE(field, EnumType) s_class.setEnumType(this->field, #field, #EnumType, __FILE__, __LINE__)
