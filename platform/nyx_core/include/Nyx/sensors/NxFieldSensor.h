// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxDataSensor.h>

/// A sensor that watches a field.
class NYX_CORE_API NxFieldSensor : public NxDataSensor {
public:
  explicit NxFieldSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxDataSensor(function, data) {}
  ~NxFieldSensor() override;

  /// Watches this field, and no other that was watched before.
  void attach(NxField* field);
  void detach() override;
  NxField* getAttachedField() const { return m_field; }

private:
  NxField* m_field = nullptr;
};
