// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NxPreferences.h>

#include <Nyx/base/NxDebugError.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>

namespace {

struct Overrides {
  std::mutex mutex;
  std::map<std::string, std::string> values;
};

Overrides& overrides() {
  static Overrides& instance = *new Overrides; // Preferences are read by static objects of other libraries.
  return instance;
}

std::optional<std::string> find(const char* key) {
  Overrides& current = overrides();
  const std::lock_guard<std::mutex> lock(current.mutex);
  if (const auto entry = current.values.find(key); entry != current.values.end()) return entry->second;
  if (const char* text = std::getenv(key)) return std::string(text);
  return std::nullopt;
}

template <class T>
T getNumber(const char* origin, const char* key, T defaultValue) {
  const std::optional<std::string> text = find(key);
  if (!text) return defaultValue;
  T value{};
  const char* const end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, value);
  if (error == std::errc() && stop == end) return value;
  NxDebugError::postWarning(origin, "%s is \"%s\", which is no number.", key, text->c_str());
  return defaultValue;
}

} // namespace

bool NxPreferences::getBool(const char* key, bool defaultValue) {
  const std::optional<std::string> text = find(key);
  if (!text) return defaultValue;
  std::string word = *text;
  std::transform(word.begin(), word.end(), word.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const char* yes : {"1", "true", "on", "yes"})
    if (word == yes) return true;
  for (const char* no : {"", "0", "false", "off", "no"})
    if (word == no) return false;
  NxDebugError::postWarning("NxPreferences::getBool", "%s is \"%s\", which is neither true nor false.", key,
                            text->c_str());
  return defaultValue;
}

std::string NxPreferences::getString(const char* key, const std::string& defaultValue) {
  return find(key).value_or(defaultValue);
}

int NxPreferences::getInt(const char* key, int defaultValue) {
  return getNumber("NxPreferences::getInt", key, defaultValue);
}

double NxPreferences::getDouble(const char* key, double defaultValue) {
  return getNumber("NxPreferences::getDouble", key, defaultValue);
}

void NxPreferences::setValue(const char* key, const std::string& text) {
  Overrides& current = overrides();
  const std::lock_guard<std::mutex> lock(current.mutex);
  current.values[key] = text;
}

void NxPreferences::removeValue(const char* key) {
  Overrides& current = overrides();
  const std::lock_guard<std::mutex> lock(current.mutex);
  current.values.erase(key);
}
