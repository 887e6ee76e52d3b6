// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"
#include "KbWords.h"

#include <algorithm>
#include <cctype>
#include <limits>

namespace {

using kx::inQuotes;
using kx::Words;

std::string lower(std::string_view word) {
  std::string small(word);
  for (char& c : small)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return small;
}

/// A legacy file of text: points, cells and fields. Data of other kinds are read by VTK with care.
class LegacyCheck {
public:
  explicit LegacyCheck(std::string_view text)
      : m_words(text)
      , m_size(text.size()) {}

  std::string findFault() {
    m_words.nextLine(); // the version
    m_words.nextLine(); // the title
    m_words.nextLine(); // that it is text
    while (true) {
      const std::string_view word = m_words.next();
      if (word.empty()) return {};
      if (std::isalpha(static_cast<unsigned char>(word.front())) == 0) continue; // a value
      const std::string keyword = lower(word);
      if (!readSection(keyword)) return "the numbers of " + inQuotes(keyword) + " are damaged or too few";
    }
  }

private:
  static constexpr std::string_view dataKeywords[] = {
      "scalars",    "color_scalars", "lookup_table", "vectors", "normals", "tensors", "texture_coordinates",
      "global_ids", "pedigree_ids",  "edge_flags",   "tensors6"};
  static constexpr std::string_view types[] = {
      "bit",          "char",        "unsigned_char", "signed_char",  "short",        "unsigned_short", "int",
      "unsigned_int", "long",        "unsigned_long", "long_long",    "float",        "double",         "vtkidtype",
      "string",       "utf8_string", "variant",       "vtktypeint64", "vtktypeuint64"};

  bool readSection(const std::string& keyword) {
    if (keyword == "points") return readReals(3);
    if (keyword == "x_coordinates" || keyword == "y_coordinates" || keyword == "z_coordinates") return readReals(1);
    if (keyword == "cells" || keyword == "vertices" || keyword == "lines" || keyword == "polygons" ||
        keyword == "triangle_strips")
      return readCells();
    if (std::find(std::begin(dataKeywords), std::end(dataKeywords), keyword) != std::end(dataKeywords)) {
      m_words.nextLine(); // with a name that may be a keyword
      return true;
    }
    if (keyword == "field") return skipField();
    if (keyword == "metadata") return skipMetadata();
    std::size_t count = 0;
    if (keyword == "cell_types") return m_words.nextCount(m_size, count) && skipIntegers(count);
    return true; // numbers of others are words that mean nothing here
  }

  /// A count, a type and as many tuples.
  bool readReals(std::size_t numComponents) {
    std::size_t count = 0;
    if (!m_words.nextCount(m_size, count)) return false;
    const std::string type = lower(m_words.next());
    const double most =
        type == "float" ? static_cast<double>(std::numeric_limits<float>::max()) : std::numeric_limits<double>::max();
    if (type.empty()) return false;
    for (std::size_t n = 0; n < numComponents * count; ++n) {
      if (!m_words.nextReal(most)) return false;
    }
    return true;
  }

  /// Cells as lists with their sizes or, from version 5 on, as offsets and connectivity.
  bool readCells() {
    std::size_t numCells = 0;
    std::size_t size = 0;
    if (!m_words.nextCount(m_size, numCells) || !m_words.nextCount(m_size, size)) return false;
    Words ahead = m_words;
    if (lower(ahead.next()) == "offsets") {
      m_words.next();
      if (m_words.next().empty() || !skipIntegers(numCells)) return false;
      return lower(m_words.next()) == "connectivity" && !m_words.next().empty() && skipIntegers(size);
    }
    for (std::size_t c = 0; c < numCells; ++c) {
      std::size_t numNodes = 0;
      if (size == 0 || !m_words.nextCount(size - 1, numNodes) || !skipIntegers(numNodes)) return false;
      size -= 1 + numNodes;
    }
    return size == 0;
  }

  /// Arrays with names, which may be those of sections.
  bool skipField() {
    std::size_t numArrays = 0;
    m_words.next(); // its name
    if (!m_words.nextCount(m_size, numArrays)) return false;
    for (; numArrays > 0; --numArrays) {
      if (lower(m_words.next()) == "metadata") {
        skipMetadata();
        m_words.next();
      }
      std::size_t numComponents = 0;
      std::size_t numTuples = 0;
      if (!m_words.nextCount(m_size, numComponents) || !m_words.nextCount(m_size, numTuples)) return false;
      const std::string type = lower(m_words.next());
      if (std::find(std::begin(types), std::end(types), type) == std::end(types)) return false;
      const bool isText = type.ends_with("string") || type == "variant"; // one a line
      m_words.nextLine();
      for (std::size_t v = 0; v < numComponents * numTuples; ++v) {
        if (m_words.rest().empty()) return false;
        isText ? m_words.nextLine() : m_words.next();
      }
    }
    return true;
  }

  /// What VTK writes about arrays, up to an empty line.
  bool skipMetadata() {
    m_words.nextLine();
    while (!m_words.rest().empty() && !Words(m_words.nextLine()).next().empty())
      ;
    return true;
  }

  /// VTK reads them as 32-bit integers.
  bool skipIntegers(std::size_t count) {
    for (; count > 0; --count) {
      const std::optional<std::int64_t> number = m_words.nextInteger();
      if (!number || *number != static_cast<std::int32_t>(*number)) return false;
    }
    return true;
  }

  Words m_words;
  std::size_t m_size;
};

} // namespace

std::string kx::findFaultInLegacy(std::string_view text) { return LegacyCheck(text).findFault(); }
