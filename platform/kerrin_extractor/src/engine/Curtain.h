// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Box.h"

#include <KerrinExtractor/KbVec3.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace kx {

/// A curtain: a polyline swept both ways along a direction without end. Seen along the direction it is the polyline.
class Curtain {
public:
  /// Something seen along the direction; x, y and the direction are a right-handed frame, and the first point of the
  /// polyline is at (0, 0), so that coordinates far from the origin lose no digits.
  struct Point {
    double x;
    double y;
    friend Point operator-(const Point& a, const Point& b) { return {a.x - b.x, a.y - b.y}; }
    double dot(const Point& p) const { return x * p.x + y * p.y; }
    /// Twice the area of the triangle with the origin; positive when `p` lies to the left.
    double cross(const Point& p) const { return x * p.y - y * p.x; }
  };
  struct Shadow {
    Point low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Point high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    void add(const Point& p) {
      low = {std::min(low.x, p.x), std::min(low.y, p.y)};
      high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    bool meets(const Shadow& other) const {
      return low.x <= other.high.x && other.low.x <= high.x && low.y <= other.high.y && other.low.y <= high.y;
    }
  };

  /// Points of the polyline that follow a point at the same place, seen along the direction, count once with it.
  Curtain(const KbVec3<double>& direction, const std::vector<KbVec3<double>>& polyline);
  /// Why there is no curtain; empty when there is one, or when the polyline is empty.
  const std::string& fault() const { return m_fault; }

  Point project(const KbVec3<double>& p) const { return {m_axisX.dot(p - m_origin), m_axisY.dot(p - m_origin)}; }
  Shadow project(const Box& box) const;
  /// How far a point lies along the direction.
  double height(const KbVec3<double>& p) const { return m_direction.dot(p - m_origin); }
  /// Places nearer than this are the same.
  double tolerance() const { return m_tolerance; }

  std::size_t numSegments() const { return m_points.size() < 2 ? 0 : m_points.size() - 1; }
  const Point& begin(std::size_t segment) const { return m_points[segment]; }
  const Point& end(std::size_t segment) const { return m_points[segment + 1]; }
  /// The number of the joint at the begin of a segment, or of the one behind the last; a closed polyline ends with
  /// the joint that it begins with.
  std::size_t joint(std::size_t segment) const { return m_isClosed && segment == numSegments() ? 0 : segment; }
  const Point& jointPoint(std::size_t joint) const { return m_points[joint]; }

  /// Twice the area between segment and point: 0 on the segment's line, positive to the left of it.
  double side(std::size_t segment, const Point& p) const;
  /// Where along the segment a point lies: 0 at its begin, 1 at its end.
  double parameter(std::size_t segment, const Point& p) const;
  /// Appends the segments whose boxes and lines meet a shadow, in order.
  void findSegments(const Shadow& shadow, std::vector<std::size_t>& segments) const;
  /// Whether a segment's box and line meet a shadow.
  bool meets(std::size_t segment, const Shadow& shadow) const;
  /// Whether an end of the segment lies in a shadow, or as good as.
  bool hasJoint(std::size_t segment, const Shadow& shadow) const;

private:
  static constexpr std::size_t BLOCK = 16; // segments that share a box

  std::string m_fault;
  KbVec3<double> m_origin;
  KbVec3<double> m_axisX;
  KbVec3<double> m_axisY;
  KbVec3<double> m_direction;
  double m_tolerance = 0.0;
  bool m_isClosed = false;
  std::vector<Point> m_points;
  std::vector<Shadow> m_shadows; ///< of each block of segments
};

} // namespace kx
