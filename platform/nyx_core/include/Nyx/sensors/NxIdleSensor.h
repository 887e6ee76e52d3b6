// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxDelayQueueSensor.h>

/// A sensor that is called, once scheduled, each time the queue is processed with nothing else to do, until it is
/// unscheduled.
class NYX_CORE_API NxIdleSensor : public NxDelayQueueSensor {
public:
  explicit NxIdleSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxDelayQueueSensor(function, data) {}
  ~NxIdleSensor() override;

  bool isIdleOnly() const override { return true; }
  void trigger() override;
};
