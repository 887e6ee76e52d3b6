// SPDX-License-Identifier: BSD-3-Clause
// Corner-point grids from GRDECL text: keywords with a record of values each, closed by a slash.
#include "KbGrdeclKeywords.h"
#include "KbGrdeclNumber.h"
#include "KbGrdeclRecord.h"
#include "KbGrdeclScanner.h"
#include "KbMeshFileContent.h"
#include "KbWords.h"

#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <filesystem>

namespace {

using kx::GrdeclError;
using kx::GrdeclRecord;
using kx::inQuotes;
using Kind = kx::GrdeclKeyword;
using Scanner = kx::GrdeclScanner;

/// Node indices and sizes of arrays must stay far from the end of size_t.
constexpr std::size_t mostCellsOfAxis = 1'000'000;
/// As many values as repeat counts may stand for in a file: four GiB of coordinates.
constexpr std::size_t mostImplied = std::size_t(1) << 29;

class GrdeclReader {
public:
  explicit GrdeclReader(KbMeshFile::Content& content)
      : m_content(content) {}

  void readFile(const std::filesystem::path& path, std::size_t depth) {
    Scanner scanner(path);
    for (std::string_view word = scanner.next(); !word.empty(); word = scanner.next()) {
      const std::string keyword = kx::inCapitals(word);
      const Kind kind = kindOf(scanner, keyword);
      if (kind == Kind::END) m_ended = true;
      if (kind == Kind::END_OF_FILE || m_ended) return;
      readKeyword(scanner, keyword, kind, depth);
      if (m_ended) return; // in a file that was included
    }
  }

  void makeMesh() {
    if (m_counts[0] == 0) throw GrdeclError{"cannot be read: there is no SPECGRID"};
    if (m_coord.place.empty()) throw GrdeclError{"cannot be read: there is no COORD"};
    if (m_zcorn.place.empty()) throw GrdeclError{"cannot be read: there is no ZCORN"};
    const std::size_t numCells = KbProduct(m_counts);
    checkSize(m_coord, 6 * (m_counts[0] + 1) * (m_counts[1] + 1));
    checkSize(m_zcorn, 8 * numCells);
    if (!m_active.place.empty()) checkSize(m_active, numCells);
    std::erase_if(m_properties, [&](const Array<float>& property) {
      const bool isOther = property.record.size() != numCells;
      if (isOther) noteLeftOut(property.keyword, "it does not have one number for each cell");
      return isOther;
    });
    checkImplied();

    const auto& coord = m_content.keep(m_coord.record.take());
    const auto& zcorn = m_content.keep(m_zcorn.record.take());
    KbSpan<std::uint8_t> dead;
    if (!m_active.place.empty()) dead = m_content.keep(deadFlags());
    if (!m_content.makeMesh<KbVolumeMeshVertexHexahedronIjk>(2, m_counts, coord, zcorn, dead)) return;
    m_content.setDeadCount(dead);
    for (Array<float>& property : m_properties)
      m_content.addSet<double, 3>(property.keyword, DataBinding::PER_CELL, m_content.keep(property.record.take()),
                                  m_counts);
  }

private:
  /// The values of a keyword.
  template <class T>
  struct Array {
    std::string keyword;
    std::string place; ///< where its record ends; empty when there is none
    GrdeclRecord<T> record;
  };
  /// How the reading of numbers ended.
  enum class End {
    SLASH,
    KEYWORD, ///< without a slash, before a line with a keyword
    TEXT,    ///< without a slash, at the end of the file
    FAULT    ///< at a word that can't be used
  };

  /// The kind of a word where a keyword is expected. One that is not known is a keyword only in the first column.
  static Kind kindOf(const Scanner& scanner, const std::string& keyword) {
    const Kind kind = kx::grdeclKeyword(keyword);
    const bool isName = keyword.front() >= 'A' && keyword.front() <= 'Z';
    return kind == Kind::UNKNOWN && isName && scanner.isInFirstColumn() ? Kind::PROPERTY : kind;
  }
  static bool isKnown(std::string_view word) { return kx::grdeclKeyword(kx::inCapitals(word)) != Kind::UNKNOWN; }

