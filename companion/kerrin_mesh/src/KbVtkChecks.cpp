// SPDX-License-Identifier: BSD-3-Clause
#include "KbVtkChecks.h"
#include "KbWords.h"

#include <filesystem>
#include <fstream>
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

/// Whether a legacy file says so: binary ones are not looked through.
bool isLegacyText(const std::string& path) {
  std::ifstream stream(path);
  std::string line;
  for (int l = 0; l < 3; ++l)
    std::getline(stream, line);
  return line.starts_with("ASCII") || line.starts_with("ascii");
}

/// The value of an attribute of an XML tag, and its name from where it was found.
struct Attribute {
  std::string name;
  std::string value;
};

/// All attributes whose names have a part. Values may have it too.
std::vector<Attribute> attributesOf(const std::string& tag, std::string_view part) {
  constexpr const char* space = " \t\r\n";
  std::vector<Attribute> found;
  for (std::size_t at = tag.find(part); at != std::string::npos; at = tag.find(part, at + 1)) {
    const std::size_t equal = tag.find_first_of("='\"", at);
    if (equal == std::string::npos || tag[equal] != '=') continue;
    const std::size_t open = tag.find_first_not_of(space, equal + 1);
    if (open == std::string::npos) break;
    const std::size_t begin = tag.find_last_of(space, at) + 1;
    found.push_back({tag.substr(begin, tag.find_first_of("= \t\r\n", at) - begin),
                     tag.substr(open + 1, tag.find(tag[open], open + 1) - open - 1)});
  }
  return found;
}

/// Six numbers of nodes that can be counted by 32-bit integers.
bool isExtent(const std::string& value) {
  constexpr std::int64_t most = 1'000'000'000;
  Words words(value);
  for (int n = 0; n < 6; ++n) {
    const std::optional<std::int64_t> number = words.nextInteger();
    if (!number || *number < -most || *number > most) return false;
  }
  return true;
}

/// The counts and extents of an XML file. Compressed values take little room, but no count exceeds the size of the file
/// by as much as it may here.
std::string findFaultInXml(const std::string& path) {
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
  std::ifstream stream(path, std::ios::binary);
  for (std::string tag; std::getline(stream, tag, '<');) {
    if (tag.starts_with("AppendedData")) break; // bytes that may look like anything
    tag.resize(std::min(tag.find('>'), tag.size()));
    for (const Attribute& attribute : attributesOf(tag, "NumberOf")) {
      std::size_t count = 0;
      if (!Words(attribute.value).nextCount(attribute.name == "NumberOfComponents" ? size : 10'000 * size, count))
        return attribute.name + " is " + inQuotes(attribute.value);
    }
    for (const Attribute& attribute : attributesOf(tag, "Extent")) {
      if (!isExtent(attribute.value)) return attribute.name + " is " + inQuotes(attribute.value);
    }
  }
  return {};
}

} // namespace

std::string kx::findFaultForVtk(const std::string& path, const std::string& extension) {
  if (extension == ".vtk") return isLegacyText(path) ? findFaultInLegacy(textOf(path)) : std::string();
  if (extension == ".ply") return findFaultInPly(textOf(path));
  if (extension == ".obj") return findFaultInObj(textOf(path));
  if (extension == ".inp") return findFaultInUcd(textOf(path));
  if (extension != ".stl") return findFaultInXml(path);
  return {};
}
