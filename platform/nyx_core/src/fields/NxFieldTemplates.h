// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ValueText.h"

#include <Nyx/base/NxDebugError.h>
#include <Nyx/fields/NxMField.h>
#include <Nyx/fields/NxSField.h>

#include <algorithm>
#include <functional>

// The member functions of the field templates; NxFieldTypes.cpp instantiates them for the types that there are.

namespace nx {

/// Comparison of values for equality; floats compare by value without a warning about doing so.
template <class T>
bool isEqual(const T& a, const T& b) {
  return std::equal_to<T>()(a, b);
}

inline bool isEqual(const NxImageValue& a, const NxImageValue& b) {
  return a.size == b.size && a.numComponents == b.numComponents && a.dataType == b.dataType &&
         std::equal(static_cast<const uint8_t*>(a.pixels), static_cast<const uint8_t*>(a.pixels) + a.getNumBytes(),
                    static_cast<const uint8_t*>(b.pixels));
}

} // namespace nx

template <class T>
void NxSFieldOf<T>::copyFrom(const NxField& field) {
  m_value = static_cast<const NxSFieldOf&>(field).m_value;
  valueChanged();
  copyFlags(field);
}

template <class T>
bool NxSFieldOf<T>::isSame(const NxField& field) const {
  return field.getTypeId() == getTypeId() && nx::isEqual(m_value, static_cast<const NxSFieldOf&>(field).m_value);
}

template <class T>
bool NxSFieldOf<T>::readText(NxTextScanner& scanner) {
  T value{};
  if (!nx::text::read(scanner, value)) return false;
  setValue(value);
  return true;
}

template <class T>
void NxSFieldOf<T>::writeText(std::string& text) const {
  nx::text::write(text, m_value);
}

template <class T>
int NxMFieldOf<T>::find(const T& value) const {
  for (int i = 0; i < m_num; ++i)
    if (nx::isEqual(m_values[i], value)) return i;
  return -1;
}

template <class T>
void NxMFieldOf<T>::own(int num) {
  if (m_isUserMemory) {
    m_own.assign(m_values, m_values + std::min(num, m_num));
    m_isUserMemory = false;
  }
  m_own.resize(static_cast<size_t>(num));
  m_values = m_own.data();
  m_num = num;
}

template <class T>
void NxMFieldOf<T>::setValuesAlone(int num, const T* values) {
  // Through a vector of its own: `values` may lie in the present one.
  std::vector<T> copy(values, values + num);
  m_own.swap(copy);
  m_isUserMemory = false;
  m_values = m_own.data();
  m_num = num;
  valueChanged();
}

template <class T>
void NxMFieldOf<T>::setValues(int start, int num, const T* values) {
  if (start < 0 || num < 0 || (num > 0 && !values)) {
    NxDebugError::post((std::string(getTypeId().getName().getString()) + "::setValues").c_str(),
                       "Cannot set %d values from index %d on%s.", num, start, values ? "" : ", given none");
    return;
  }
  // Values of the field itself move when its memory grows.
  const std::less<const T*> isBefore;
  std::vector<T> overlap;
  if (!isBefore(values, m_values) && isBefore(values, m_values + m_num))
    overlap.assign(values, values + num);
  own(std::max(m_num, start + num));
  const T* const source = overlap.empty() ? values : overlap.data();
  std::copy(source, source + num, m_own.begin() + start);
  valueChanged();
}

template <class T>
void NxMFieldOf<T>::setNum(int num) {
  if (num < 0) {
    NxDebugError::post((std::string(getTypeId().getName().getString()) + "::setNum").c_str(),
                       "The number of values cannot be %d.", num);
    return;
  }
  own(num);
  valueChanged();
}

template <class T>
void NxMFieldOf<T>::deleteValues(int start, int num) {
  const int count = num == -1 ? m_num - start : num;
  if (start < 0 || count < 0 || start + count > m_num) {
    NxDebugError::post((std::string(getTypeId().getName().getString()) + "::deleteValues").c_str(),
                       "Cannot delete %d of %d values from index %d on.", num, m_num, start);
    return;
  }
  own(m_num);
  m_own.erase(m_own.begin() + start, m_own.begin() + start + count);
  own(m_num - count);
  valueChanged();
}

template <class T>
void NxMFieldOf<T>::setValuesPointer(int num, const T* values) {
  if (num < 0 || (num > 0 && !values)) {
    NxDebugError::post((std::string(getTypeId().getName().getString()) + "::setValuesPointer").c_str(),
                       "Cannot use %d values%s.", num, values ? "" : " at a null pointer");
    return;
  }
  m_own.clear();
  m_own.shrink_to_fit();
  m_isUserMemory = true;
  m_values = values;
  m_num = num;
  valueChanged();
}

template <class T>
T* NxMFieldOf<T>::startEditing() {
  own(m_num);
  return m_own.data();
}

template <class T>
void NxMFieldOf<T>::copyFrom(const NxField& field) {
  const auto& other = static_cast<const NxMFieldOf&>(field);
  if (&other != this) {
    m_isUserMemory = other.m_isUserMemory;
    m_own = other.m_own;
    m_values = m_isUserMemory ? other.m_values : m_own.data();
    m_num = other.m_num;
  }
  valueChanged();
  copyFlags(field);
}

template <class T>
bool NxMFieldOf<T>::isSame(const NxField& field) const {
  if (field.getTypeId() != getTypeId()) return false;
  const auto& other = static_cast<const NxMFieldOf&>(field);
  return std::equal(m_values, m_values + m_num, other.m_values, other.m_values + other.m_num,
                    [](const T& a, const T& b) { return nx::isEqual(a, b); });
}

template <class T>
bool NxMFieldOf<T>::readText(NxTextScanner& scanner) {
  std::vector<T> values;
  if (!scanner.accept('[')) {
    values.resize(1);
    if (!nx::text::read(scanner, values[0])) return false;
  } else {
    while (!scanner.accept(']')) {
      values.emplace_back();
      if (!nx::text::read(scanner, values.back())) return false;
    }
  }
  setValuesAlone(static_cast<int>(values.size()), values.data());
  return true;
}

template <class T>
void NxMFieldOf<T>::writeText(std::string& text) const {
  if (m_num != 1) text += "[ ";
  for (int i = 0; i < m_num; ++i) {
    if (i > 0) text += ", ";
    nx::text::write(text, m_values[i]);
  }
  if (m_num != 1) text += m_num > 0 ? " ]" : "]";
}
