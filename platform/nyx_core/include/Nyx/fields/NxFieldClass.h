// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxType.h>

/// Declares what each concrete field class needs for its run-time type, and its assignment from a value.
#define NX_FIELD_HEADER(Class, Base)                                                                                   \
public:                                                                                                                \
  Class() = default;                                                                                                   \
  Class& operator=(const ValueType& value) {                                                                           \
    setValue(value);                                                                                                   \
    return *this;                                                                                                      \
  }                                                                                                                    \
  static void initClass();                                                                                             \
  static void exitClass();                                                                                             \
  static NxType getClassTypeId();                                                                                      \
  NxType getTypeId() const override;                                                                                   \
  friend bool operator==(const Class& a, const Class& b) { return a.isSame(b); }                                       \
  friend bool operator!=(const Class& a, const Class& b) { return !a.isSame(b); }                                      \
                                                                                                                       \
private:                                                                                                               \
  static NxTypedObject* createInstance();                                                                              \
  static NxType s_classTypeId
