// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoTabulatedColorMapping.h>

KoTabulatedColorMapping::~KoTabulatedColorMapping() = default;

void KoTabulatedColorMapping::addFields(NxNodeClass& nodeClass) {
  nodeClass.addField(this, "values", values, [this] { values.setValue(0.f); });
  nodeClass.addField(this, "colors", colors, [this] { colors.setValue(NbVec4f(0.f, 0.f, 0.f, 0.f)); });
  nodeClass.addField(this, "minThresholdEnable", minThresholdEnable, [this] { minThresholdEnable.setValue(false); });
  nodeClass.addField(this, "minThresholdValue", minThresholdValue, [this] { minThresholdValue.setValue(0.f); });
  nodeClass.addField(this, "minThresholdColor", minThresholdColor,
                     [this] { minThresholdColor.setValue(NbVec4f(0.f, 0.f, 0.f, 0.f)); });
  nodeClass.addField(this, "maxThresholdEnable", maxThresholdEnable, [this] { maxThresholdEnable.setValue(false); });
  nodeClass.addField(this, "maxThresholdValue", maxThresholdValue, [this] { maxThresholdValue.setValue(0.f); });
  nodeClass.addField(this, "maxThresholdColor", maxThresholdColor,
                     [this] { maxThresholdColor.setValue(NbVec4f(0.f, 0.f, 0.f, 0.f)); });
}
