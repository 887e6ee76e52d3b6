// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxType.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/misc/NxTypedObject.h>

#include <deque>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

struct NxType::Entry {
  NbName name;
  const Entry* parent;
  CreateFunction create;
  int data;
};

/// Entries are never removed nor moved, so that values of NxType can point at them without a lock; only the table of
/// names changes. Never destroyed, because static objects of other libraries use types until the very end.
struct NxTypeRegistry {
  std::shared_mutex mutex;
  std::deque<NxType::Entry> entries;
  std::unordered_map<NbName, const NxType::Entry*> byName;

  static NxTypeRegistry& get() {
    static NxTypeRegistry& instance = *new NxTypeRegistry;
    return instance;
  }

  const NxType::Entry* find(const NbName& name) {
    const auto entry = byName.find(name);
    return entry == byName.end() ? nullptr : entry->second;
  }
};

NxType NxType::fromName(const NbName& name) {
  NxTypeRegistry& registry = NxTypeRegistry::get();
  const std::shared_lock<std::shared_mutex> lock(registry.mutex);
  return NxType(registry.find(name));
}

NxType NxType::createType(NxType parent, const NbName& name, CreateFunction create, int data) {
  NxTypeRegistry& registry = NxTypeRegistry::get();
  const std::unique_lock<std::shared_mutex> lock(registry.mutex);
  registry.entries.push_back({name, parent.m_entry, create, data});
  registry.byName[name] = &registry.entries.back();
  return NxType(&registry.entries.back());
}

bool NxType::removeType(const NbName& name) {
  NxTypeRegistry& registry = NxTypeRegistry::get();
  const std::unique_lock<std::shared_mutex> lock(registry.mutex);
  return registry.byName.erase(name) > 0;
}

bool NxType::isRegistered() const {
  if (!m_entry) return false;
  NxTypeRegistry& registry = NxTypeRegistry::get();
  const std::shared_lock<std::shared_mutex> lock(registry.mutex);
  return registry.find(m_entry->name) == m_entry;
}

NbName NxType::getName() const {
  static const NbName badName("BadType");
  return m_entry ? m_entry->name : badName;
}

NxType NxType::getParent() const { return NxType(m_entry ? m_entry->parent : nullptr); }

int NxType::getData() const { return m_entry ? m_entry->data : 0; }

bool NxType::isDerivedFrom(NxType ancestor) const {
  if (!ancestor.m_entry) return false;
  for (const Entry* entry = m_entry; entry; entry = entry->parent)
    if (entry == ancestor.m_entry) return true;
  return false;
}

bool NxType::canCreateInstance() const { return m_entry && m_entry->create; }

NxTypedObject* NxType::createInstance() const { return canCreateInstance() ? m_entry->create() : nullptr; }

std::vector<NxType> NxType::getAllDerivedFrom(NxType ancestor) {
  NxTypeRegistry& registry = NxTypeRegistry::get();
  const std::shared_lock<std::shared_mutex> lock(registry.mutex);
  std::vector<NxType> types;
  for (const Entry& entry : registry.entries)
    if (registry.find(entry.name) == &entry && NxType(&entry).isDerivedFrom(ancestor)) types.push_back(NxType(&entry));
  return types;
}

NxTypedObject::~NxTypedObject() = default;

void NxTypedObject::checkDatabase(const char* className, const void* object, NxType classType, NxType& storedType) {
  if (classType.isRegistered() && classType == storedType) return;
  const NxType known = NxType::fromName(className);
  if (known.isBad())
    NxDebugError::post("NxTypedObject::checkDatabase", "The class %s of the object %p is not in the type database.",
                       className, object);
  else
    storedType = known;
}
