// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbName.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/fields/NxSField.h>

#include <type_traits>
#include <vector>

/// A field with one of the enumerators that setEnums has named, kept as its number.
///
/// Once enumerators are declared, a number or name that is none of them posts an error and leaves the value.
class NYX_CORE_API NxSFEnum : public NxSFieldOf<int> {
  NX_FIELD_HEADER(NxSFEnum, NxSFieldOf<int>);

public:
  void setValue(int value);
  void setValue(const NbName& name);
  template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
  void setValue(E value) {
    setValue(static_cast<int>(value));
  }
  template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
  NxSFEnum& operator=(E value) {
    setValue(static_cast<int>(value));
    return *this;
  }
  /// The value as enumerator of type E.
  template <class E>
  E getValueAs() const {
    return static_cast<E>(getValue());
  }

  /// Declares the enumerators: `num` numbers and their names.
  void setEnums(int num, const int* values, const NbName* names);
  int getNumEnums() const { return static_cast<int>(m_values.size()); }
  /// The number and name of the enumerator at `index`, 0..getNumEnums()-1.
  int getEnum(int index, NbName& name) const;
  /// The name of an enumerator; empty for a number that is none.
  NbName getEnumName(int value) const;

  /// Takes the enumerators over as well when this field has none.
  void copyFrom(const NxField& field) override;

protected:
  bool readText(NxTextScanner& scanner) override;
  void writeText(std::string& text) const override;

private:
  bool isEnumerator(int value) const;

  std::vector<int> m_values;
  std::vector<NbName> m_names;
};
