// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ImplicitFunction.h"

namespace kx {

/// |p - centre| = radius, as a difference of squares.
class SphereFunction final : public SpaceFunction<SphereFunction> {
public:
  SphereFunction(const KbVec3<double>& centre, double radius)
      : m_centre(centre)
      , m_radius(radius) {}
  double operator()(const KbVec3<double>& p) const override {
    return m_radius * m_radius - (p - m_centre).squaredLength();
  }
  template <class T>
  BoundsOf<T> boundsOver(const KbVec3<T>& low, const KbVec3<T>& high) const {
    T nearest(0);
    T farthest(0);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const T toLow = static_cast<T>(m_centre[axis]) - low[axis];
      const T toHigh = high[axis] - static_cast<T>(m_centre[axis]);
      const T outside = greater(T(0), greater(-toLow, -toHigh));
      const T across = greater(std::abs(toLow), std::abs(toHigh));
      nearest += outside * outside;
      farthest += across * across;
    }
    const T square = static_cast<T>(m_radius * m_radius);
    return {square - farthest, square - nearest};
  }
  double magnitude(const KbVec3<double>& low, const KbVec3<double>& high) const {
    return m_radius * m_radius + m_centre.squaredLength() + low.squaredLength() + high.squaredLength();
  }
  /// As of a plane.
  Stretch insideAlongX(double y, double z) const {
    const KbVec3<double> d(0.0, y - m_centre[1], z - m_centre[2]);
    const double half = std::sqrt(std::max(0.0, m_radius * m_radius - d.squaredLength()));
    return {m_centre[0] - half, m_centre[0] + half};
  }
  std::array<double, 7> parameters() const override { return {m_centre[0], m_centre[1], m_centre[2], m_radius}; }
  const char* fault() const override {
    if (!isFinite(m_centre) || !std::isfinite(m_radius)) return "the sphere's centre or radius is not finite";
    return m_radius >= 0.0 ? nullptr : "the sphere's radius is negative";
  }

private:
  KbVec3<double> m_centre;
  double m_radius;
};

} // namespace kx
