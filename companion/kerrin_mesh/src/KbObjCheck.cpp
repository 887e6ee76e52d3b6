// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"
#include "KbWords.h"

#include <algorithm>
#include <array>

namespace {

using kx::Words;

/// An OBJ file: lines with points (v), texture coordinates (vt) and normals (vn), and cells (f, l, p) that name them by
/// numbers from 1, or from -1 backwards.
class ObjCheck {
public:
  explicit ObjCheck(std::string_view text)
      : m_words(text) {}

  std::string findFault() {
    for (std::size_t line = 1; !m_words.rest().empty(); ++line) {
      Words words(m_words.nextLine());
      const std::string_view keyword = words.next();
      const auto* kind = std::find(std::begin(kinds), std::end(kinds), keyword);
      if (kind != std::end(kinds)) ++m_counts[static_cast<std::size_t>(kind - kinds)];
      if ((keyword == "f" || keyword == "l" || keyword == "p") && !readCell(words))
        return "line " + std::to_string(line) + " is damaged";
    }
    for (std::size_t k = 0; k < m_counts.size(); ++k) {
      if (m_greatest[k] > m_counts[k])
        return "a cell has '" + std::string(kinds[k]) + "' number " + std::to_string(m_greatest[k]) + " of " +
               std::to_string(m_counts[k]);
    }
    return {};
  }

private:
  static constexpr std::string_view kinds[] = {"v", "vt", "vn"};

  /// Nodes as 1, 1/2, 1//3 or 1/2/3.
  bool readCell(Words& words) {
    for (std::string_view node = words.next(); !node.empty(); node = words.next()) {
      if (node.front() == '#' || node == "\\") return true; // a comment, or the line goes on in the next one
      for (std::size_t k = 0; k < m_counts.size() && !node.empty(); ++k) {
        const std::string_view number = node.substr(0, node.find('/'));
        node.remove_prefix(std::min(number.size() + 1, node.size()));
        if ((k == 0 || !number.empty()) && !readNumber(number, k)) return false;
      }
    }
    return true;
  }

  bool readNumber(std::string_view text, std::size_t kind) {
    const auto number = Words(text).nextInteger();
    if (!number || *number == 0 || *number < -static_cast<std::int64_t>(m_counts[kind])) return false;
    if (*number > 0) m_greatest[kind] = std::max(m_greatest[kind], static_cast<std::size_t>(*number));
    return true;
  }

  Words m_words;
  std::array<std::size_t, 3> m_counts{};
  std::array<std::size_t, 3> m_greatest{};
};

} // namespace

std::string kx::findFaultInObj(std::string_view text) { return ObjCheck(text).findFault(); }
