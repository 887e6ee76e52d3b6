// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"

#include "KbWords.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace {

using kx::inQuotes;
using kx::Words;

std::string textOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary | std::ios::ate);
  std::string text(stream ? static_cast<std::size_t>(stream.tellg()) : 0, '\0');
  stream.seekg(0);
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

/// A PLY file: a header that tells the elements and their properties, then a line or a row of bytes for each element.
class PlyCheck {
public:
  explicit PlyCheck(std::string_view text)
      : m_words(text)
      , m_size(text.size()) {}

  std::string findFault() {
    if (std::string fault = readHeader(); !fault.empty()) return fault;
    for (const Element& element : m_elements) {
      for (std::size_t i = 0; i < element.count; ++i) {
        if (!(m_format == "ascii" ? skipLine(element) : skipBytes(element)))
          return "element " + inQuotes(element.name) + " " + std::to_string(i) + " of " +
                 std::to_string(element.count) + " is damaged or missing";
      }
    }
    return {};
  }

private:
  struct Type {
    std::string_view name;
    std::size_t size;
    bool isInteger;
  };
  struct Property {
    const Type* type;
    const Type* countType; ///< null when it is no list
  };
  struct Element {
    std::string_view name;
    std::size_t count;
    std::vector<Property> properties;
  };
  static constexpr Type types[] = {
      {"char", 1, true},   {"int8", 1, true},     {"uchar", 1, true},   {"uint8", 1, true},
      {"short", 2, true},  {"int16", 2, true},    {"ushort", 2, true},  {"uint16", 2, true},
      {"int", 4, true},    {"int32", 4, true},    {"uint", 4, true},    {"uint32", 4, true},
      {"float", 4, false}, {"float32", 4, false}, {"double", 8, false}, {"float64", 8, false}};

  static const Type* typeOf(std::string_view name) {
    for (const Type& type : types) {
      if (type.name == name) return &type;
    }
    return nullptr;
  }

  std::string readHeader() {
    if (Words(m_words.nextLine()).next() != "ply") return "it does not start with 'ply'";
    while (!m_words.rest().empty()) {
      const std::string_view line = m_words.nextLine();
      Words words(line);
      const std::string_view keyword = words.next();
      bool right = keyword == "comment" || keyword == "obj_info";
      if (keyword == "format") right = readFormat(words);
      if (keyword == "element") right = readElement(words);
      if (keyword == "property") right = readProperty(words);
      if (keyword == "end_header") return m_format.empty() ? "the header has no format" : "";
      if (!right) return "the header has a line " + inQuotes(line);
    }
    return "the header has no end";
  }

  bool readFormat(Words& words) {
    m_format = words.next();
    return (m_format == "ascii" || m_format == "binary_little_endian" || m_format == "binary_big_endian") &&
           !words.next().empty();
  }

  /// An element takes a byte at least.
  bool readElement(Words& words) {
    const std::string_view name = words.next();
    std::size_t count = 0;
    if (!words.nextCount(m_size, count)) return false;
    m_elements.push_back({name, count, {}});
    return true;
  }

  bool readProperty(Words& words) {
    std::string_view type = words.next();
    const bool isList = type == "list";
    const Type* countType = isList ? typeOf(words.next()) : nullptr;
    if (isList) type = words.next();
    const std::string_view name = words.next();
    if (m_elements.empty() || !typeOf(type) || name.empty() || (isList && !(countType && countType->isInteger)))
      return false;
    const bool mustBeList = name == "vertex_indices" || name == "vertex_index";
    const bool mustBeNumber = name == "x" || name == "y" || name == "z";
    m_elements.back().properties.push_back({typeOf(type), countType});
    return isList ? !mustBeNumber : !mustBeList;
  }

  /// VTK takes lines of 4095 characters at most.
  bool skipLine(const Element& element) {
    const std::string_view line = m_words.nextLine();
    Words words(line);
    for (const Property& property : element.properties) {
      std::size_t size = 1;
      if (property.countType && !words.nextCount(line.size(), size)) return false;
      for (std::size_t v = 0; v < size; ++v) {
        if (words.next().empty()) return false;
      }
    }
    return line.size() < 4096;
  }

