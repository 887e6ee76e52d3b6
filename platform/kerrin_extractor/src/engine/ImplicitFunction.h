// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kx {

/// Bounds of a function over a box.
template <class T>
struct BoundsOf {
  T low;
  T high;
};
struct Bounds : BoundsOf<double> {
  bool hasZero() const { return low <= 0.0 && high >= 0.0; }
};

/// A function of space whose zero surface is a section: positive inside, so that normals point out.
class ImplicitFunction {
public:
  virtual ~ImplicitFunction() = default;
  virtual double operator()(const KbVec3<double>& point) const = 0;
  /// Bounds over the box between two corners; never too narrow.
  virtual Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const = 0;
  /// All that distinguishes this function from others of its class.
  virtual std::array<double, 7> parameters() const = 0;
  /// What is wrong with the parameters; null when nothing is.
  virtual const char* fault() const = 0;

protected:
  static bool isFinite(const KbVec3<double>& v) { return std::isfinite(v.dot(v)); }
  /// With room for the rounding of two ways to the same number.
  static Bounds widened(const BoundsOf<double>& bounds, double magnitude) {
    return {{bounds.low - 1e-12 * magnitude, bounds.high + 1e-12 * magnitude}};
  }
  template <class T>
  static T greater(T a, T b) {
    return a < b ? b : a;
  }
  template <class T>
  static T less(T a, T b) {
    return b < a ? b : a;
  }
};

// The functions below also offer, for loops over many boxes: `boundsOver(low, high)`, the same bounds in `float` or
// `double` but for the rounding, and `magnitude(low, high)`, the size of the terms in them, of which little may be
// left.

/// A stretch of a line; empty when `begin` > `end`.
struct Stretch {
  static constexpr double ENDLESS = std::numeric_limits<double>::infinity();
  double begin = ENDLESS;
  double end = -ENDLESS;
};

/// normal . p = distance, with the normal brought to length 1.
class PlaneFunction final : public ImplicitFunction {
public:
  PlaneFunction(const KbVec3<double>& normal, double distance)
      : m_normal(normal.normalized())
      , m_distance(distance) {}
  double operator()(const KbVec3<double>& p) const override { return m_distance - m_normal.dot(p); }
  Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const override {
    return widened(boundsOver(low, high), magnitude(low, high));
  }
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

/// |p - centre| = radius, as a difference of squares.
class SphereFunction final : public ImplicitFunction {
public:
  SphereFunction(const KbVec3<double>& centre, double radius)
      : m_centre(centre)
      , m_radius(radius) {}
  double operator()(const KbVec3<double>& p) const override {
    return m_radius * m_radius - (p - m_centre).squaredLength();
  }
  Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const override {
    return widened(boundsOver(low, high), magnitude(low, high));
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

/// Points at a distance from an axis, as a difference of squares.
class CylinderFunction final : public ImplicitFunction {
public:
  CylinderFunction(const KbVec3<double>& centre, double radius, const KbVec3<double>& direction)
      : m_centre(centre)
      , m_axis(direction.normalized())
      , m_radius(radius) {}
  double operator()(const KbVec3<double>& p) const override {
    return m_radius * m_radius - fromAxis(p).squaredLength();
  }
  Bounds boundsIn(const KbVec3<double>& low, const KbVec3<double>& high) const override {
    return widened(boundsOver(low, high), magnitude(low, high));
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

/// Calls `visit` with a function as what it is, so that the loops inside call nothing.
template <class Visit>
void withFunction(const ImplicitFunction& function, Visit&& visit) {
  if (const auto* plane = dynamic_cast<const PlaneFunction*>(&function))
    visit(*plane);
  else if (const auto* sphere = dynamic_cast<const SphereFunction*>(&function))
    visit(*sphere);
  else if (const auto* cylinder = dynamic_cast<const CylinderFunction*>(&function))
    visit(*cylinder);
  else
    visit(function);
}

} // namespace kx
