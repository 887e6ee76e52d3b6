// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxBase.h>

#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxNotList.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <unordered_map>

namespace {

/// Which objects have which name. Never destroyed, because static objects may hold named nodes.
struct NameDictionary {
  std::mutex mutex;
  std::unordered_map<NbName, std::vector<NxBase*>> objects;

  static NameDictionary& get() {
    static NameDictionary& instance = *new NameDictionary;
    return instance;
  }

  void remove(const NbName& name, NxBase* base) {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto entry = objects.find(name);
    if (entry == objects.end()) return;
    std::vector<NxBase*>& bases = entry->second;
    bases.erase(std::remove(bases.begin(), bases.end(), base), bases.end());
    if (bases.empty()) objects.erase(entry);
  }
};

} // namespace

NxType NxBase::s_classTypeId;

void NxBase::initClass() { s_classTypeId = NxType::createType(NxType::badType(), "NxBase"); }

void NxBase::exitClass() {
  NxType::removeType("NxBase");
  s_classTypeId = NxType::badType();
}

NxType NxBase::getClassTypeId() { return s_classTypeId; }

NxBase::~NxBase() { setName(NbName()); }

void NxBase::notifyDelete() { m_auditors.notifyDying(); }

void NxBase::setName(const NbName& name) {
  if (name == m_name) return;
  NameDictionary& dictionary = NameDictionary::get();
  if (!m_name.isEmpty()) dictionary.remove(m_name, this);
  m_name = name;
  if (name.isEmpty()) return;
  const std::lock_guard<std::mutex> lock(dictionary.mutex);
  dictionary.objects[name].push_back(this);
}

NxBase* NxBase::getNamedBase(const NbName& name, NxType type) {
  const std::vector<NxBase*> bases = getNamedBases(name, type);
  return bases.empty() ? nullptr : bases.back();
}

std::vector<NxBase*> NxBase::getNamedBases(const NbName& name, NxType type) {
  NameDictionary& dictionary = NameDictionary::get();
  const std::lock_guard<std::mutex> lock(dictionary.mutex);
  std::vector<NxBase*> result;
  if (const auto entry = dictionary.objects.find(name); entry != dictionary.objects.end())
    std::copy_if(entry->second.begin(), entry->second.end(), std::back_inserter(result),
                 [type](const NxBase* base) { return base->isOfType(type); });
  return result;
}

void NxBase::generateNetName() {
  static std::atomic<unsigned> last{0};
  m_netName = getTypeId().getName().getString() + ("_" + std::to_string(++last));
}

void NxBase::addWriteReference(NxOutput* output, bool) {
  if (m_writeReferences++ == 0) output->addReference(this);
}

void NxBase::startNotify() {
  NxNotList list(this);
  notify(&list);
}

void NxBase::notify(NxNotList* list) { m_auditors.notify(list); }
