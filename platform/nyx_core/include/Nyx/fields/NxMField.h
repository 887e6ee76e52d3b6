// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxField.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <vector>

/// Root of the fields with any number of values.
class NYX_CORE_API NxMField : public NxField {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();

  /// The number of values.
  int getNum() const { return m_num; }

protected:
  int m_num = 0;

private:
  static NxType s_classTypeId;
};

/// A field with any number of values of type T, in memory of its own or of the user.
template <class T>
class NxMFieldOf : public NxMField {
public:
  using ValueType = T;

  /// The value at `index`, which must lie in 0..getNum()-1.
  const T& operator[](int index) const { return m_values[index]; }
  /// The values from `start` on, one after another; null when there is none.
  const T* getValues(int start = 0) const { return m_num > 0 ? m_values + start : nullptr; }
  /// The index of the first value equal to `value`, or -1.
  int find(const T& value) const;

  /// Makes `value` the only one.
  void setValue(const T& value) { setValuesAlone(1, &value); }
  /// Copies `num` values to the places from `start` on; the field grows as needed and keeps what lies behind them.
  void setValues(int start, int num, const T* values);
  void set1Value(int index, const T& value) { setValues(index, 1, &value); }
  /// Cuts the values behind `num` off, or adds default-constructed ones.
  void setNum(int num);
  /// Takes `num` values out, all from `start` on when `num` is -1.
  void deleteValues(int start, int num = -1);

  /// Uses the user's memory as it is, without a copy; the user keeps it alive and unchanged until the field is given
  /// other values, and calls touch() or this again after changing it. The first change of single values makes a copy
  /// in memory of the field's own.
  void setValuesPointer(int num, const T* values);
  bool isUserMemory() const { return m_isUserMemory; }

  /// The values for writing in place; finishEditing() must follow and makes it one change.
  T* startEditing();
  void finishEditing() { valueChanged(); }

  void copyFrom(const NxField& field) override;
  bool isSame(const NxField& field) const override;

protected:
  NxMFieldOf() = default;
  bool readText(NxTextScanner& scanner) override;
  void writeText(std::string& text) const override;

private:
  /// Makes the memory the field's own and of this length.
  void own(int num);
  void setValuesAlone(int num, const T* values);

  const T* m_values = nullptr;
  std::vector<T> m_own;
  bool m_isUserMemory = false;
};
