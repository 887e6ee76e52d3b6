// SPDX-License-Identifier: BSD-3-Clause
#include "colors/KdPredefinedColorMapping.h"

#include <KerrinExtractor/KxTimeStamp.h>

#include <cmath>

KdPredefinedColorMapping::KdPredefinedColorMapping()
    : m_timeStamp(KxTimeStamp::getTimeStamp()) {}

void KdPredefinedColorMapping::setMinMax(double min, double max) {
  if (min == m_minValue && max == m_maxValue) return;
  m_timeStamp = KxTimeStamp::getTimeStamp();
  m_minValue = min;
  m_maxValue = max;
  m_range = min == max ? 1.0 : std::abs(max - min);
}

void KdPredefinedColorMapping::getRangeValue(double& min, double& max) const {
  min = m_minValue;
  max = m_maxValue;
}
