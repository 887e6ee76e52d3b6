// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

class NxSensor;

/// The function that a sensor calls.
using NxSensorCB = void(void* data, NxSensor* sensor);

/// Root of the objects that call a function of the application when something happens.
class NYX_CORE_API NxSensor {
public:
  explicit NxSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : m_function(function)
      , m_data(data) {}
  NxSensor(const NxSensor&) = delete;
  NxSensor& operator=(const NxSensor&) = delete;
  virtual ~NxSensor();

  void setFunction(NxSensorCB* function) { m_function = function; }
  NxSensorCB* getFunction() const { return m_function; }
  /// What the function gets as its first argument.
  void setData(void* data) { m_data = data; }
  void* getData() const { return m_data; }

  virtual void schedule() = 0;
  virtual void unschedule() = 0;
  virtual bool isScheduled() const = 0;
  /// Calls the function.
  virtual void trigger();

private:
  NxSensorCB* m_function;
  void* m_data;
};
