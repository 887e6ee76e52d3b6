// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

class NxDelayQueueSensor;

/// The queue of sensors. NxDB owns the only one; all operations may be called from any thread.
class NYX_CORE_API NxSensorManager {
public:
  /// Sets a function that is called when a sensor has been put into the empty queue, on the thread that has scheduled
  /// it: an application that sleeps is to wake up and to process the queue. Null for none.
  void setChangedCallback(void (*function)(void* data), void* data);

  bool isQueueEmpty() const;
  /// See NxDB::processSensors.
  int process(bool isIdle);

  // For sensors.
  void insert(NxDelayQueueSensor& sensor);
  void remove(NxDelayQueueSensor& sensor);
  bool contains(const NxDelayQueueSensor& sensor) const;

private:
  using Key = std::pair<uint32_t, uint64_t>; ///< Priority, then order of scheduling.
  NxDelayQueueSensor* takeNext(bool isIdle, uint64_t end);

  mutable std::mutex m_mutex;
  std::map<Key, NxDelayQueueSensor*> m_queue;
  uint64_t m_lastTicket = 0;
  void (*m_changed)(void*) = nullptr;
  void* m_changedData = nullptr;
};
