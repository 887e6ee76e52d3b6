// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

/// Reads words, numbers and quoted texts one after another. White space and commas separate; they mean nothing else.
class NxTextScanner {
public:
  explicit NxTextScanner(std::string_view text)
      : m_text(text) {}

  bool isAtEnd() {
    skipSeparators();
    return m_position == m_text.size();
  }

  /// Passes over `c` if it is next.
  bool accept(char c) {
    if (isAtEnd() || m_text[m_position] != c) return false;
    ++m_position;
    return true;
  }

  /// The characters up to the next separator or bracket; empty at the end.
  std::string_view readWord() {
    skipSeparators();
    const size_t begin = m_position;
    while (m_position < m_text.size() && !isSeparator(m_text[m_position]) && m_text[m_position] != '[' &&
           m_text[m_position] != ']')
      ++m_position;
    return m_text.substr(begin, m_position - begin);
  }

  /// A text in double quotes, in which a backslash stands before a quote or backslash.
  bool readQuoted(std::string& text) {
    if (!accept('"')) return false;
    text.clear();
    for (; m_position < m_text.size(); ++m_position) {
      if (m_text[m_position] == '"') {
        ++m_position;
        return true;
      }
      if (m_text[m_position] == '\\' && m_position + 1 < m_text.size()) ++m_position;
      text += m_text[m_position];
    }
    return false;
  }

  template <class T>
  bool readNumber(T& value) {
    const std::string_view word = readWord();
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return !word.empty() && error == std::errc() && stop == end;
  }

private:
  static bool isSeparator(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == ','; }
  void skipSeparators() {
    while (m_position < m_text.size() && isSeparator(m_text[m_position]))
      ++m_position;
  }

  std::string_view m_text;
  size_t m_position = 0;
};
