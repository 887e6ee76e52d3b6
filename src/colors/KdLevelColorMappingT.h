// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdThreshold.h"

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>
#include <cstddef>
#include <vector>

/// One colour for each band between two neighbouring values.
///
/// Thresholds are folded into bands of their own when they are set, so that they cost nothing per value. A mapping is
/// valid when there is one value more than there are colours; whoever sets the values sees to that.
template <class Value, class Color>
class KdLevelColorMappingT : public KiColorMapping<Value, Color> {
public:
  using Threshold = KdThreshold<Value, Color>;

  /// Content that equals what is held changes nothing; anything else takes a new time stamp.
  void setValues(const std::vector<Value>& values, const std::vector<Color>& colors) {
    if (values == m_values && colors == m_colors) return;
    m_values = values;
    m_colors = colors;
    contentChanged();
  }
  void setMinThreshold(const Threshold& threshold) { assign(m_minThreshold, threshold); }
  void setMaxThreshold(const Threshold& threshold) { assign(m_maxThreshold, threshold); }

  /// The band limits and band colours that are in force, thresholds included.
  std::size_t getNumLevels() const { return m_levels.size(); }
  Value getLevel(std::size_t i) const { return m_levels[i]; }
  std::size_t getNumColors() const { return m_levelColors.size(); }
  const Color& getLevelColor(std::size_t i) const { return m_levelColors[i]; }
  bool getMinThreshold(Value& value, Color& color) const { return read(m_minThreshold, value, color); }
  bool getMaxThreshold(Value& value, Color& color) const { return read(m_maxThreshold, value, color); }

  /// The band of a value: a value on a level belongs to the band above it, values beyond the ends to the end bands.
  std::size_t bandIndex(Value value) const {
    const auto above = std::upper_bound(m_levels.begin(), m_levels.end(), value);
    if (above == m_levels.end()) return m_levels.size() - 2;
    if (above == m_levels.begin()) return 0;
    return static_cast<std::size_t>(above - m_levels.begin()) - 1;
  }

  Color getColor(Value value) const override {
    return m_levelColors.empty() ? Color() : m_levelColors[bandIndex(value)];
  }

  void getRangeValue(Value& min, Value& max) const override {
    min = m_levels.empty() ? Value() : m_levels.front();
    max = m_levels.empty() ? Value() : m_levels.back();
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }

private:
  void assign(Threshold& member, const Threshold& threshold) {
    if (member == threshold) return;
    member = threshold;
    contentChanged();
  }

  static bool read(const Threshold& threshold, Value& value, Color& color) {
    value = threshold.value;
    color = threshold.color;
    return threshold.enabled;
  }

  void contentChanged() {
    m_timeStamp = KxTimeStamp::getTimeStamp();
    rebuildLevels();
  }

  void rebuildLevels() {
    m_levels.clear();
    m_levelColors.clear();
    if (m_values.size() < 2) return;
    Value top = m_values.back();
    if (m_maxThreshold.enabled) top = std::max(top, m_maxThreshold.value);
    Value bottom = m_values.front();
    if (m_minThreshold.enabled) bottom = std::min(bottom, m_minThreshold.value);
    const Value delta = (top - bottom) / Value(20);

    if (m_minThreshold.enabled)
      startWithMinThreshold(delta);
    else {
      m_levels = m_values;
      m_levelColors = m_colors;
    }
    if (m_maxThreshold.enabled) endWithMaxThreshold(delta);
  }

  void startWithMinThreshold(Value delta) {
    const Value threshold = m_minThreshold.value;
    m_levels.push_back(threshold > m_values.front() ? m_values.front() : threshold - delta);
    m_levels.push_back(threshold);
    m_levelColors.push_back(m_minThreshold.color);
    std::size_t skipped = 0;
    while (skipped + 1 < m_values.size() && m_values[skipped + 1] < threshold)
      ++skipped;
    m_levels.insert(m_levels.end(), m_values.begin() + offset(skipped + 1), m_values.end());
    m_levelColors.insert(m_levelColors.end(), m_colors.begin() + offset(std::min(skipped, m_colors.size())),
                         m_colors.end());
  }

  void endWithMaxThreshold(Value delta) {
    const Value threshold = m_maxThreshold.value;
    const Value last = m_levels.back();
    if (threshold > last) {
      m_levels.back() = threshold;
      m_levels.push_back(threshold + delta);
    } else {
      const auto kept = std::lower_bound(m_levels.begin(), m_levels.end(), threshold) - m_levels.begin();
      m_levels.resize(static_cast<std::size_t>(kept));
      m_levelColors.resize(static_cast<std::size_t>(kept));
      m_levels.push_back(threshold);
      m_levels.push_back(last);
    }
    m_levelColors.push_back(m_maxThreshold.color);
  }

  static std::ptrdiff_t offset(std::size_t i) { return static_cast<std::ptrdiff_t>(i); }

  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  std::vector<Value> m_values;
  std::vector<Color> m_colors;
  std::vector<Value> m_levels;
  std::vector<Color> m_levelColors;
  Threshold m_minThreshold;
  Threshold m_maxThreshold;
};
