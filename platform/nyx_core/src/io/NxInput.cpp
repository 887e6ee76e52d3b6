// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/io/NxInput.h>

#include <Nyx/base/NxDebugError.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>

namespace {

struct Sources {
  std::mutex mutex;
  std::vector<std::string> directories;
  std::map<std::string, std::string> texts;

  static Sources& get() {
    static Sources instance;
    return instance;
  }
};

/// The directory with its variables replaced; nothing when one of them is not set.
std::optional<std::string> expand(const std::string& directory) {
  std::string result;
  for (size_t i = 0; i < directory.size();) {
    if (directory[i] != '$') {
      result += directory[i++];
      continue;
    }
    const size_t begin = ++i;
    while (i < directory.size() && (std::isalnum(static_cast<unsigned char>(directory[i])) || directory[i] == '_'))
      ++i;
    const char* const value = std::getenv(directory.substr(begin, i - begin).c_str());
    if (!value) return std::nullopt;
    result += value;
  }
  return result;
}

void addDirectory(const char* directory, bool isFirst, const char* origin) {
  if (!directory || !*directory) {
    NxDebugError::post(origin, "An empty name is no directory.");
    return;
  }
  Sources& sources = Sources::get();
  const std::lock_guard<std::mutex> lock(sources.mutex);
  std::erase(sources.directories, directory);
  sources.directories.insert(isFirst ? sources.directories.begin() : sources.directories.end(), directory);
}

} // namespace

void NxInput::addDirectoryFirst(const char* directory) { addDirectory(directory, true, "NxInput::addDirectoryFirst"); }

void NxInput::addDirectoryLast(const char* directory) { addDirectory(directory, false, "NxInput::addDirectoryLast"); }

bool NxInput::removeDirectory(const char* directory) {
  Sources& sources = Sources::get();
  const std::lock_guard<std::mutex> lock(sources.mutex);
  return std::erase(sources.directories, directory) > 0;
}

std::vector<std::string> NxInput::getDirectories() {
  Sources& sources = Sources::get();
  const std::lock_guard<std::mutex> lock(sources.mutex);
  return sources.directories;
}

void NxInput::addInMemoryTextFile(const char* name, const char* text) {
  if (!name || !*name || !text) {
    NxDebugError::post("NxInput::addInMemoryTextFile", "A text file needs a name and a text.");
    return;
  }
  Sources& sources = Sources::get();
  const std::lock_guard<std::mutex> lock(sources.mutex);
  sources.texts[name] = text;
}

bool NxInput::removeInMemoryTextFile(const char* name) {
  Sources& sources = Sources::get();
  const std::lock_guard<std::mutex> lock(sources.mutex);
  return sources.texts.erase(name) > 0;
}

bool NxInput::readTextFile(const std::string& name, std::string& text) {
  text.clear();
  {
    Sources& sources = Sources::get();
    const std::lock_guard<std::mutex> lock(sources.mutex);
    if (const auto found = sources.texts.find(name); found != sources.texts.end()) {
      text = found->second;
      return true;
    }
  }
  const std::string fileName = findFile(name);
  if (fileName.empty()) return false;
  std::ifstream file(fileName, std::ios::binary);
  text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return file.good() || file.eof();
}

std::string NxInput::findFile(const std::string& name) {
  std::vector<std::string> directories = getDirectories();
  directories.emplace_back(); // The name as it stands, last.
  for (const std::string& directory : directories) {
    const std::optional<std::string> expanded = expand(directory);
    if (!expanded) continue;
    const std::filesystem::path candidate = std::filesystem::path(*expanded) / name;
    std::error_code error;
    if (std::filesystem::is_regular_file(candidate, error)) return candidate.string();
  }
  return std::string();
}
