// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxSensor.h>

#include <cstdint>

/// A sensor that waits in the queue of NxDB::processSensors. May be scheduled from any thread; it is triggered on the
/// thread that processes the queue.
class NYX_CORE_API NxDelayQueueSensor : public NxSensor {
public:
  explicit NxDelayQueueSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxSensor(function, data) {}
  ~NxDelayQueueSensor() override;

  static constexpr uint32_t getDefaultPriority() { return 100; }
  /// Sensors with a lower number are triggered first. A data sensor of priority 0 is not queued: it is triggered at
  /// once when what it watches changes. 100 by default.
  void setPriority(uint32_t priority);
  uint32_t getPriority() const { return m_priority; }

  /// Queues one call; does nothing when one is queued.
  void schedule() override;
  void unschedule() override;
  bool isScheduled() const override;
  /// True for sensors that are triggered only when nothing else is to do.
  virtual bool isIdleOnly() const { return false; }

private:
  friend class NxSensorManager;
  uint32_t m_priority = getDefaultPriority();
  uint64_t m_ticket = 0; ///< Place in the queue, 0 when not queued; guarded by the queue.
};