  bool skipBytes(const Element& element) {
    for (const Property& property : element.properties) {
      std::size_t size = 1;
      if (property.countType) {
        const std::string_view bytes = m_words.nextBytes(property.countType->size);
        if (bytes.size() != property.countType->size) return false;
        size = 0;
        for (std::size_t b = 0; b < bytes.size(); ++b)
          size = 256 * size +
                 static_cast<unsigned char>(bytes[m_format == "binary_big_endian" ? b : bytes.size() - 1 - b]);
      }
      if (size > m_size || m_words.nextBytes(size * property.type->size).size() != size * property.type->size)
        return false;
    }
    return true;
  }

  Words m_words;
  std::size_t m_size;
  std::string_view m_format;
  std::vector<Element> m_elements;
};

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
    if (counts[2] != 0 && !readFields(counts[0])) return "the fields of nodes are damaged";
    if (counts[3] != 0 && !readFields(counts[1])) return "the fields of cells are damaged";
    return {};
  }

private:
  std::string readNodes(std::size_t count) {
    for (std::size_t n = 0; n < count; ++n) {
      const std::optional<std::int64_t> number = m_words.nextInteger();
      for (int axis = 0; axis < 2; ++axis)
        m_words.next();
      if (!number || m_words.next().empty())
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
    m_words.next(); // its number
    m_words.next(); // its material
    const std::string_view type = m_words.next();
    const std::optional<int> numNodes = numNodesOf(type);
    if (!numNodes) return " is missing or of an unknown type " + inQuotes(type);
    for (int n = 0; n < *numNodes; ++n) {
      const std::optional<std::int64_t> node = m_words.nextInteger();
      if (!node) return " is damaged";
      if (m_nodes.count(*node) == 0) return " has a node " + std::to_string(*node) + ", which the file does not have";
    }
    return {};
  }

  /// The number of fields and of their components, a name for each, and a line with all values for each node or cell.
  bool readFields(std::size_t numTuples) {
    std::size_t numFields = 0;
    if (!m_words.nextCount(m_size, numFields)) return false;
    std::size_t numValues = 0;
    for (std::size_t f = 0; f < numFields; ++f) {
      std::size_t numComponents = 0;
      if (!m_words.nextCount(m_size, numComponents)) return false;
      numValues += numComponents;
    }
    for (std::size_t line = 0; line < numFields + 1; ++line) // and what is left of the first one
      m_words.nextLine();
    for (std::size_t t = 0; t < numTuples; ++t) {
      m_words.next(); // the number of the node or cell
      for (std::size_t v = 0; v < numValues; ++v) {
        if (m_words.next().empty()) return false;
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

  Words m_words;
  std::size_t m_size;
  std::unordered_set<std::int64_t> m_nodes;
};

/// The counts of the pieces of an XML file. Compressed values take little room, but no count exceeds the size of the
/// file by as much as it may here.
std::string findFaultInPieces(const std::string& path) {
  const auto most = 10'000 * static_cast<std::size_t>(std::filesystem::file_size(path));
  std::ifstream stream(path, std::ios::binary);
  for (std::string tag; std::getline(stream, tag, '<');) {
    if (tag.starts_with("AppendedData")) break; // bytes that may look like anything
    if (!tag.starts_with("Piece")) continue;
    for (std::size_t at = tag.find("NumberOf"); at != std::string::npos; at = tag.find("NumberOf", at + 1)) {
      const std::size_t open = tag.find_first_of("\"'", at);
      if (open == std::string::npos) break;
      const std::string value = tag.substr(open + 1, tag.find(tag[open], open + 1) - open - 1);
      std::size_t count = 0;
      if (!Words(value).nextCount(most, count))
        return tag.substr(at, tag.find_first_of("= ", at) - at) + " is " + inQuotes(value);
    }
  }
  return {};
}

} // namespace

std::string kx::findFaultForVtk(const std::string& path, const std::string& extension) {
  if (extension.starts_with(".vt") && extension != ".vtk") return findFaultInPieces(path);
  if (extension != ".ply" && extension != ".inp") return {};
  const std::string text = textOf(path);
  if (extension == ".ply") return PlyCheck(text).findFault();
  constexpr char binary = 7; // the first byte of the other kind of UCD file
  return text.starts_with(binary) ? std::string() : UcdCheck(text).findFault();
}
