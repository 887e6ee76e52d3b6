// SPDX-License-Identifier: BSD-3-Clause
#include "ValueText.h"

#include <cstring>
#include <vector>

namespace nx::text {

void write(std::string& text, const NbString& value) {
  text += '"';
  for (char c : value.getSString()) {
    if (c == '"' || c == '\\') text += '\\';
    text += c;
  }
  text += '"';
}

bool read(NxTextScanner& scanner, NbString& value) {
  std::string characters;
  if (!scanner.readQuoted(characters)) return false;
  value = NbString(std::move(characters));
  return true;
}

void write(std::string& text, const NbRotation& value) {
  NbVec3f axis;
  float radians;
  value.getValue(axis, radians);
  write(text, axis);
  text += ' ';
  write(text, radians);
}

bool read(NxTextScanner& scanner, NbRotation& value) {
  float numbers[4];
  if (!readNumbers(scanner, numbers, 4)) return false;
  value = NbRotation(NbVec3f(numbers[0], numbers[1], numbers[2]), numbers[3]);
  return true;
}

void write(std::string& text, const NbMatrix& value) { writeNumbers(text, value.getValue(), 16); }

bool read(NxTextScanner& scanner, NbMatrix& value) { return readNumbers(scanner, &value[0][0], 16); }

void write(std::string& text, const NbPlane& value) {
  write(text, value.getNormal());
  text += ' ';
  write(text, value.getDistanceFromOrigin());
}

bool read(NxTextScanner& scanner, NbPlane& value) {
  float numbers[4];
  if (!readNumbers(scanner, numbers, 4)) return false;
  value = NbPlane(NbVec3f(numbers[0], numbers[1], numbers[2]), numbers[3]);
  return true;
}

void write(std::string& text, const NbBox3f& value) {
  write(text, value.getMin());
  text += ' ';
  write(text, value.getMax());
}

bool read(NxTextScanner& scanner, NbBox3f& value) {
  float numbers[6];
  if (!readNumbers(scanner, numbers, 6)) return false;
  value = NbBox3f(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]);
  return true;
}

void write(std::string& text, NbTime value) { write(text, value.getValue()); }

bool read(NxTextScanner& scanner, NbTime& value) {
  double seconds;
  if (!scanner.readNumber(seconds)) return false;
  value = NbTime(seconds);
  return true;
}

void write(std::string& text, const NxImageValue& value) {
  const bool isFloat = value.dataType == NxImageValue::FLOAT;
  const int header[3] = {value.size[0], value.size[1], isFloat ? -value.numComponents : value.numComponents};
  writeNumbers(text, header, 3);
  const size_t num = value.getNumBytes() / (isFloat ? sizeof(float) : 1);
  for (size_t i = 0; i < num; ++i) {
    text += ' ';
    if (isFloat)
      write(text, static_cast<const float*>(value.pixels)[i]);
    else
      write(text, static_cast<const uint8_t*>(value.pixels)[i]);
  }
}

bool read(NxTextScanner& scanner, NxImageValue& value) {
  constexpr int largest = 1 << 15; // A side no graphics hardware takes; keeps the size of a corrupt text in bounds.
  int header[3];
  if (!readNumbers(scanner, header, 3) || header[0] < 0 || header[1] < 0 || header[0] > largest ||
      header[1] > largest || header[2] < -4 || header[2] > 4)
    return false;
  NxImageValue image;
  image.size = NbVec2i32(header[0], header[1]);
  image.numComponents = header[2] < 0 ? -header[2] : header[2];
  image.dataType = header[2] < 0 ? NxImageValue::FLOAT : NxImageValue::UNSIGNED_BYTE;
  // Grown with the text, not allocated beforehand: the header may promise more than there is.
  std::vector<uint8_t> bytes;
  const size_t valueSize = image.dataType == NxImageValue::FLOAT ? sizeof(float) : 1;
  for (size_t i = 0, num = image.getNumBytes() / valueSize; i < num; ++i) {
    uint8_t byte;
    float number;
    const bool isRead = valueSize == 1 ? scanner.readNumber(byte) : scanner.readNumber(number);
    if (!isRead) return false;
    bytes.resize(bytes.size() + valueSize);
    std::memcpy(&bytes[bytes.size() - valueSize], valueSize == 1 ? static_cast<void*>(&byte) : &number, valueSize);
  }
  image.owned = std::make_shared<const std::vector<uint8_t>>(std::move(bytes));
  image.pixels = image.owned->empty() ? nullptr : image.owned->data();
  value = image;
  return true;
}

} // namespace nx::text
