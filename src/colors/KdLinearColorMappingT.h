// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "colors/KdThreshold.h"

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <cstddef>
#include <utility>
#include <vector>

/// Colours interpolated between given values, in ascending order. `Scalar` is the component type of a colour.
template <class Value, class Color, class Scalar>
class KdLinearColorMappingT : public KiColorMapping<Value, Color> {
public:
  using Entry = std::pair<Value, Color>;
  using Threshold = KdThreshold<Value, Color>;

  /// Content that equals what is held changes nothing; anything else takes a new time stamp.
  void setEntries(const std::vector<Entry>& entries) { assign(m_entries, entries); }
  void setMinThreshold(const Threshold& threshold) { assign(m_minThreshold, threshold); }
  void setMaxThreshold(const Threshold& threshold) { assign(m_maxThreshold, threshold); }

  std::size_t getNumEntries() const { return m_entries.size(); }
  const Entry& getEntry(std::size_t i) const { return m_entries[i]; }
  bool getMinThreshold(Value& value, Color& color) const { return read(m_minThreshold, value, color); }
  bool getMaxThreshold(Value& value, Color& color) const { return read(m_maxThreshold, value, color); }

  Color getColor(Value value) const override {
    if (m_minThreshold.enabled && m_minThreshold.value > value) return m_minThreshold.color;
    if (m_maxThreshold.enabled && value > m_maxThreshold.value) return m_maxThreshold.color;
    if (m_entries.empty()) return Color();
    std::size_t upper = 0;
    while (upper < m_entries.size() && !(m_entries[upper].first > value))
      ++upper;
    if (upper == 0) return m_entries.front().second;
    if (upper == m_entries.size()) return m_entries.back().second;
    const auto& [lowValue, lowColor] = m_entries[upper - 1];
    const auto& [highValue, highColor] = m_entries[upper];
    const Value t = (value - lowValue) / (highValue - lowValue);
    Color color;
    for (int c = 0; c < Color::SIZE; ++c)
      color[c] =
          static_cast<Scalar>(t * static_cast<Value>(highColor[c] - lowColor[c]) + static_cast<Value>(lowColor[c]));
    return color;
  }

  void getRangeValue(Value& min, Value& max) const override {
    min = m_entries.empty() ? Value() : m_entries.front().first;
    max = m_entries.empty() ? Value() : m_entries.back().first;
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }

private:
  template <class Member>
  void assign(Member& member, const Member& content) {
    if (member == content) return;
    member = content;
    m_timeStamp = KxTimeStamp::getTimeStamp();
  }

  static bool read(const Threshold& threshold, Value& value, Color& color) {
    value = threshold.value;
    color = threshold.color;
    return threshold.enabled;
  }

  std::size_t m_timeStamp = KxTimeStamp::getTimeStamp();
  std::vector<Entry> m_entries;
  Threshold m_minThreshold;
  Threshold m_maxThreshold;
};
