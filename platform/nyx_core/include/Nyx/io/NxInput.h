// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <string>
#include <vector>

/// Where files are looked for: texts held in memory first, then the search directories in their order, and the name
/// as it stands last. May be used from any thread.
class NYX_CORE_API NxInput {
public:
  NxInput() = delete;

  /// Adds a search directory. "$NAME" in it stands for the environment variable of that name at the time of a search;
  /// a directory with a variable that is not set is passed over. A directory that is in the list already is moved.
  static void addDirectoryFirst(const char* directory);
  static void addDirectoryLast(const char* directory);
  /// Takes out a directory, given by the same text; false when it is not in the list.
  static bool removeDirectory(const char* directory);
  /// The list as given.
  static std::vector<std::string> getDirectories();

  /// Registers a text under a file name; a text of the same name is replaced.
  static void addInMemoryTextFile(const char* name, const char* text);
  static bool removeInMemoryTextFile(const char* name);

  /// The text registered under this name or, if there is none, the content of the file; false, with an empty text,
  /// when neither is found.
  static bool readTextFile(const std::string& name, std::string& text);
  /// The full name of a file in the search directories, empty when there is none.
  static std::string findFile(const std::string& name);
};
