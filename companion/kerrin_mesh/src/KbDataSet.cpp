// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbDataSet.h>

#include "KbExtent.h"

#include <KerrinExtractor/KiMessage.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <limits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class T>
std::string joined(const T& counts) {
  std::string text;
  for (const std::size_t count : counts)
    text += (text.empty() ? "" : " x ") + std::to_string(count);
  return text;
}

/// The answer for an index out of range.
template <class T>
T noValue() {
  if constexpr (std::is_same_v<T, std::string>)
    return {};
  else
    return T(nan);
}

template <class T>
void rangeOf(const T* values, std::size_t size, double& min, double& max) {
  std::array<T, 1> low;
  std::array<T, 1> high;
  kx::extentOf<1>(values, size, low, high);
  if (low[0] > high[0]) return; // nothing but NaN
  min = static_cast<double>(low[0]);
  max = static_cast<double>(high[0]);
}

void rangeOf(const KbArray& array, double& min, double& max) {
  min = max = nan;
  const void* data = array.raw().data;
  switch (array.type()) {
  case KiRawArray::UINT8:
    return rangeOf(static_cast<const std::uint8_t*>(data), array.size(), min, max);
  case KiRawArray::INT32:
    return rangeOf(static_cast<const std::int32_t*>(data), array.size(), min, max);
  case KiRawArray::INT64:
    return rangeOf(static_cast<const std::int64_t*>(data), array.size(), min, max);
  case KiRawArray::FLOAT32:
    return rangeOf(static_cast<const float*>(data), array.size(), min, max);
  case KiRawArray::FLOAT64:
    return rangeOf(static_cast<const double*>(data), array.size(), min, max);
  case KiRawArray::NONE:
    return;
  }
}

void rangeOf(const KbArray& array, KbVec3<double>& min, KbVec3<double>& max) {
  min = max = KbVec3<double>(nan);
  double shortest = nan;
  double longest = nan;
  for (std::size_t i = 0; i < array.size() / 3; ++i) {
    const KbVec3<double> v = array.triple(i);
    const double length = v.squaredLength();
    if (length != length) continue;
    if (!(shortest <= length)) {
      shortest = length;
      min = v;
    }
    if (!(longest >= length)) {
      longest = length;
      max = v;
    }
  }
}

void rangeOf(const KbSpan<std::string>&, std::string&, std::string&) {}

} // namespace

template <class T, std::size_t N>
KbDataSetBase<T, N>::KbDataSetBase(const std::string& name, DataBinding binding, const Array& values,
                                   const KbIndex<N>& counts)
    : m_name(name)
    , m_binding(binding)
    , m_values(values)
    , m_counts(counts)
    , m_stamp(KxTimeStamp::getTimeStamp()) {
  std::string fault;
  if (binding == DataBinding::AUTO) {
    fault = "is neither PER_CELL nor PER_NODE";
  } else if (KbValues<T>::count(values) != KbProduct(counts)) {
    fault = "has " + std::to_string(KbValues<T>::count(values)) + " values instead of " + joined(counts);
  } else if constexpr (std::is_same_v<T, KbVec3<double>>) {
    if (values.size() % 3 != 0) fault = "has " + std::to_string(values.size()) + " numbers, no multiple of 3";
  }
  if (fault.empty()) return;
  m_values = Array();
  m_counts = {};
  KiMessage::postWarning("KbDataSet::KbDataSet", "data set \"" + name + "\" " + fault);
}

template <class T, std::size_t N>
KiRawArray KbDataSetBase<T, N>::getRawArray(Role role) const {
  if constexpr (!std::is_same_v<T, std::string>) {
    if (role == VALUES && m_values.isReal()) return m_values.raw();
  }
  return {};
}

template <class T, std::size_t N>
void KbDataSetBase<T, N>::touch() {
  m_stamp = KxTimeStamp::getTimeStamp();
}

template <class T, std::size_t N>
bool KbDataSetBase<T, N>::setValues(const Array& values) {
  if (values.size() != m_values.size()) {
    KiMessage::postWarning("KbDataSet::setValues", "data set \"" + m_name + "\": " + std::to_string(values.size()) +
                                                       " values instead of " + std::to_string(m_values.size()));
    return false;
  }
  m_values = values;
  touch();
  return true;
}

template <class T, std::size_t N>
T KbDataSetBase<T, N>::at(const KbIndex<N>& index) const {
  const std::size_t flat = KbFlatIndex(m_counts, index);
  return flat < KbValues<T>::count(m_values) ? KbValues<T>::at(m_values, flat) : noValue<T>();
}

template <class T, std::size_t N>
typename KbDataSetBase<T, N>::Range KbDataSetBase<T, N>::range() const {
  return m_range.get(m_stamp, [this] {
    Range range;
    rangeOf(m_values, range.min, range.max);
    return range;
  });
}

template class KbDataSetBase<double, 1>;
template class KbDataSetBase<double, 2>;
template class KbDataSetBase<double, 3>;
template class KbDataSetBase<KbVec3<double>, 1>;
template class KbDataSetBase<KbVec3<double>, 2>;
template class KbDataSetBase<KbVec3<double>, 3>;
template class KbDataSetBase<std::string, 1>;
template class KbDataSetBase<std::string, 2>;
template class KbDataSetBase<std::string, 3>;
