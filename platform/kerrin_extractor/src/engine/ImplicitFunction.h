// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kx {

/// Bounds of a function over a box.
struct Bounds {
  double low;
  double high;
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
  /// Room for the rounding of two ways to the same number.
  static Bounds widened(double low, double high) {
    const double room = 1e-12 * (std::abs(low) + std::abs(high));
    return {low - room, high + room};
  }
};

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
    double least = 0.0;
    double greatest = 0.0;
    double size = std::abs(m_distance); // of the terms, of which little may be left
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double a = m_normal[axis] * low[axis];
      const double b = m_normal[axis] * high[axis];
      least += std::min(a, b);
      greatest += std::max(a, b);
      size += std::abs(a) + std::abs(b);
    }
    return {m_distance - greatest - 1e-12 * size, m_distance - least + 1e-12 * size};
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
    double nearest = 0.0;
    double farthest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double toLow = m_centre[axis] - low[axis];
      const double toHigh = high[axis] - m_centre[axis];
      const double outside = std::max({0.0, -toLow, -toHigh});
      const double across = std::max(std::abs(toLow), std::abs(toHigh));
      nearest += outside * outside;
      farthest += across * across;
    }
    return widened(m_radius * m_radius - farthest, m_radius * m_radius - nearest);
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
    const double reach = (high - low).length() / 2.0;
    const double middle = fromAxis((low + high) * 0.5).length();
    const double nearest = std::max(0.0, middle - reach);
    const double farthest = middle + reach;
    return widened(m_radius * m_radius - farthest * farthest, m_radius * m_radius - nearest * nearest);
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
