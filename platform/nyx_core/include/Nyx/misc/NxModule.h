// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <string>
#include <vector>

/// What a library tells about itself. Made as a static object, so that the record exists while the library is loaded.
class NYX_CORE_API NxModule {
public:
  /// `fileName` is the library's without folder, prefix and suffix; `architecture` a text such as "64 bits". The
  /// flags tell whether the module is part of the distribution, and whether it may be loaded.
  NxModule(const char* fileName, const char* version, const char* text, const char* architecture, bool isDistributed,
           bool isLoadable);
  ~NxModule();
  NxModule(const NxModule&) = delete;
  NxModule& operator=(const NxModule&) = delete;

  const std::string& getFileName() const { return m_fileName; }
  const std::string& getVersion() const { return m_version; }
  const std::string& getText() const { return m_text; }
  const std::string& getArchitecture() const { return m_architecture; }
  bool isDistributed() const { return m_isDistributed; }
  bool isLoadable() const { return m_isLoadable; }

  /// The records of the modules that are loaded.
  static std::vector<const NxModule*> getModules();

private:
  std::string m_fileName;
  std::string m_version;
  std::string m_text;
  std::string m_architecture;
  bool m_isDistributed;
  bool m_isLoadable;
};
