// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <utility>

/// A text, UTF-8 encoded.
class NbString {
public:
  NbString() = default;
  /// A null pointer gives the empty text.
  NbString(const char* text)
      : m_text(text ? text : "") {}
  NbString(std::string text)
      : m_text(std::move(text)) {}

  const std::string& getSString() const { return m_text; }
  const char* c_str() const { return m_text.c_str(); }
  bool isEmpty() const { return m_text.empty(); }
  /// The number of bytes.
  size_t getLength() const { return m_text.size(); }

  NbString& operator+=(const NbString& other) {
    m_text += other.m_text;
    return *this;
  }
  friend NbString operator+(NbString a, const NbString& b) { return a += b; }
  friend bool operator==(const NbString& a, const NbString& b) { return a.m_text == b.m_text; }
  friend bool operator!=(const NbString& a, const NbString& b) { return !(a == b); }
  friend bool operator<(const NbString& a, const NbString& b) { return a.m_text < b.m_text; }

private:
  std::string m_text;
};
