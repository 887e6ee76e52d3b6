// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbName.h>

#include <mutex>
#include <unordered_set>

namespace {

/// Never destroyed: static objects of any library may hold names until the very end. The set never moves its entries.
struct NameTable {
  std::mutex mutex;
  std::unordered_set<std::string> names;
};

const std::string* intern(std::string text) {
  static NameTable& table = *new NameTable;
  const std::lock_guard<std::mutex> lock(table.mutex);
  return &*table.names.insert(std::move(text)).first;
}

} // namespace

NbName::NbName() {
  static const std::string* const empty = intern(std::string());
  m_text = empty;
}

NbName::NbName(const char* text)
    : m_text(intern(text ? text : "")) {}

NbName::NbName(const std::string& text)
    : m_text(intern(text)) {}
