// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/lodestar/NcInitModuleCmd.h>

#include <Nyx/base/NxDebugError.h>

#include <algorithm>

NcInitModuleCmd* NcInitModuleCmd::Instance() {
  static NcInitModuleCmd instance;
  return &instance;
}

void NcInitModuleCmd::serialize(const char* moduleName) {
  if (!moduleName || !*moduleName) {
    NxDebugError::post("NcInitModuleCmd::serialize", "A module without a name cannot be announced.");
    return;
  }
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (std::find(m_modules.begin(), m_modules.end(), moduleName) == m_modules.end()) m_modules.emplace_back(moduleName);
}

std::vector<std::string> NcInitModuleCmd::getModules() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_modules;
}

void NcInitModuleCmd::clear() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_modules.clear();
}
