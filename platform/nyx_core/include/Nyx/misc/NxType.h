// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbName.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <vector>

class NxTypedObject;

/// The run-time type of a class: a small value that is cheap to copy and to compare. Types form a tree; the default
/// value is the bad type, which stands for no type. May be used from any thread.
class NYX_CORE_API NxType {
public:
  using CreateFunction = NxTypedObject* (*)();

  constexpr NxType() = default;

  static constexpr NxType badType() { return NxType(); }
  /// The registered type of this name; bad when there is none.
  static NxType fromName(const NbName& name);

  /// Registers a type. `create` makes an instance of the class and is null for an abstract one; `data` is a word of
  /// the caller's choice. A name that is registered already is registered anew: the new type is the one that the name
  /// stands for from now on.
  static NxType createType(NxType parent, const NbName& name, CreateFunction create = nullptr, int data = 0);
  /// Takes the type of this name out of the registry; false when there is none. Values of the removed type keep their
  /// name and their parents, so that objects which are still alive go on working.
  static bool removeType(const NbName& name);

  bool isBad() const { return !m_entry; }
  /// True when the registry knows this very type under its name.
  bool isRegistered() const;
  /// The name; "BadType" for the bad type.
  NbName getName() const;
  NxType getParent() const;
  int getData() const;
  /// True for the type itself and for every type below it; false when either is bad.
  bool isDerivedFrom(NxType ancestor) const;

  bool canCreateInstance() const;
  /// A new instance, which the caller owns; null for an abstract or bad type.
  NxTypedObject* createInstance() const;

  /// All registered types that are derived from `ancestor`, which is one of them.
  static std::vector<NxType> getAllDerivedFrom(NxType ancestor);

  friend bool operator==(NxType a, NxType b) { return a.m_entry == b.m_entry; }
  friend bool operator!=(NxType a, NxType b) { return a.m_entry != b.m_entry; }
  /// Any fixed order, for use as a key.
  friend bool operator<(NxType a, NxType b) { return a.m_entry < b.m_entry; }

private:
  struct Entry;
  friend struct NxTypeRegistry;
  explicit NxType(const Entry* entry)
      : m_entry(entry) {}

  const Entry* m_entry = nullptr;
};
