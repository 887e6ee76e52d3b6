// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"
#include "KbWords.h"

#include <array>
#include <limits>
#include <unordered_set>
#include <utility>

namespace {

using kx::inQuotes;
using kx::Words;

/// An AVS UCD file of text: counts, a line for each node and each cell, then fields. Nodes are named by numbers of
/// their own, which VTK looks up without a check.
class UcdCheck {
public:
  explicit UcdCheck(std::string_view text)
      : m_words(text)
      , m_size(text.size()) {}

  std::string findFault() {
    while (!m_words.rest().empty() && m_words.rest().front() == '#')
      m_words.nextLine();
    std::array<std::size_t, 5> counts{}; // nodes, cells, fields of nodes, of cells and of the model
    for (std::size_t& count : counts) {
      if (!m_words.nextCount(m_size, count)) return "the first line has no five counts that suit the size of the file";
    }
    if (std::string fault = readNodes(counts[0]); !fault.empty()) return fault;
    if (std::string fault = readCells(counts[1]); !fault.empty()) return fault;
    if (counts[2] != 0 && !readFields(counts[0], m_nodes)) return "the fields of nodes are damaged";
    if (counts[3] != 0 && !readFields(counts[1], m_cells)) return "the fields of cells are damaged";
    return {};
  }

private:
  std::string readNodes(std::size_t count) {
    for (std::size_t n = 0; n < count; ++n) {
      const std::optional<std::int64_t> number = m_words.nextInteger();
      if (!number || !m_words.nextReal(most) || !m_words.nextReal(most) || !m_words.nextReal(most))
        return "node " + std::to_string(n) + " of " + std::to_string(count) + " is damaged or missing";
      m_nodes.insert(*number);
    }
    return {};
  }

  std::string readCells(std::size_t count) {
    for (std::size_t c = 0; c < count; ++c) {
      if (std::string fault = readCell(); !fault.empty())
        return "cell " + std::to_string(c) + " of " + std::to_string(count) + fault;
    }
    return {};
  }

  std::string readCell() {
    const std::optional<std::int64_t> number = m_words.nextInteger();
    m_words.next(); // its material
    const std::string_view type = m_words.next();
    const std::optional<int> numNodes = numNodesOf(type);
    if (!number || !numNodes) return " is missing or of an unknown type " + inQuotes(type);
    for (int n = 0; n < *numNodes; ++n) {
      const std::optional<std::int64_t> node = m_words.nextInteger();
      if (!node) return " is damaged";
      if (m_nodes.count(*node) == 0) return " has a node " + std::to_string(*node) + ", which the file does not have";
    }
    m_cells.insert(*number);
    return {};
  }

  /// The number of fields and of their components, a line with a name and a unit for each, and a line with all values
  /// for each node or cell.
  bool readFields(std::size_t numTuples, const std::unordered_set<std::int64_t>& numbers) {
    std::size_t numFields = 0;
    if (!m_words.nextCount(m_size, numFields)) return false;
    std::size_t numValues = 0;
    for (std::size_t f = 0; f < numFields; ++f) {
      std::size_t numComponents = 0;
      if (!m_words.nextCount(m_size, numComponents)) return false;
      numValues += numComponents;
    }
    m_words.nextLine();
    for (std::size_t f = 0; f < numFields; ++f) {
      if (m_words.nextLine().find(',') == std::string_view::npos) return false;
    }
    for (std::size_t t = 0; t < numTuples; ++t) {
      const std::optional<std::int64_t> number = m_words.nextInteger();
      if (!number || numbers.count(*number) == 0) return false;
      for (std::size_t v = 0; v < numValues; ++v) {
        if (!m_words.nextReal(most)) return false;
      }
    }
    return true;
  }

  static std::optional<int> numNodesOf(std::string_view type) {
    static constexpr std::pair<std::string_view, int> sizes[] = {{"pt", 1},  {"line", 2}, {"tri", 3},   {"quad", 4},
                                                                 {"tet", 4}, {"pyr", 5},  {"prism", 6}, {"hex", 8}};
    for (const auto& [name, size] : sizes) {
      if (name == type) return size;
    }
    return std::nullopt;
  }

  static constexpr double most = static_cast<double>(std::numeric_limits<float>::max()); // what VTK reads them as

  Words m_words;
  std::size_t m_size;
  std::unordered_set<std::int64_t> m_nodes; ///< their numbers
  std::unordered_set<std::int64_t> m_cells;
};

} // namespace

std::string kx::findFaultInUcd(std::string_view text) {
  constexpr char binary = 7; // the first byte of the other kind of such files
  return text.starts_with(binary) ? std::string() : UcdCheck(text).findFault();
}
