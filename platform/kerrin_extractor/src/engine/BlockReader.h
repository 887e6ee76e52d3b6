// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kx {

/// Least and greatest of the finite values of a block; `low` > `high` when there are none.
struct BlockRange {
  float low;
  float high;
  bool isFinite; ///< all of them
};

/// Some of up to 32 values: a bit for each.
struct BlockBits {
  std::uint32_t inside = 0; ///< not less than the isovalue
  std::uint32_t exact = 0;  ///< equal to it
};

/// How blocks of 16 values are looked at.
class BlockReader {
public:
  static constexpr std::size_t BLOCK = 16;

  explicit BlockReader(double isovalue)
      : m_isovalue(isovalue) {
    // The least float that is not less than the isovalue: compares alike.
    m_threshold = static_cast<float>(isovalue);
    if (static_cast<double>(m_threshold) < isovalue) m_threshold = std::nextafter(m_threshold, INFINITY_F);
    m_canBeExact = static_cast<double>(m_threshold) == isovalue;
  }

  template <class Row>
  BlockBits bits(const Row& row, std::size_t begin, std::size_t count) const {
    return withArray(row, begin, count, [&](const auto* values) { return arrayBits(values, count); });
  }
  template <class Row>
  BlockBits bitsAndRange(const Row& row, std::size_t begin, std::size_t count, BlockRange& range,
                         std::uint32_t& notFinite) const {
    return withArray(row, begin, count, [&](const auto* values) {
      range = rangeOf(values, count);
      notFinite = 0;
      if (!range.isFinite) {
        range = finiteRange(values, count);
        for (std::size_t n = 0; n < count; ++n)
          notFinite |= static_cast<std::uint32_t>(!std::isfinite(values[n])) << n;
      }
      return arrayBits(values, count);
    });
  }

private:
  static constexpr float INFINITY_F = std::numeric_limits<float>::infinity();

  template <class Row, class Use>
  static BlockBits withArray(const Row& row, std::size_t begin, std::size_t count, const Use& use) {
    if constexpr (requires { row.values; }) {
      return use(row.values + begin);
    } else {
      double scratch[BLOCK];
      row.fill(begin, count, scratch);
      return use(static_cast<const double*>(scratch));
    }
  }

  template <class T>
  BlockBits oneByOne(const T* values, std::size_t count) const {
    BlockBits b;
    for (std::size_t n = 0; n < count; ++n) {
      const auto v = static_cast<double>(values[n]);
      b.inside |= static_cast<std::uint32_t>(v >= m_isovalue) << n;
      b.exact |= static_cast<std::uint32_t>(v == m_isovalue) << n;
    }
    return b;
  }
  /// Floats on the outer side of finite numbers.
  static float below(double v) {
    const auto f = static_cast<float>(v);
    return static_cast<double>(f) > v ? std::nextafter(f, -INFINITY_F) : f;
  }
  static float above(double v) {
    const auto f = static_cast<float>(v);
    return static_cast<double>(f) < v ? std::nextafter(f, INFINITY_F) : f;
  }
  template <class T>
  static BlockRange finiteRange(const T* values, std::size_t count) {
    BlockRange range{INFINITY_F, -INFINITY_F, false};
    for (std::size_t n = 0; n < count; ++n) {
      if (!std::isfinite(values[n])) continue;
      range.low = std::min(range.low, below(static_cast<double>(values[n])));
      range.high = std::max(range.high, above(static_cast<double>(values[n])));
    }
    return range;
  }

#if defined(__SSE2__)
  BlockBits arrayBits(const float* values, std::size_t count) const {
    if (count < BLOCK) return oneByOne(values, count);
    const __m128 threshold = _mm_set1_ps(m_threshold);
    BlockBits b;
    for (unsigned part = 0; part < 4; ++part) {
      const __m128 v = _mm_loadu_ps(values + 4 * part);
      b.inside |= static_cast<std::uint32_t>(_mm_movemask_ps(_mm_cmpge_ps(v, threshold))) << (4 * part);
      b.exact |= static_cast<std::uint32_t>(_mm_movemask_ps(_mm_cmpeq_ps(v, threshold))) << (4 * part);
    }
    if (!m_canBeExact) b.exact = 0;
    return b;
  }
  BlockBits arrayBits(const double* values, std::size_t count) const {
    if (count < BLOCK) return oneByOne(values, count);
    const __m128d threshold = _mm_set1_pd(m_isovalue);
    BlockBits b;
    for (unsigned part = 0; part < 8; ++part) {
      const __m128d v = _mm_loadu_pd(values + 2 * part);
      b.inside |= static_cast<std::uint32_t>(_mm_movemask_pd(_mm_cmpge_pd(v, threshold))) << (2 * part);
      b.exact |= static_cast<std::uint32_t>(_mm_movemask_pd(_mm_cmpeq_pd(v, threshold))) << (2 * part);
    }
    return b;
  }
  static BlockRange rangeOf(const float* values, std::size_t count) {
    if (count < BLOCK) return rangeOneByOne(values, count);
    __m128 low = _mm_loadu_ps(values);
    __m128 high = low;
    __m128 notFinite = _mm_setzero_ps();
    for (unsigned part = 0; part < 4; ++part) {
      const __m128 v = _mm_loadu_ps(values + 4 * part);
      low = _mm_min_ps(low, v);
      high = _mm_max_ps(high, v);
      notFinite = _mm_add_ps(notFinite, _mm_sub_ps(v, v));
    }
    float lows[4];
    float highs[4];
    _mm_storeu_ps(lows, low);
    _mm_storeu_ps(highs, high);
    return {std::min(std::min(lows[0], lows[1]), std::min(lows[2], lows[3])),
            std::max(std::max(highs[0], highs[1]), std::max(highs[2], highs[3])),
            _mm_movemask_ps(_mm_cmpneq_ps(notFinite, _mm_setzero_ps())) == 0};
  }
  static BlockRange rangeOf(const double* values, std::size_t count) {
    if (count < BLOCK) return rangeOneByOne(values, count);
    __m128d low = _mm_loadu_pd(values);
    __m128d high = low;
    __m128d notFinite = _mm_setzero_pd();
    for (unsigned part = 0; part < 8; ++part) {
      const __m128d v = _mm_loadu_pd(values + 2 * part);
      low = _mm_min_pd(low, v);
      high = _mm_max_pd(high, v);
      notFinite = _mm_add_pd(notFinite, _mm_sub_pd(v, v));
    }
    double lows[2];
    double highs[2];
    _mm_storeu_pd(lows, low);
    _mm_storeu_pd(highs, high);
    return {below(std::min(lows[0], lows[1])), above(std::max(highs[0], highs[1])),
            _mm_movemask_pd(_mm_cmpneq_pd(notFinite, _mm_setzero_pd())) == 0};
  }
#else
  template <class T>
  BlockBits arrayBits(const T* values, std::size_t count) const {
    return oneByOne(values, count);
  }
  template <class T>
  static BlockRange rangeOf(const T* values, std::size_t count) {
    return rangeOneByOne(values, count);
  }
#endif
  template <class T>
  static BlockRange rangeOneByOne(const T* values, std::size_t count) {
    BlockRange range = finiteRange(values, count);
    range.isFinite = std::all_of(values, values + count, [](T v) { return std::isfinite(v); });
    return range;
  }

  double m_isovalue;
  float m_threshold;
  bool m_canBeExact;
};

} // namespace kx
