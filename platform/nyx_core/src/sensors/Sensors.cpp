// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxField.h>
#include <Nyx/misc/NxDB.h>
#include <Nyx/misc/NxNotList.h>
#include <Nyx/nodes/NxNode.h>
#include <Nyx/sensors/NxFieldSensor.h>
#include <Nyx/sensors/NxIdleSensor.h>
#include <Nyx/sensors/NxNodeSensor.h>
#include <Nyx/sensors/NxOneShotSensor.h>
#include <Nyx/sensors/NxSensorManager.h>

#include <utility>

NxSensor::~NxSensor() = default;

void NxSensor::trigger() {
  if (m_function) m_function(m_data, this);
}

NxDelayQueueSensor::~NxDelayQueueSensor() { NxDelayQueueSensor::unschedule(); }

void NxDelayQueueSensor::setPriority(uint32_t priority) {
  // The queue is sorted by priority: a queued sensor leaves it and comes back behind its new equals.
  const bool wasScheduled = isScheduled();
  if (wasScheduled) unschedule();
  m_priority = priority;
  if (wasScheduled) schedule();
}

void NxDelayQueueSensor::schedule() { NxDB::getSensorManager().insert(*this); }

void NxDelayQueueSensor::unschedule() { NxDB::getSensorManager().remove(*this); }

bool NxDelayQueueSensor::isScheduled() const { return NxDB::getSensorManager().contains(*this); }

NxOneShotSensor::~NxOneShotSensor() = default;

NxIdleSensor::~NxIdleSensor() = default;

void NxIdleSensor::trigger() {
  schedule(); // Before the function, so that it can unschedule the sensor.
  NxSensor::trigger();
}

NxDataSensor::~NxDataSensor() = default;

void NxDataSensor::setDeleteCallback(NxSensorCB* function, void* data) {
  m_deleteFunction = function;
  m_deleteData = data;
}

void NxDataSensor::notify(NxNotList* list) {
  if (getPriority() != 0) {
    schedule();
    return;
  }
  // Saved, because the function may change what the sensor watches.
  NxField* const formerField = std::exchange(m_triggerField, list->getTriggerField());
  NxBase* const formerBase = std::exchange(m_triggerBase, list->getTriggerBase());
  trigger();
  m_triggerField = formerField;
  m_triggerBase = formerBase;
}

void NxDataSensor::dyingReference() {
  if (m_deleteFunction) m_deleteFunction(m_deleteData, this);
  detach();
}

NxFieldSensor::~NxFieldSensor() { NxFieldSensor::detach(); }

void NxFieldSensor::attach(NxField* field) {
  detach();
  m_field = field;
  if (field) field->getAuditors().append(this);
}

void NxFieldSensor::detach() {
  unschedule();
  if (NxField* former = std::exchange(m_field, nullptr)) former->getAuditors().remove(this);
}

NxNodeSensor::~NxNodeSensor() { NxNodeSensor::detach(); }

void NxNodeSensor::attach(NxNode* node) {
  detach();
  m_node = node;
  if (node) node->getAuditors().append(this);
}

void NxNodeSensor::detach() {
  unschedule();
  if (NxNode* former = std::exchange(m_node, nullptr)) former->getAuditors().remove(this);
}
