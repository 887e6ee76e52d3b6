// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxDelayQueueSensor.h>

/// A sensor that is called once each time it is scheduled, also from another thread.
class NYX_CORE_API NxOneShotSensor : public NxDelayQueueSensor {
public:
  explicit NxOneShotSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxDelayQueueSensor(function, data) {}
  ~NxOneShotSensor() override;
};
