// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxDelayQueueSensor.h>

class NxBase;
class NxField;
class NxNotList;

/// A sensor that watches a part of a scene graph.
class NYX_CORE_API NxDataSensor : public NxDelayQueueSensor {
public:
  explicit NxDataSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxDelayQueueSensor(function, data) {}
  ~NxDataSensor() override;

  /// A function that is called when what the sensor watches dies, before the sensor is detached.
  void setDeleteCallback(NxSensorCB* function, void* data = nullptr);

  /// The field whose change triggers the sensor, known while a sensor of priority 0 is being triggered; null otherwise,
  /// and for a change without a field, such as a touch.
  NxField* getTriggerField() const { return m_triggerField; }
  /// The object whose change triggers the sensor; as above.
  NxBase* getTriggerBase() const { return m_triggerBase; }

  /// Told by the watched object: triggers a sensor of priority 0 and schedules others.
  void notify(NxNotList* list);
  /// Told by the watched object that it dies.
  void dyingReference();

  virtual void detach() = 0;

private:
  NxSensorCB* m_deleteFunction = nullptr;
  void* m_deleteData = nullptr;
  NxField* m_triggerField = nullptr;
  NxBase* m_triggerBase = nullptr;
};
