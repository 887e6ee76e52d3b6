// SPDX-License-Identifier: BSD-3-Clause
#include "Curtain.h"

#include "FaceCutter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {
namespace {

/// The same place: of the polyline's extent, and of its distance from the origin, where its digits end.
constexpr double EXTENT_TOLERANCE = 1e-12;
constexpr double ORIGIN_TOLERANCE = 4e-16;

} // namespace

Curtain::Curtain(const KbVec3<double>& direction, const std::vector<KbVec3<double>>& polyline) {
  const double length = direction.length();
  if (!(length > 0.0) || !std::isfinite(length)) {
    m_fault = "the direction of the curtain has no finite length";
    return;
  }
  if (!FaceCutter::isFinite(polyline)) {
    m_fault = "the polyline has a point that is not finite";
    return;
  }
  if (polyline.empty()) return; // nothing to be cut along, and nothing to complain of
  m_direction = direction / length;
  // Any two axes will do; the one to start from is the least parallel to the direction.
  std::size_t least = 0;
  for (std::size_t axis = 1; axis < 3; ++axis)
    if (std::abs(m_direction[axis]) < std::abs(m_direction[least])) least = axis;
  KbVec3<double> start(0.0);
  start[least] = 1.0;
  m_axisX = start.cross(m_direction).normalized();
  m_axisY = m_direction.cross(m_axisX);
  m_origin = polyline.front();

  double extent = 0.0;
  double distance = 0.0;
  for (const KbVec3<double>& p : polyline) {
    extent = std::max(extent, (p - m_origin).length());
    distance = std::max(distance, p.length());
  }
  m_tolerance = EXTENT_TOLERANCE * extent + ORIGIN_TOLERANCE * distance;
  const auto areSame = [this](const Point& a, const Point& b) {
    return (b - a).dot(b - a) <= m_tolerance * m_tolerance;
  };
  for (const KbVec3<double>& p : polyline)
    if (const Point q = project(p); m_points.empty() || !areSame(m_points.back(), q)) m_points.push_back(q);
  if (m_points.size() < 2) {
    m_fault = "the polyline has fewer than two points that differ across the direction";
    m_points.clear();
    return;
  }
  m_isClosed = m_points.size() > 2 && areSame(m_points.front(), m_points.back());
  if (m_isClosed) m_points.back() = m_points.front();
  for (std::size_t s = 0; s < numSegments(); ++s) {
    if (s % BLOCK == 0) m_shadows.emplace_back();
    m_shadows.back().add(begin(s));
    m_shadows.back().add(end(s));
  }
}

Curtain::Shadow Curtain::project(const Box& box) const {
  Shadow shadow;
  if (box.isEmpty()) return shadow;
  const auto bounds = [](const KbVec3<double>& axis, const KbVec3<double>& low, const KbVec3<double>& high) {
    double least = 0.0;
    double greatest = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      least += std::min(axis[i] * low[i], axis[i] * high[i]);
      greatest += std::max(axis[i] * low[i], axis[i] * high[i]);
    }
    return std::pair(least, greatest);
  };
  const KbVec3<double> low = box.low - m_origin;
  const KbVec3<double> high = box.high - m_origin;
  const auto [lowX, highX] = bounds(m_axisX, low, high);
  const auto [lowY, highY] = bounds(m_axisY, low, high);
  shadow.low = {lowX, lowY};
  shadow.high = {highX, highY};
  return shadow;
}

double Curtain::side(std::size_t segment, const Point& p) const {
  return (end(segment) - begin(segment)).cross(p - begin(segment));
}

double Curtain::parameter(std::size_t segment, const Point& p) const {
  const Point along = end(segment) - begin(segment);
  return (p - begin(segment)).dot(along) / along.dot(along);
}

bool Curtain::meets(std::size_t segment, const Shadow& shadow) const {
  const Point& a = begin(segment);
  const Point& b = end(segment);
  const double room = m_tolerance;
  if (std::min(a.x, b.x) > shadow.high.x + room || std::max(a.x, b.x) < shadow.low.x - room ||
      std::min(a.y, b.y) > shadow.high.y + room || std::max(a.y, b.y) < shadow.low.y - room)
    return false;
  // The box must not lie on one side of the line.
  const Point along = b - a;
  const Point centre{0.5 * (shadow.low.x + shadow.high.x), 0.5 * (shadow.low.y + shadow.high.y)};
  const Point half{0.5 * (shadow.high.x - shadow.low.x), 0.5 * (shadow.high.y - shadow.low.y)};
  const double reach = std::abs(along.x) * (half.y + room) + std::abs(along.y) * (half.x + room);
  const Point toCentre = centre - a;
  const double rounding = 1e-14 * (std::abs(along.x * toCentre.y) + std::abs(along.y * toCentre.x));
  return !(std::abs(along.cross(toCentre)) > reach + rounding);
}

void Curtain::findSegments(const Shadow& shadow, std::vector<std::size_t>& segments) const {
  Shadow widened = shadow;
  widened.low = widened.low - Point{m_tolerance, m_tolerance};
  widened.high = widened.high - Point{-m_tolerance, -m_tolerance};
  for (std::size_t block = 0; block < m_shadows.size(); ++block) {
    if (!m_shadows[block].meets(widened)) continue;
    const std::size_t behind = std::min((block + 1) * BLOCK, numSegments());
    for (std::size_t s = block * BLOCK; s < behind; ++s)
      if (meets(s, shadow)) segments.push_back(s);
  }
}

bool Curtain::hasJoint(std::size_t segment, const Shadow& shadow) const {
  // Wider than all that rounding does to what is found out about joints.
  const double room = m_tolerance + 1e-9 * ((shadow.high.x - shadow.low.x) + (shadow.high.y - shadow.low.y));
  const auto holds = [&](const Point& p) {
    return p.x >= shadow.low.x - room && p.x <= shadow.high.x + room && p.y >= shadow.low.y - room &&
           p.y <= shadow.high.y + room;
  };
  return holds(begin(segment)) || holds(end(segment));
}

} // namespace kx
