// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"
#include "KbWords.h"

#include <algorithm>
#include <vector>

namespace {

using kx::inQuotes;
using kx::Words;

/// A PLY file: a header that tells the elements and their properties, then a line or a row of bytes for each element.
class PlyCheck {
public:
  explicit PlyCheck(std::string_view text)
      : m_words(text)
      , m_size(text.size()) {}

  std::string findFault() {
    if (std::string fault = readHeader(); !fault.empty()) return fault;
    if (m_format == "ascii" && !m_words.rest().ends_with('\n')) return "the last line has no end"; // VTK loses it
    if (!hasCoordinates()) return "the header has no 'vertex' with 'x', 'y' and 'z'";
    for (const Element& element : m_elements) {
      if (element.name == "face" && std::none_of(element.properties.begin(), element.properties.end(),
                                                 [](const Property& p) { return p.isIndices(); }))
        return "the header has a 'face' without 'vertex_indices'";
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
    std::string_view name;
    const Type* type;
    const Type* countType; ///< null when it is no list
    bool isIndices() const { return name == "vertex_indices" || name == "vertex_index"; }
    bool isCoordinate() const { return name == "x" || name == "y" || name == "z"; }
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
    const Property property{name, typeOf(type), countType};
    m_elements.back().properties.push_back(property);
    return isList ? !property.isCoordinate() : !property.isIndices();
  }

  /// Notes the number of vertices.
  bool hasCoordinates() {
    for (const Element& element : m_elements) {
      const auto& all = element.properties;
      if (element.name == "vertex") {
        m_numVertices = element.count;
        return std::count_if(all.begin(), all.end(), [](const Property& p) { return p.isCoordinate(); }) == 3;
      }
    }
    return false;
  }

  /// VTK takes lines of 4095 characters at most.
  bool skipLine(const Element& element) {
    const std::string_view line = m_words.nextLine();
    Words words(line);
    for (const Property& property : element.properties) {
      std::size_t size = 1;
      if (property.countType && !words.nextCount(line.size(), size)) return false;
      for (std::size_t v = 0; v < size; ++v) {
        std::size_t index = 0;
        if (property.isIndices() ? !words.nextCount(m_size, index) || index >= m_numVertices : words.next().empty())
          return false;
      }
    }
    return line.size() < 4096;
  }

  bool skipBytes(const Element& element) {
    for (const Property& property : element.properties) {
      std::size_t size = 1;
      if (property.countType && (!nextNumber(*property.countType, size) || size > m_size)) return false;
      for (std::size_t v = 0; v < size; ++v) {
        std::size_t index = 0;
        if (!nextNumber(*property.type, index) || (property.isIndices() && index >= m_numVertices)) return false;
      }
    }
    return true;
  }

  /// The next bytes as a number without a sign, so that negative ones are too great; false when there are too few.
  bool nextNumber(const Type& type, std::size_t& number) {
    const std::string_view bytes = m_words.nextBytes(type.size);
    number = 0;
    for (std::size_t b = 0; b < bytes.size(); ++b)
      number =
          256 * number + static_cast<unsigned char>(bytes[m_format == "binary_big_endian" ? b : bytes.size() - 1 - b]);
    return bytes.size() == type.size;
  }

  Words m_words;
  std::size_t m_size;
  std::string_view m_format;
  std::vector<Element> m_elements;
  std::size_t m_numVertices = 0;
};

} // namespace

std::string kx::findFaultInPly(std::string_view text) { return PlyCheck(text).findFault(); }
