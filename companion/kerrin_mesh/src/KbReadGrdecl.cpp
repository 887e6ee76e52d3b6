// SPDX-License-Identifier: BSD-3-Clause
// Corner-point grids from GRDECL text: keywords with a record of values each, closed by a slash.
#include "KbMeshFileContent.h"
#include "KbWords.h"

#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <set>
#include <string_view>

namespace {

/// A fault in the text, with the place where it was found.
struct GrdeclError {
  std::string text;
};

/// Keywords that have no record.
const std::set<std::string_view> bareKeywords{"NOECHO", "ECHO",    "GRID",     "EDIT",   "PROPS",   "REGIONS",
                                              "INIT",   "SUMMARY", "SOLUTION", "METRIC", "RUNSPEC", "SCHEDULE",
                                              "FIELD",  "LAB",     "OIL",      "GAS",    "WATER",   "END"};

/// Keywords whose records aren't values per cell, whatever their number.
const std::set<std::string_view> otherKeywords{"MAPUNITS", "GRIDUNIT", "GDORIENT", "PINCH", "COORDSYS", "TITLE"};

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

/// Walks the words of one file; comments (-- to the end of the line) are space.
class Scanner {
public:
  Scanner(const std::filesystem::path& path, const std::string& text)
      : m_path(path)
      , m_text(text)
      , m_at(text.data()) {}

  const std::filesystem::path& path() const { return m_path; }

  /// The next word; a slash is a word of its own, and so is a quoted text, with its first quote. Empty at the end.
  std::string_view next() {
    skipSpace();
    m_word = m_at;
    const char* end = m_text.data() + m_text.size();
    if (m_at == end) return {};
    if (*m_at == '/') return {m_at++, 1};
    if (*m_at == '\'') {
      const char* start = m_at++;
      while (m_at != end && *m_at != '\'' && *m_at != '\n')
        ++m_at;
      const std::string_view word(start, static_cast<std::size_t>(m_at - start));
      if (m_at != end) ++m_at;
      return word;
    }
    const char* start = m_at;
    while (m_at != end && !isSpace(*m_at) && *m_at != '/' && !isComment(m_at))
      ++m_at;
    return {start, static_cast<std::size_t>(m_at - start)};
  }
  /// What follows the slash of a record on its line is a comment.
  void skipLine() {
    const char* end = m_text.data() + m_text.size();
    while (m_at != end && *m_at != '\n')
      ++m_at;
  }
  /// Skips the rest of a record, its slash included.
  void skipRecord() {
    for (std::string_view word = next(); !word.empty(); word = next()) {
      if (word == "/") return skipLine();
    }
  }

  /// Ends the reading with a text that names the file and the line of the last word.
  [[noreturn]] void fail(const std::string& text) const {
    const auto line = 1 + std::count(m_text.data(), m_word, '\n');
    throw GrdeclError{"cannot be read: " + m_path.filename().string() + ", line " + std::to_string(line) + ": " + text};
  }

private:
  bool isComment(const char* at) const { return *at == '-' && at + 1 != m_text.data() + m_text.size() && at[1] == '-'; }
  void skipSpace() {
    const char* end = m_text.data() + m_text.size();
    while (m_at != end) {
      if (isSpace(*m_at))
        ++m_at;
      else if (isComment(m_at))
        skipLine();
      else
        return;
    }
  }

  std::filesystem::path m_path;
  const std::string& m_text;
  const char* m_at;
  const char* m_word = nullptr;
};

/// The number that a whole word says; false if it says none. A Fortran exponent (1.0D+02) is one too.
template <class T>
bool parseNumber(std::string_view word, T& value) {
  if (!word.empty() && word.front() == '+') word.remove_prefix(1);
  const char* end = word.data() + word.size();
  const std::from_chars_result result = std::from_chars(word.data(), end, value);
  if (result.ec == std::errc() && result.ptr == end) return true;
  const std::size_t exponent = word.find_first_of("dD");
  if (std::is_integral_v<T> || exponent == std::string_view::npos) return false;
  std::string usual(word);
  usual[exponent] = 'e';
  if (usual.size() > exponent + 1 && usual[exponent + 1] == '+') usual.erase(exponent + 1, 1);
  end = usual.data() + usual.size();
  const std::from_chars_result again = std::from_chars(usual.data(), end, value);
  return again.ec == std::errc() && again.ptr == end;
}

class GrdeclReader {
public:
  explicit GrdeclReader(KbMeshFile::Content& content)
      : m_content(content) {}

  void readFile(const std::filesystem::path& path, std::size_t depth) {
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    std::string text(stream ? static_cast<std::size_t>(stream.tellg()) : 0, '\0');
    stream.seekg(0);
    if (!stream.read(text.data(), static_cast<std::streamsize>(text.size())))
      throw GrdeclError{"cannot be read: '" + path.string() + "' cannot be opened"};
    Scanner scanner(path, text);
    for (std::string_view keyword = scanner.next(); !keyword.empty(); keyword = scanner.next())
      readKeyword(scanner, keyword, depth);
  }

