// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellViews.h"
#include "ValueView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kx {

/// The values at N corners of a cell, as they are stored.
template <class Scalar, std::size_t N>
class CornerValues {
public:
  template <class Values>
  [[gnu::always_inline]] CornerValues(const Values& values, const CellNodes& nodes) {
    for (std::size_t i = 0; i < N; ++i)
      m_values[i] = values.raw(nodes[i]);
  }
  /// Whether all are numbers; then also the least and the greatest.
  bool range(Scalar& least, Scalar& greatest) const {
    least = greatest = m_values[0];
    Scalar notFinite = m_values[0] - m_values[0];
    for (std::size_t i = 1; i < N; ++i) {
      least = std::min(least, m_values[i]);
      greatest = std::max(greatest, m_values[i]);
      notFinite += m_values[i] - m_values[i];
    }
    return notFinite == Scalar(0);
  }
  bool isFinite() const {
    Scalar notFinite(0);
    for (const Scalar v : m_values)
      notFinite += v - v;
    return notFinite == Scalar(0);
  }
  /// One bit for each corner that is not below the threshold.
  unsigned notBelow(Scalar threshold) const {
    unsigned bits = 0;
    for (std::size_t i = 0; i < N; ++i)
      bits |= static_cast<unsigned>(m_values[i] >= threshold) << i;
    return bits;
  }
  unsigned equal(Scalar value) const {
    unsigned bits = 0;
    for (std::size_t i = 0; i < N; ++i)
      bits |= static_cast<unsigned>(m_values[i] == value) << i;
    return bits;
  }

private:
  std::array<Scalar, N> m_values;
};

#if defined(__SSE2__)
/// Four or eight floats in vector registers.
template <std::size_t N>
class CornerValues<float, N> {
public:
  template <class Values>
  [[gnu::always_inline]] CornerValues(const Values& values, const CellNodes& nodes) {
    for (std::size_t q = 0; q < N / 4; ++q)
      m_values[q] = _mm_set_ps(values.raw(nodes[4 * q + 3]), values.raw(nodes[4 * q + 2]), values.raw(nodes[4 * q + 1]),
                               values.raw(nodes[4 * q]));
  }
  bool range(float& least, float& greatest) const {
    __m128 low = m_values[0];
    __m128 high = m_values[0];
    for (std::size_t q = 1; q < N / 4; ++q) {
      low = _mm_min_ps(low, m_values[q]);
      high = _mm_max_ps(high, m_values[q]);
    }
    low = _mm_min_ps(low, _mm_movehl_ps(low, low));
    high = _mm_max_ps(high, _mm_movehl_ps(high, high));
    least = _mm_cvtss_f32(_mm_min_ss(low, _mm_shuffle_ps(low, low, 1)));
    greatest = _mm_cvtss_f32(_mm_max_ss(high, _mm_shuffle_ps(high, high, 1)));
    return isFinite();
  }
  bool isFinite() const {
    __m128 sum = _mm_sub_ps(m_values[0], m_values[0]);
    for (std::size_t q = 1; q < N / 4; ++q)
      sum = _mm_add_ps(sum, _mm_sub_ps(m_values[q], m_values[q]));
    return _mm_movemask_ps(_mm_cmpeq_ps(sum, _mm_setzero_ps())) == 0xf;
  }
  unsigned notBelow(float threshold) const {
    return bits([t = _mm_set1_ps(threshold)](__m128 v) { return _mm_cmpge_ps(v, t); });
  }
  unsigned equal(float value) const {
    return bits([t = _mm_set1_ps(value)](__m128 v) { return _mm_cmpeq_ps(v, t); });
  }

private:
  template <class Compare>
  unsigned bits(const Compare& compare) const {
    unsigned result = 0;
    for (std::size_t q = 0; q < N / 4; ++q)
      result |= static_cast<unsigned>(_mm_movemask_ps(compare(m_values[q]))) << (4 * q);
    return result;
  }

  __m128 m_values[N / 4];
};
#endif

/// Calls `visit(corners)` with the values at the corners of a cell that is no polyhedron. `nodes` behind the cell's
/// last one are set to the first.
template <class Values, class Visit>
[[gnu::always_inline]] inline void withCornerValues(const Values& values, CellCode code, CellNodes& nodes,
                                                    const Visit& visit) {
  using Scalar = typename Values::Raw;
  if (code == TETRAHEDRON) {
    visit(CornerValues<Scalar, 4>(values, nodes));
    return;
  }
  if (code != HEXAHEDRON) std::fill(nodes.begin() + NUM_CORNERS[code], nodes.end(), nodes[0]);
  visit(CornerValues<Scalar, 8>(values, nodes));
}

/// Compares stored values with a number that their type may not hold, as if they were doubles.
template <class Scalar>
class Threshold {
public:
  explicit Threshold(double value)
      : m_value(static_cast<Scalar>(value)) {
    m_isExact = static_cast<double>(m_value) == value;
    if (static_cast<double>(m_value) < value)
      m_value = std::nextafter(m_value, std::numeric_limits<Scalar>::infinity());
  }
  bool isInside(Scalar value) const { return value >= m_value; }
  bool isOnIt(Scalar value) const { return m_isExact && value == m_value; }
  template <std::size_t N>
  unsigned inside(const CornerValues<Scalar, N>& corners) const {
    return corners.notBelow(m_value);
  }
  template <std::size_t N>
  unsigned onIt(const CornerValues<Scalar, N>& corners) const {
    return m_isExact ? corners.equal(m_value) : 0;
  }

private:
  Scalar m_value; ///< the least one that is not below the number
  bool m_isExact;
};

} // namespace kx
