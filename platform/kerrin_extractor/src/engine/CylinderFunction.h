// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ImplicitFunction.h"

namespace kx {

/// Points at a distance from an axis, as a difference of squares.
class CylinderFunction final : public SpaceFunction<CylinderFunction> {
public:
  CylinderFunction(const KbVec3<double>& centre, double radius, const KbVec3<double>& direction)
      : m_centre(centre)
      , m_axis(direction.normalized())
      , m_radius(radius) {}
  double operator()(const KbVec3<double>& p) const override {
    return m_radius * m_radius - fromAxis(p).squaredLength();
  }
  template <class T>
  BoundsOf<T> boundsOver(const KbVec3<T>& low, const KbVec3<T>& high) const {
    const T reach = (high - low).length() / T(2);
    const KbVec3<T> axis(m_axis);
    const KbVec3<T> d = (low + high) * T(0.5) - KbVec3<T>(m_centre);
    const T middle = (d - axis * d.dot(axis)).length();
    const T nearest = greater(T(0), middle - reach);
    const T farthest = middle + reach;
    const T square = static_cast<T>(m_radius * m_radius);
    return {square - farthest * farthest, square - nearest * nearest};
  }
  double magnitude(const KbVec3<double>& low, const KbVec3<double>& high) const {
    return m_radius * m_radius + 4.0 * (m_centre.squaredLength() + low.squaredLength() + high.squaredLength());
  }
  std::array<double, 7> parameters() const override {
    return {m_centre[0], m_centre[1], m_centre[2], m_radius, m_axis[0], m_axis[1], m_axis[2]};
  }
  const char* fault() const override {
    if (!isFinite(m_centre) || !isFinite(m_axis) || !std::isfinite(m_radius))
      return "the cylinder's centre, radius or direction is not finite";
    if (!(m_axis.squaredLength() > 0.0)) return "the cylinder's direction has no length";
    return m_radius >= 0.0 ? nullptr : "the cylinder's radius is negative";
  }

private:
  KbVec3<double> fromAxis(const KbVec3<double>& p) const {
    const KbVec3<double> d = p - m_centre;
    return d - m_axis * d.dot(m_axis);
  }
  KbVec3<double> m_centre;
  KbVec3<double> m_axis;
  double m_radius;
};

} // namespace kx
