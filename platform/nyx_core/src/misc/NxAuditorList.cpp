// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/misc/NxAuditorList.h>

#include <Nyx/fields/NxField.h>
#include <Nyx/misc/NxBase.h>
#include <Nyx/misc/NxChangeId.h>
#include <Nyx/misc/NxNotList.h>
#include <Nyx/sensors/NxDataSensor.h>

#include <algorithm>

NxNotList::NxNotList(NxBase* base, NxField* field)
    : m_base(base)
    , m_field(field)
    , m_stamp(nxGetNextChangeId()) {}

void NxAuditorList::append(NxDataSensor* sensor) {
  m_entries.push_back({sensor, SENSOR});
  ++m_sensorCount;
}

void NxAuditorList::remove(NxDataSensor* sensor) {
  remove(sensor, SENSOR);
  --m_sensorCount;
}

void NxAuditorList::remove(const void* object, Type type) {
  const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [object, type](const Entry& candidate) {
    return candidate.object == object && candidate.type == type;
  });
  if (entry == m_entries.end()) return;
  if (m_runs > 0) {
    // A notification counts through the list at this moment.
    entry->object = nullptr;
    m_hasGaps = true;
  } else {
    m_entries.erase(entry);
  }
}

void NxAuditorList::compact() {
  if (m_runs > 0 || !m_hasGaps) return;
  m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return !entry.object; }),
                  m_entries.end());
  m_hasGaps = false;
}

std::vector<NxBase*> NxAuditorList::getParents() const {
  std::vector<NxBase*> parents;
  for (const Entry& entry : m_entries)
    if (entry.object && entry.type == PARENT) parents.push_back(static_cast<NxBase*>(entry.object));
  return parents;
}

void NxAuditorList::notify(NxNotList* list) {
  if (m_entries.empty()) return;
  ++m_runs;
  const auto sensorAt = [this](size_t i) {
    const Entry& entry = m_entries[i];
    return entry.type == SENSOR ? static_cast<NxDataSensor*>(entry.object) : nullptr;
  };
  // Entries that are added meanwhile are not told: they know the new content.
  const size_t end = m_entries.size();
  if (m_sensorCount > 0)
    for (size_t i = 0; i < end; ++i)
      if (NxDataSensor* sensor = sensorAt(i); sensor && sensor->getPriority() == 0) sensor->notify(list);
  for (size_t i = 0; i < end; ++i) {
    const Entry entry = m_entries[i];
    if (!entry.object) continue;
    if (entry.type == PARENT)
      static_cast<NxBase*>(entry.object)->notify(list);
    else if (entry.type == FIELD)
      static_cast<NxField*>(entry.object)->notify(list);
    else if (NxDataSensor* sensor = sensorAt(i); sensor->getPriority() != 0)
      sensor->notify(list);
  }
  --m_runs;
  compact();
}

void NxAuditorList::notifyDying() {
  ++m_runs;
  for (size_t i = 0; i < m_entries.size(); ++i)
    if (m_entries[i].object && m_entries[i].type == SENSOR)
      static_cast<NxDataSensor*>(m_entries[i].object)->dyingReference();
  --m_runs;
  compact();
}
