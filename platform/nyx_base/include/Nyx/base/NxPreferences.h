// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NyxBaseExport.h>

#include <string>

/// Settings by key. The value of a key is what the program has set with setValue, else the environment variable of
/// the key's name, else the default that the caller gives. May be used from any thread.
class NYX_BASE_API NxPreferences {
public:
  NxPreferences() = delete;

  /// True for "1", "true", "on" and "yes" in any case, false for "0", "false", "off", "no" and an empty text. Any
  /// other text posts a warning and gives the default.
  static bool getBool(const char* key, bool defaultValue);
  /// The text of the key. An environment variable that is set but empty counts as an empty text.
  static std::string getString(const char* key, const std::string& defaultValue);
  /// A whole number; a text that is none posts a warning and gives the default.
  static int getInt(const char* key, int defaultValue);
  /// A number with a decimal point; a text that is none posts a warning and gives the default.
  static double getDouble(const char* key, double defaultValue);

  /// Overrides environment and default from now on.
  static void setValue(const char* key, const std::string& text);
  /// Takes back what setValue has set.
  static void removeValue(const char* key);
};
