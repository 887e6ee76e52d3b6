// SPDX-License-Identifier: BSD-3-Clause
#include "KbGrdeclScanner.h"

#include <algorithm>
#include <fstream>

kx::GrdeclScanner::GrdeclScanner(const std::filesystem::path& path)
    : m_path(path) {
  std::ifstream stream(path, std::ios::binary | std::ios::ate);
  m_text.resize(stream ? static_cast<std::size_t>(stream.tellg()) : 0);
  stream.seekg(0);
  if (!stream.read(m_text.data(), static_cast<std::streamsize>(m_text.size())))
    throw GrdeclError{"cannot be read: '" + path.string() + "' cannot be opened"};
  if (m_text.starts_with("\xEF\xBB\xBF")) m_text.erase(0, 3); // the mark of UTF-8
}

std::string_view kx::GrdeclScanner::next() {
  skipSpace();
  m_word = m_at;
  if (m_at == m_text.size()) return {};
  if (m_text[m_at] == '/') {
    ++m_at;
  } else if (m_text[m_at] == '\'') {
    m_at = std::min(m_text.find_first_of("'\n", m_at + 1), m_text.size());
    const std::size_t end = m_at;
    if (m_at < m_text.size()) ++m_at;
    return std::string_view(m_text).substr(m_word, end - m_word);
  } else {
    std::size_t end = m_at;
    while (end < m_text.size() && !isSpace(end) && m_text[end] != '/' && !isComment(end))
      ++end;
    m_at = end;
  }
  return std::string_view(m_text).substr(m_word, m_at - m_word);
}

std::string_view kx::GrdeclScanner::nextFileName() {
  std::string_view name = next();
  if (name.empty()) return {};
  if (name.front() == '\'') return name.substr(1);
  m_at = m_word;
  while (m_at < m_text.size() && !isSpace(m_at))
    ++m_at;
  if (m_text[m_at - 1] == '/') --m_at; // that of the record
  return std::string_view(m_text).substr(m_word, m_at - m_word);
}

void kx::GrdeclScanner::skipLine() { m_at = std::min(m_text.find('\n', m_at), m_text.size()); }

void kx::GrdeclScanner::skipNextLine() {
  skipLine();
  if (m_at < m_text.size()) ++m_at;
  skipLine();
}

bool kx::GrdeclScanner::isInFirstColumn() const { return m_word == 0 || m_text[m_word - 1] == '\n'; }

bool kx::GrdeclScanner::isFirstOnLine() const {
  std::size_t at = m_word;
  while (at > 0 && m_text[at - 1] != '\n' && isSpace(at - 1))
    --at;
  return at == 0 || m_text[at - 1] == '\n';
}

bool kx::GrdeclScanner::isAloneOnLine() const {
  std::size_t at = m_at;
  while (at < m_text.size() && m_text[at] != '\n' && isSpace(at))
    ++at;
  return isFirstOnLine() && (at == m_text.size() || m_text[at] == '\n' || isComment(at));
}

std::string kx::GrdeclScanner::place() const {
  if (m_word < m_counted) {
    m_counted = 0;
    m_line = 1;
  }
  const auto at = [this](std::size_t i) { return m_text.begin() + static_cast<std::ptrdiff_t>(i); };
  m_line += static_cast<std::size_t>(std::count(at(m_counted), at(m_word), '\n'));
  m_counted = m_word;
  return m_path.filename().string() + ", line " + std::to_string(m_line);
}

void kx::GrdeclScanner::fail(const std::string& text) const {
  throw GrdeclError{"cannot be read: " + place() + ": " + text};
}

void kx::GrdeclScanner::skipSpace() {
  while (m_at < m_text.size()) {
    if (isSpace(m_at))
      ++m_at;
    else if (isComment(m_at))
      skipLine();
    else
      return;
  }
}
