// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>
#include <Nyx/misc/NyxCoreExport.h>

/// Root of all classes with a run-time type.
class NYX_CORE_API NxTypedObject {
public:
  virtual ~NxTypedObject();

  virtual NxType getTypeId() const = 0;
  bool isOfType(NxType type) const { return getTypeId().isDerivedFrom(type); }

  /// Checks at the construction of an object that its class is registered as it believes to be. A stored type that
  /// the registry has replaced by a newer one of the same name is brought up to date; one that the registry does not
  /// know is posted as an error. `classType` is what the class answers to getClassTypeId, `storedType` the static
  /// behind it.
  static void checkDatabase(const char* className, const void* object, NxType classType, NxType& storedType);
};
