// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbName.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>
#include <vector>

class NxField;
class NxFieldContainer;

/// The field table of a class: names of the fields and where they lie in an instance, and the enumerations that they
/// use. One table serves all instances of the class.
class NYX_CORE_API NxFieldData {
public:
  NxFieldData() = default;
  /// A table that starts with the entries of another; null gives an empty one.
  explicit NxFieldData(const NxFieldData* parent);

  /// Adds a member field of `container`. Adding a name again changes nothing.
  void addField(const NxFieldContainer* container, const char* name, const NxField* field);
  int getNumFields() const { return static_cast<int>(m_fields.size()); }
  NbName getFieldName(int index) const { return m_fields[static_cast<size_t>(index)].name; }
  NxField* getField(const NxFieldContainer* container, int index) const;
  /// The index of a field, by itself or by name, or -1.
  int getIndex(const NxFieldContainer* container, const NxField* field) const;
  int getIndex(const NbName& name) const;

  /// Adds an enumerator to the enumeration `typeName`; adding it again changes nothing.
  void addEnumValue(const char* typeName, const char* valueName, int value);
  /// The enumerators of an enumeration in the order in which they were added; `num` is 0 when it is not known. The
  /// arrays belong to the table.
  void getEnumData(const char* typeName, int& num, const int*& values, const NbName*& names) const;

private:
  struct Field {
    NbName name;
    ptrdiff_t offset;
  };
  struct Enumeration {
    NbName typeName;
    std::vector<int> values;
    std::vector<NbName> names;
  };

  std::vector<Field> m_fields;
  std::vector<Enumeration> m_enumerations;
};
