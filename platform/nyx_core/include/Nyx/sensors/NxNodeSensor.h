// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/sensors/NxDataSensor.h>

class NxNode;

/// A sensor that watches a node and everything below it.
class NYX_CORE_API NxNodeSensor : public NxDataSensor {
public:
  explicit NxNodeSensor(NxSensorCB* function = nullptr, void* data = nullptr)
      : NxDataSensor(function, data) {}
  ~NxNodeSensor() override;

  /// Watches this node, and no other that was watched before. No reference is taken: when the node dies, the sensor
  /// is detached.
  void attach(NxNode* node);
  void detach() override;
  NxNode* getAttachedNode() const { return m_node; }

private:
  NxNode* m_node = nullptr;
};