  void readKeyword(Scanner& scanner, const std::string& keyword, Kind kind, std::size_t depth) {
    switch (kind) {
    case Kind::UNKNOWN:
      return resume(scanner);
    case Kind::PROPERTY:
      return readProperty(scanner, keyword);
    case Kind::BARE:
    case Kind::END_OF_FILE:
    case Kind::END:
      return;
    case Kind::TITLE:
      return scanner.skipNextLine();
    case Kind::RECORD:
      skipRecord(scanner, keyword);
      return;
    case Kind::RECORDS:
      return skipRecords(scanner, keyword);
    case Kind::COUNTS:
      return readCounts(scanner, keyword);
    case Kind::MAP_AXES:
      return readMapAxes(scanner);
    case Kind::COORD:
      return readArray(scanner, keyword, m_coord);
    case Kind::ZCORN:
      return readArray(scanner, keyword, m_zcorn);
    case Kind::ACTNUM:
      return readArray(scanner, keyword, m_active);
    case Kind::INCLUDE:
      return include(scanner, depth);
    }
  }

  void noteLeftOut(const std::string& keyword, const std::string& reason) {
    m_content.notes.push_back("keyword " + keyword + " left out: " + reason);
  }

  /// Goes on at the next line that begins with a known keyword.
  void resume(Scanner& scanner) {
    scanner.back();
    std::string_view word = scanner.next();
    if (word == "/") return scanner.skipLine(); // it closes nothing
    if (word.starts_with('\'')) word.remove_prefix(1);
    m_content.notes.push_back(scanner.place() + ": " + inQuotes(word) +
                              " where a keyword is expected; left out up to the next known one");
    do {
      scanner.skipLine();
      const std::string_view next = scanner.next();
      if (next.empty()) return;
      if (isKnown(next)) return scanner.back();
    } while (true);
  }

  /// Skips the rest of a record, its slash included. A line with nothing but a known keyword ends it too.
  bool skipRecord(Scanner& scanner, const std::string& keyword) {
    for (std::string_view word = scanner.next(); !word.empty(); word = scanner.next()) {
      if (word == "/") {
        scanner.skipLine();
        return true;
      }
      if (isKnown(word) && scanner.isAloneOnLine()) {
        scanner.back();
        break;
      }
    }
    m_content.notes.push_back(scanner.place() + ": " + keyword + " is not closed by a slash");
    return false;
  }

  void skipRecords(Scanner& scanner, const std::string& keyword) {
    while (true) {
      if (scanner.next() == "/") return scanner.skipLine();
      scanner.back();
      if (!skipRecord(scanner, keyword)) return;
    }
  }

  void include(Scanner& scanner, std::size_t depth) {
    const std::string_view name = scanner.nextFileName();
    if (name.empty()) scanner.fail("INCLUDE without a file name");
    if (depth == 16) scanner.fail("INCLUDE files are nested more than 16 deep");
    const std::filesystem::path path = scanner.path().parent_path() / std::string(name);
    if (!std::filesystem::is_regular_file(path)) scanner.fail("INCLUDE file " + inQuotes(name) + " does not exist");
    skipRecord(scanner, "INCLUDE");
    readFile(path, depth + 1);
  }

  void readCounts(Scanner& scanner, const std::string& keyword) {
    KbIndex<3> counts{};
    for (std::size_t& count : counts) {
      const std::string_view word = scanner.next();
      count = kx::parseGrdeclCount(word, mostCellsOfAxis);
      if (count == 0) scanner.fail(keyword + ": " + inQuotes(word) + " is no number of cells");
    }
    skipRecord(scanner, keyword);
    if (m_counts[0] != 0 && m_counts != counts) scanner.fail(keyword + " differs from that before");
    m_counts = counts;
  }

  void readMapAxes(Scanner& scanner) {
    Array<double> axes;
    readArray(scanner, "MAPAXES", axes);
    checkSize(axes, 6);
    m_content.mapAxes = axes.record.take();
  }

  /// A number with or without a repeat count (3*0.2); what is wrong with the word, or nothing.
  template <class T>
  static std::string_view parseRepeated(std::string_view word, T& value, std::size_t& repeat) {
    const std::string_view reason = kx::parseGrdeclNumber(word, value);
    const std::size_t star = reason.empty() ? std::string_view::npos : word.find('*');
    if (star == std::string_view::npos) return reason;
    repeat = kx::parseGrdeclCount(word.substr(0, star), static_cast<std::size_t>(-1));
    if (repeat == 0) return "has no repeat count";
    if (star + 1 == word.size()) return "repeats no value";
    return kx::parseGrdeclNumber(word.substr(star + 1), value);
  }

