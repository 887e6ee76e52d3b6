// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxField.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <utility>

/// Root of the fields with one value.
class NYX_CORE_API NxSField : public NxField {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();

private:
  static NxType s_classTypeId;
};

/// A field with one value of type T.
template <class T>
class NxSFieldOf : public NxSField {
public:
  using ValueType = T;

  const T& getValue() const { return m_value; }
  /// Sets the value; a change even when it is equal. The container may refuse it (validateNewFieldValue).
  void setValue(const T& value) {
    if (!isNewValueAccepted(&value)) return;
    m_value = value;
    valueChanged();
  }

  void copyFrom(const NxField& field) override;
  bool isSame(const NxField& field) const override;

protected:
  NxSFieldOf() = default;
  bool readText(NxTextScanner& scanner) override;
  void writeText(std::string& text) const override;

  T m_value{};
};
