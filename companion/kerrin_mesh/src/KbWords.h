// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kx {

/// The start of a word of a file for a message, with question marks for what can't be printed.
inline std::string inQuotes(std::string_view word) {
  std::string text(word.substr(0, 40));
  for (char& c : text)
    c = c < ' ' || c > '~' ? '?' : c;
  return "'" + text + "'";
}

/// A number without its plus sign, which std::from_chars doesn't take.
inline std::string_view withoutPlus(std::string_view word) {
  if (word.size() > 1 && word.front() == '+' && word[1] != '-') word.remove_prefix(1);
  return word;
}

/// Whether a number that no double holds is too small rather than too large.
inline bool isTooSmall(std::string_view number) {
  if (const std::size_t exponent = number.find_first_of("eE"); exponent != std::string_view::npos)
    return number.substr(exponent + 1).starts_with('-');
  return number.find_first_of("123456789") > number.find('.');
}

/// Walks the words of a text.
class Words {
public:
  explicit Words(std::string_view text)
      : m_rest(text) {}

  /// The next word, on whatever line; empty at the end.
  std::string_view next() {
    std::size_t begin = 0;
    while (begin < m_rest.size() && isSpace(m_rest[begin]))
      ++begin;
    std::size_t end = begin;
    while (end < m_rest.size() && !isSpace(m_rest[end]))
      ++end;
    const std::string_view word = m_rest.substr(begin, end - begin);
    m_rest.remove_prefix(end);
    return word;
  }
  /// The rest of the line, without its end.
  std::string_view nextLine() {
    const std::string_view line = m_rest.substr(0, m_rest.find('\n'));
    m_rest.remove_prefix(std::min(line.size() + 1, m_rest.size()));
    return line;
  }
  /// The next word as a whole number; none when it is something else.
  std::optional<std::int64_t> nextInteger() {
    const std::string_view word = withoutPlus(next());
    std::int64_t number = 0;
    const std::from_chars_result result = std::from_chars(word.data(), word.data() + word.size(), number);
    if (result.ec != std::errc() || result.ptr != word.data() + word.size()) return std::nullopt;
    return number;
  }
  /// The next word as a count from 0 to `most`; false when it is none.
  bool nextCount(std::size_t most, std::size_t& count) {
    const std::optional<std::int64_t> number = nextInteger();
    count = number && *number >= 0 ? static_cast<std::size_t>(*number) : 0;
    return number && *number >= 0 && count <= most;
  }
  /// Whether the next word is a number up to `most`, whatever its sign.
  bool nextReal(double most) {
    const std::string_view word = withoutPlus(next());
    double number = 0.0;
    const std::from_chars_result result = std::from_chars(word.data(), word.data() + word.size(), number);
    if (result.ptr != word.data() + word.size()) return false;
    return result.ec == std::errc::result_out_of_range ? isTooSmall(word)
                                                       : result.ec == std::errc() && std::abs(number) <= most;
  }
  /// As many bytes, or what is left.
  std::string_view nextBytes(std::size_t size) {
    const std::string_view bytes = m_rest.substr(0, size);
    m_rest.remove_prefix(bytes.size());
    return bytes;
  }
  std::string_view rest() const { return m_rest; }

private:
  static bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

  std::string_view m_rest;
};

} // namespace kx
