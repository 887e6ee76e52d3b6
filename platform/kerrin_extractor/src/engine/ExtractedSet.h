// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>

namespace kx {

/// Values mapped onto an extracted mesh. Statistics are found at the first question and leave NaN out; vectors are
/// ordered by length, their mean and deviation go by component. All four are 0 for a set without a value.
template <class T>
class ExtractedSet final : public KeXDataSetI<T> {
public:
  ExtractedSet() = default;
  ExtractedSet(const ExtractedSet& other)
      : KiDataSet()
      , KiTypedDataSet<T>()
      , KeXDataSet<T>()
      , KiDataSetI<T>()
      , KeXDataSetI<T>()
      , m_name(other.m_name)
      , m_binding(other.m_binding)
      , m_timeStamp(other.m_timeStamp)
      , m_values(other.m_values) {}
  ExtractedSet& operator=(const ExtractedSet&) = delete;

  /// Memory for new values; `commit` makes them the set's content.
  Array<T>& values() { return m_values; }
  void commit(std::string name, DataBinding binding) {
    m_name = std::move(name);
    m_binding = binding;
    m_timeStamp = KxTimeStamp::getTimeStamp();
    m_hasStatistics.store(false, std::memory_order_relaxed);
  }

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::string getName() const override { return m_name; }
  DataBinding getBinding() const override { return m_binding; }
  std::size_t getSize() const override { return m_values.size(); }
  T get(std::size_t i) const override { return m_values[i]; }
  const T* getValues() const override { return m_values.data(); }
  T getMin() const override { return statistics().min; }
  T getMax() const override { return statistics().max; }
  T getMean() const override { return statistics().mean; }
  T getStandardDeviation() const override { return statistics().deviation; }
  KeXDataSetI<T>* getNewClone() const override { return new ExtractedSet(*this); }

private:
  struct Statistics {
    T min = T(0);
    T max = T(0);
    T mean = T(0);
    T deviation = T(0);
  };

  static double magnitude(const T& value) {
    if constexpr (std::is_same_v<T, double>)
      return value;
    else
      return value.length();
  }
  static T square(const T& v) {
    if constexpr (std::is_same_v<T, double>)
      return v * v;
    else
      return {v[0] * v[0], v[1] * v[1], v[2] * v[2]};
  }
  static T root(const T& v) {
    if constexpr (std::is_same_v<T, double>)
      return std::sqrt(std::max(v, 0.0));
    else
      return {std::sqrt(std::max(v[0], 0.0)), std::sqrt(std::max(v[1], 0.0)), std::sqrt(std::max(v[2], 0.0))};
  }

  const Statistics& statistics() const {
    if (m_hasStatistics.load(std::memory_order_acquire)) return m_statistics;
    const std::scoped_lock lock(m_mutex);
    if (m_hasStatistics.load(std::memory_order_relaxed)) return m_statistics;
    Statistics s;
    double count = 0.0;
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
      const T& value = m_values[i];
      const double m = magnitude(value);
      if (std::isnan(m)) continue;
      count += 1.0;
      s.mean += value;
      if (m < least) {
        least = m;
        s.min = value;
      }
      if (m > greatest) {
        greatest = m;
        s.max = value;
      }
    }
    if (count > 0.0) {
      s.mean /= count;
      T squares(0); // around the mean, in a second pass, so that large values with little spread keep their digits
      for (std::size_t i = 0; i < m_values.size(); ++i)
        if (!std::isnan(magnitude(m_values[i]))) squares += square(m_values[i] - s.mean);
      s.deviation = root(squares / count);
    }
    m_statistics = s;
    m_hasStatistics.store(true, std::memory_order_release);
    return m_statistics;
  }

  std::string m_name;
  DataBinding m_binding = DataBinding::PER_NODE;
  std::size_t m_timeStamp = 0;
  Array<T> m_values;
  mutable std::mutex m_mutex;
  mutable std::atomic<bool> m_hasStatistics{false};
  mutable Statistics m_statistics;
};

} // namespace kx
