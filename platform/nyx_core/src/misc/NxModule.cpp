// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxModule.h>

#include <algorithm>
#include <mutex>

namespace {

struct ModuleList {
  std::mutex mutex;
  std::vector<const NxModule*> modules;

  static ModuleList& get() {
    static ModuleList& instance = *new ModuleList; // Records are static objects; the list must outlive them all.
    return instance;
  }
};

} // namespace

NxModule::NxModule(const char* fileName, const char* version, const char* text, const char* architecture,
                   bool isDistributed, bool isLoadable)
    : m_fileName(fileName)
    , m_version(version)
    , m_text(text)
    , m_architecture(architecture)
    , m_isDistributed(isDistributed)
    , m_isLoadable(isLoadable) {
  ModuleList& list = ModuleList::get();
  const std::lock_guard<std::mutex> lock(list.mutex);
  list.modules.push_back(this);
}

NxModule::~NxModule() {
  ModuleList& list = ModuleList::get();
  const std::lock_guard<std::mutex> lock(list.mutex);
  list.modules.erase(std::remove(list.modules.begin(), list.modules.end(), this), list.modules.end());
}

std::vector<const NxModule*> NxModule::getModules() {
  ModuleList& list = ModuleList::get();
  const std::lock_guard<std::mutex> lock(list.mutex);
  return list.modules;
}
