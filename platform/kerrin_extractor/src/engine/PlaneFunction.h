// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ImplicitFunction.h"

namespace kx {

/// The plane across a normal of any length, at a distance from the origin.
class PlaneFunction final : public SpaceFunction<PlaneFunction> {
public:
  PlaneFunction(const KbVec3<double>& normal, double distance)
      : m_normal(normal.normalized())
      , m_distance(distance) {}
  double operator()(const KbVec3<double>& p) const override { return m_distance - m_normal.dot(p); }
  template <class T>
  BoundsOf<T> boundsOver(const KbVec3<T>& low, const KbVec3<T>& high) const {
    T least(0);
    T greatest(0);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const T a = static_cast<T>(m_normal[axis]) * low[axis];
      const T b = static_cast<T>(m_normal[axis]) * high[axis];
      least += less(a, b);
      greatest += greater(a, b);
    }
    return {static_cast<T>(m_distance) - greatest, static_cast<T>(m_distance) - least};
  }
  double magnitude(const KbVec3<double>& low, const KbVec3<double>& high) const {
    double size = std::abs(m_distance);
    for (std::size_t axis = 0; axis < 3; ++axis)
      size += std::abs(m_normal[axis]) * (std::abs(low[axis]) + std::abs(high[axis]));
    return size;
  }
  /// Where the line along x through (y, z) is inside, but for rounding. The values themselves never fall and then rise
  /// along such a line, rounded or not.
  Stretch insideAlongX(double y, double z) const {
    const double rest = m_distance - (m_normal[1] * y + m_normal[2] * z);
    if (m_normal[0] == 0.0) return rest >= 0.0 ? Stretch{-Stretch::ENDLESS, Stretch::ENDLESS} : Stretch{};
    const double x = rest / m_normal[0];
    return m_normal[0] > 0.0 ? Stretch{-Stretch::ENDLESS, x} : Stretch{x, Stretch::ENDLESS};
  }
  std::array<double, 7> parameters() const override { return {m_normal[0], m_normal[1], m_normal[2], m_distance}; }
  const char* fault() const override {
    if (!isFinite(m_normal) || !std::isfinite(m_distance)) return "the plane's normal or distance is not finite";
    return m_normal.squaredLength() > 0.0 ? nullptr : "the plane's normal has no length";
  }

private:
  KbVec3<double> m_normal;
  double m_distance;
};

} // namespace kx