  void makeMesh() {
    if (m_counts[0] == 0) throw GrdeclError{"cannot be read: there is no SPECGRID"};
    if (m_coord.empty()) throw GrdeclError{"cannot be read: there is no COORD"};
    if (m_zcorn.empty()) throw GrdeclError{"cannot be read: there is no ZCORN"};
    const auto& coord = m_content.keep(std::move(m_coord));
    const auto& zcorn = m_content.keep(std::move(m_zcorn));
    KbSpan<std::uint8_t> dead;
    if (!m_dead.empty()) dead = m_content.keep(std::move(m_dead));
    if (m_content.makeMesh<KbVolumeMeshVertexHexahedronIjk>(2, m_counts, coord, zcorn, dead))
      m_content.setDeadCount(dead);
  }

private:
  void readKeyword(Scanner& scanner, std::string_view keyword, std::size_t depth) {
    const char first = keyword.front();
    if (!(first >= 'A' && first <= 'Z') && !(first >= 'a' && first <= 'z'))
      scanner.fail(kx::inQuotes(keyword) + " where a keyword is expected");
    if (bareKeywords.count(keyword)) return;
    if (keyword == "INCLUDE") return include(scanner, depth);
    if (keyword == "SPECGRID" || keyword == "DIMENS") return readCounts(scanner, keyword);
    if (keyword == "MAPAXES") return readExactly(scanner, keyword, m_content.mapAxes, 6);
    if (otherKeywords.count(keyword)) return scanner.skipRecord();
    if (keyword == "COORD") return readExactly(scanner, keyword, m_coord, 6 * numPillars(scanner, keyword));
    if (keyword == "ZCORN") return readExactly(scanner, keyword, m_zcorn, 8 * numCells(scanner, keyword));
    if (keyword == "ACTNUM") return readActive(scanner);
    readProperty(scanner, std::string(keyword));
  }

  void include(Scanner& scanner, std::size_t depth) {
    std::string_view name = scanner.next();
    if (!name.empty() && name.front() == '\'') name.remove_prefix(1);
    if (name.empty() || name == "/") scanner.fail("INCLUDE without a file name");
    if (depth == 16) scanner.fail("INCLUDE files are nested more than 16 deep");
    const std::filesystem::path path = scanner.path().parent_path() / std::string(name);
    if (!std::filesystem::is_regular_file(path)) scanner.fail("INCLUDE file " + kx::inQuotes(name) + " does not exist");
    scanner.skipRecord();
    readFile(path, depth + 1);
  }

  void readCounts(Scanner& scanner, std::string_view keyword) {
    KbIndex<3> counts{};
    for (std::size_t& count : counts) {
      const std::string_view word = scanner.next();
      // Node indices and array sizes must stay far from the end of size_t.
      if (!parseNumber(word, count) || count == 0 || count > 1'000'000)
        scanner.fail(std::string(keyword) + ": " + kx::inQuotes(word) + " is no number of cells");
    }
    scanner.skipRecord();
    if (m_counts[0] != 0 && m_counts != counts) scanner.fail(std::string(keyword) + " differs from that before");
    m_counts = counts;
  }

  std::size_t numCells(Scanner& scanner, std::string_view keyword) const {
    if (m_counts[0] == 0) scanner.fail(std::string(keyword) + " before SPECGRID");
    return KbProduct(m_counts);
  }
  std::size_t numPillars(Scanner& scanner, std::string_view keyword) const {
    numCells(scanner, keyword);
    return (m_counts[0] + 1) * (m_counts[1] + 1);
  }

  /// Appends the values of a record, with repeat counts (3*0.2), as far as there are numbers and at most `limit`; true
  /// when the record was closed within that.
  template <class T>
  static bool readNumbers(Scanner& scanner, std::vector<T>& values, std::size_t limit, std::string_view& word) {
    for (word = scanner.next(); word != "/"; word = scanner.next()) {
      std::size_t repeat = 1;
      std::string_view number = word;
      if (const std::size_t star = word.find('*'); star != std::string_view::npos) {
        if (!parseNumber(word.substr(0, star), repeat)) return false;
        number = word.substr(star + 1);
      }
      T value{};
      if (!parseNumber(number, value)) return false;
      if (repeat > limit - values.size()) return false;
      if (repeat == 1)
        values.push_back(value);
      else
        values.insert(values.end(), repeat, value);
    }
    scanner.skipLine();
    return true;
  }

  template <class T>
  static void readExactly(Scanner& scanner, std::string_view keyword, std::vector<T>& values, std::size_t size) {
    values.clear();
    std::string_view word;
    const bool closed = readNumbers(scanner, values, size, word);
    if (closed && values.size() == size) return;
    if (closed)
      scanner.fail(std::string(keyword) + " has " + std::to_string(values.size()) + " values instead of " +
                   std::to_string(size));
    if (word.empty()) scanner.fail(std::string(keyword) + " is not closed by a slash");
    if (double number = 0.0; parseNumber(word.substr(word.find('*') + 1), number))
      scanner.fail(std::string(keyword) + " has more than " + std::to_string(size) + " values");
    scanner.fail(std::string(keyword) + ": " + kx::inQuotes(word) + " is no number");
  }

  void readActive(Scanner& scanner) {
    readExactly(scanner, "ACTNUM", m_dead, numCells(scanner, "ACTNUM"));
    for (std::uint8_t& flag : m_dead)
      flag = flag == 0 ? 1 : 0;
  }

  /// A record with one number a cell is a data set; any other is left out.
  void readProperty(Scanner& scanner, const std::string& keyword) {
    std::vector<float> values;
    std::string_view word;
    const bool closed = m_counts[0] != 0 && readNumbers(scanner, values, KbProduct(m_counts), word);
    if (!closed) {
      if (word.empty() && m_counts[0] != 0) scanner.fail(keyword + " is not closed by a slash");
      scanner.skipRecord();
    }
    if (closed && values.size() == KbProduct(m_counts))
      m_content.addSet<double, 3>(keyword, DataBinding::PER_CELL, m_content.keep(std::move(values)), m_counts);
    else
      m_content.notes.push_back("keyword " + keyword + " left out: it does not have one number for each cell");
  }

  KbMeshFile::Content& m_content;
  KbIndex<3> m_counts{};
  std::vector<double> m_coord;
  std::vector<double> m_zcorn;
  std::vector<std::uint8_t> m_dead;
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
