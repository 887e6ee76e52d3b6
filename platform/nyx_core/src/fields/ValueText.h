// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "NxTextScanner.h"

#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NbMatrix.h>
#include <Nyx/base/NbPlane.h>
#include <Nyx/base/NbRotation.h>
#include <Nyx/base/NbString.h>
#include <Nyx/base/NbTime.h>
#include <Nyx/base/NbVec.h>
#include <Nyx/fields/NxSFImage.h>

#include <string>
#include <type_traits>

/// The text form of each value type: `write` appends it, `read` takes it from a scanner. Numbers are written with the
/// fewest digits that give the same number back.
namespace nx::text {

template <class T>
requires std::is_arithmetic_v<T>
void write(std::string& text, T value) {
  char digits[40];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  text.append(digits, result.ptr);
}

template <class T>
requires std::is_arithmetic_v<T>
bool read(NxTextScanner& scanner, T& value) { return scanner.readNumber(value); }

inline void write(std::string& text, bool value) { text += value ? "TRUE" : "FALSE"; }

inline bool read(NxTextScanner& scanner, bool& value) {
  const std::string_view word = scanner.readWord();
  value = word == "TRUE" || word == "1";
  return value || word == "FALSE" || word == "0";
}

void write(std::string& text, const NbString& value);
bool read(NxTextScanner& scanner, NbString& value);

/// An array of numbers, separated by blanks.
template <class T>
void writeNumbers(std::string& text, const T* values, int num) {
  for (int i = 0; i < num; ++i) {
    if (i > 0) text += ' ';
    write(text, values[i]);
  }
}

template <class T>
bool readNumbers(NxTextScanner& scanner, T* values, int num) {
  for (int i = 0; i < num; ++i)
    if (!scanner.readNumber(values[i])) return false;
  return true;
}

template <class Vector, class T, int N>
void write(std::string& text, const NbVec<Vector, T, N>& value) {
  writeNumbers(text, value.getValue(), N);
}

template <class Vector>
requires std::is_base_of_v<NbVec<Vector, typename Vector::ValueType, Vector::SIZE>, Vector>
bool read(NxTextScanner& scanner, Vector& value) { return readNumbers(scanner, &value[0], Vector::SIZE); }

void write(std::string& text, const NbRotation& value); ///< Axis and angle in radians.
bool read(NxTextScanner& scanner, NbRotation& value);
void write(std::string& text, const NbMatrix& value); ///< Row after row.
bool read(NxTextScanner& scanner, NbMatrix& value);
void write(std::string& text, const NbPlane& value); ///< Normal and distance.
bool read(NxTextScanner& scanner, NbPlane& value);
void write(std::string& text, const NbBox3f& value); ///< Minimum and maximum.
bool read(NxTextScanner& scanner, NbBox3f& value);
void write(std::string& text, NbTime value); ///< Seconds.
bool read(NxTextScanner& scanner, NbTime& value);
/// Width, height, number of components (negative for floats) and the values.
void write(std::string& text, const NxImageValue& value);
bool read(NxTextScanner& scanner, NxImageValue& value);

} // namespace nx::text