  /// Adds the values of a record. `fault` says which word can't be used, and why.
  template <class T>
  static End readNumbers(Scanner& scanner, GrdeclRecord<T>& record, std::string& fault) {
    while (true) {
      const std::string_view word = scanner.next();
      if (word.empty()) return End::TEXT;
      if (word == "/") {
        scanner.skipLine();
        return End::SLASH;
      }
      T value{};
      std::size_t repeat = 1;
      if (std::string_view reason = parseRepeated(word, value, repeat); !reason.empty()) {
        if (scanner.isFirstOnLine() && isKnown(word)) {
          scanner.back();
          return End::KEYWORD;
        }
        fault = inQuotes(word).append(" ").append(reason);
        return End::FAULT;
      }
      record.add(value, repeat);
    }
  }

  /// The record of a keyword that the mesh needs: every fault ends the reading.
  template <class T>
  void readArray(Scanner& scanner, const std::string& keyword, Array<T>& array) {
    noteRepeated(!array.place.empty(), keyword);
    array = {keyword, {}, {}};
    std::string fault;
    const End end = readNumbers(scanner, array.record, fault);
    if (end == End::FAULT) scanner.fail(keyword + ": " + fault);
    if (end != End::SLASH) scanner.fail(keyword + " is not closed by a slash");
    array.place = scanner.place();
  }

  /// A record of numbers, a set when there is one for each cell; any other record is left out. Only a number that no
  /// set can hold ends the reading, and a text that ends among numbers.
  void readProperty(Scanner& scanner, const std::string& keyword) {
    Array<float> array{keyword, {}, {}};
    std::string fault;
    switch (readNumbers(scanner, array.record, fault)) {
    case End::SLASH:
      return addProperty(std::move(array));
    case End::KEYWORD:
      return noteLeftOut(keyword, array.record.size() == 0 ? "it has no record" : "it is not closed by a slash");
    case End::TEXT:
      if (array.record.size() != 0) scanner.fail(keyword + " is not closed by a slash");
      return noteLeftOut(keyword, "it has no record");
    case End::FAULT:
      if (fault.ends_with("is out of range")) scanner.fail(keyword + ": " + fault);
      noteLeftOut(keyword, scanner.place() + ": " + fault);
      skipRecord(scanner, keyword);
    }
  }

  void addProperty(Array<float>&& array) {
    const auto before = std::find_if(m_properties.begin(), m_properties.end(),
                                     [&](const Array<float>& other) { return other.keyword == array.keyword; });
    noteRepeated(before != m_properties.end(), array.keyword);
    if (before != m_properties.end())
      *before = std::move(array);
    else
      m_properties.push_back(std::move(array));
  }

  void noteRepeated(bool isRepeated, const std::string& keyword) {
    if (isRepeated) m_content.notes.push_back("keyword " + keyword + " is repeated: the last one counts");
  }

  template <class T>
  static void checkSize(const Array<T>& array, std::size_t size) {
    if (array.record.size() == size) return;
    throw GrdeclError{"cannot be read: " + array.place + ": " + array.keyword + " has " +
                      std::to_string(array.record.size()) + " values instead of " + std::to_string(size)};
  }

  /// A file of a few bytes must not ask for all memory.
  void checkImplied() const {
    std::size_t left = mostImplied;
    const auto take = [&left](std::size_t implied) {
      if (implied > left)
        throw GrdeclError{"cannot be read: repeat counts stand for more than " + std::to_string(mostImplied) +
                          " values"};
      left -= implied;
    };
    take(m_coord.record.numImplied());
    take(m_zcorn.record.numImplied());
    take(m_active.record.numImplied());
    for (const Array<float>& property : m_properties)
      take(property.record.numImplied());
  }

  std::vector<std::uint8_t> deadFlags() {
    std::vector<std::uint8_t> flags = m_active.record.take();
    for (std::uint8_t& flag : flags)
      flag = flag == 0 ? 1 : 0;
    return flags;
  }

  KbMeshFile::Content& m_content;
  KbIndex<3> m_counts{};
  Array<double> m_coord;
  Array<double> m_zcorn;
  Array<std::uint8_t> m_active;
  std::vector<Array<float>> m_properties;
  bool m_ended = false;
};

} // namespace

void kx::readGrdecl(const std::string& path, KbMeshFile::Content& content) {
  try {
    GrdeclReader reader(content);
    reader.readFile(path, 0);
    reader.makeMesh();
  } catch (const GrdeclError& error) {
    content.error = error.text;
  }
}
