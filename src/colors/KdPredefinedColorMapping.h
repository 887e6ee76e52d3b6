// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <Nyx/base/NbColorRGBA.h>

#include <cstddef>

/// A fixed formula from a value in a range to a colour.
///
/// Values at or below the least value count as 0, values at or above the greatest as 1. A range of no extent has the
/// length 1; a range with its ends exchanged keeps its length and starts at `minValue`.
class KdPredefinedColorMapping : public KiColorMapping<double, NbColorRGBA> {
public:
  /// The same two values again change nothing; others take a new time stamp.
  void setMinMax(double min, double max);

  void getRangeValue(double& min, double& max) const override;
  std::size_t getTimeStamp() const override { return m_timeStamp; }

protected:
  KdPredefinedColorMapping();
  /// The place of a value in the range, from 0 to 1.
  float normalize(double value) const {
    if (m_minValue >= value) return 0.f;
    const float x = static_cast<float>((value - m_minValue) / m_range);
    return x < 1.f ? x : 1.f;
  }

private:
  double m_minValue = 0.0;
  double m_maxValue = 1.0;
  double m_range = 1.0;
  std::size_t m_timeStamp;
};
