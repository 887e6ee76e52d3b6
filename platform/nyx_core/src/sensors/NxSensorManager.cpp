// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/sensors/NxSensorManager.h>

#include <Nyx/sensors/NxDelayQueueSensor.h>

void NxSensorManager::setChangedCallback(void (*function)(void*), void* data) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_changed = function;
  m_changedData = data;
}

bool NxSensorManager::isQueueEmpty() const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_queue.empty();
}

int NxSensorManager::process(bool isIdle) {
  uint64_t end;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    end = m_lastTicket + 1;
  }
  int count = 0;
  // Called without the lock: a sensor's function may schedule, unschedule or delete sensors.
  while (NxDelayQueueSensor* sensor = takeNext(isIdle, end)) {
    sensor->trigger();
    ++count;
  }
  return count;
}

NxDelayQueueSensor* NxSensorManager::takeNext(bool isIdle, uint64_t end) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (auto entry = m_queue.begin(); entry != m_queue.end(); ++entry) {
    NxDelayQueueSensor* const sensor = entry->second;
    if (entry->first.second < end && (isIdle || !sensor->isIdleOnly())) {
      m_queue.erase(entry);
      sensor->m_ticket = 0;
      return sensor;
    }
  }
  return nullptr;
}

void NxSensorManager::insert(NxDelayQueueSensor& sensor) {
  void (*changed)(void*) = nullptr;
  void* data = nullptr;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (sensor.m_ticket != 0) return;
    if (m_queue.empty()) {
      changed = m_changed;
      data = m_changedData;
    }
    sensor.m_ticket = ++m_lastTicket;
    m_queue.emplace(Key(sensor.m_priority, sensor.m_ticket), &sensor);
  }
  if (changed) changed(data);
}

void NxSensorManager::remove(NxDelayQueueSensor& sensor) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (sensor.m_ticket != 0) m_queue.erase(Key(sensor.m_priority, std::exchange(sensor.m_ticket, 0)));
}

bool NxSensorManager::contains(const NxDelayQueueSensor& sensor) const {
  const std::lock_guard<std::mutex> lock(m_mutex);
  return sensor.m_ticket != 0;
}
