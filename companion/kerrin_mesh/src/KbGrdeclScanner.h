// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace kx {

/// A fault in a GRDECL text, with the place where it was found: what reading such a file ends with.
struct GrdeclError {
  std::string text;
};

/// Walks the words of one GRDECL file; comments (-- to the end of the line) are space.
class GrdeclScanner {
public:
  /// Reads the whole file.
  explicit GrdeclScanner(const std::filesystem::path& path);
  GrdeclScanner(const GrdeclScanner&) = delete;
  GrdeclScanner& operator=(const GrdeclScanner&) = delete;

  const std::filesystem::path& path() const { return m_path; }

  /// The next word; a slash is a word of its own, and so is a quoted text, with its first quote. Empty at the end.
  std::string_view next();
  /// The next word is the same again.
  void back() { m_at = m_word; }
  /// The name of a file: a quoted text without its quotes, or a word with the slashes in it. Empty when there is none.
  std::string_view nextFileName();
  /// What follows the slash of a record on its line is a comment.
  void skipLine();
  /// Skips the rest of the line and the one after it.
  void skipNextLine();

  /// Whether the last word begins its line, spaces apart.
  bool isFirstOnLine() const;
  /// Whether the last word begins its line, in the first column.
  bool isInFirstColumn() const;
  /// Whether the last word is the only one on its line.
  bool isAloneOnLine() const;
  /// The name of the file and the line of the last word.
  std::string place() const;
  /// Ends the reading with a text after the place.
  [[noreturn]] void fail(const std::string& text) const;

private:
  bool isComment(std::size_t at) const {
    return m_text[at] == '-' && m_text[at + 1] == '-'; // a string ends with a zero
  }
  bool isSpace(std::size_t at) const { return m_text[at] == ' ' || (m_text[at] >= '\t' && m_text[at] <= '\r'); }
  void skipSpace();

  std::filesystem::path m_path;
  std::string m_text;
  std::size_t m_at = 0;
  std::size_t m_word = 0; ///< where the last word begins
  mutable std::size_t m_counted = 0;
  mutable std::size_t m_line = 1; ///< the line of `m_counted`
};

} // namespace kx
