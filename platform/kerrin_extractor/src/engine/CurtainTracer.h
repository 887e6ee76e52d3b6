// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceCutter.h"
#include "Faults.h"
#include "LineMesh.h"
#include "Run.h"
#include "Stencil.h"

#include <string>
#include <vector>

namespace kx {

/// A curtain: a polyline swept both ways along a direction without end. Seen along the direction it is the polyline.
class Curtain {
public:
  struct Point {
    double x;
    double y;
  };
  struct Box {
    Point low;
    Point high;
    bool meets(const Box& other) const {
      return low.x <= other.high.x && other.low.x <= high.x && low.y <= other.high.y && other.low.y <= high.y;
    }
  };

  /// Repeated points of the polyline count once.
  Curtain(const KbVec3<double>& direction, const std::vector<KbVec3<double>>& polyline);
  /// Why there is no curtain; empty when there is one.
  const std::string& fault() const { return m_fault; }

  Point project(const KbVec3<double>& p) const { return {m_axisX.dot(p), m_axisY.dot(p)}; }
  std::size_t numSegments() const { return m_points.size() < 2 ? 0 : m_points.size() - 1; }
  /// Twice the area between segment and point: 0 on the segment's line.
  double side(std::size_t segment, const Point& p) const;
  /// Where along the segment a point lies: 0 at its begin, 1 at its end.
  double parameter(std::size_t segment, const Point& p) const;
  /// Appends the segments whose boxes meet the given one, in order.
  void findSegments(const Box& box, std::vector<std::size_t>& segments) const;
  /// Whether a point of the polyline lies in the box.
  bool hasJoint(std::size_t segment, const Box& box) const;

private:
  static constexpr std::size_t BLOCK = 16; // segments that share a box

  std::string m_fault;
  KbVec3<double> m_axisX;
  KbVec3<double> m_axisY;
  std::vector<Point> m_points;
  std::vector<Box> m_boxes; ///< of each block of segments
};

/// Cuts the faces of a surface mesh by a curtain.
///
/// A flat face without a joint of the polyline in its shadow is cut as by a plane. Others are cut in triangles, on
/// which the two pieces that meet at a joint share a vertex: the point where the line through the joint pierces the
/// triangle.
class CurtainTracer {
public:
  static constexpr std::size_t NUM_PHASES = 2;

  void trace(Run& run, const FlatMesh& mesh, const Curtain& curtain, LineData& output, std::vector<Stencil>& sources,
             Faults& faults);

private:
  /// An end of a piece: an edge cut by a segment (tag 2 s), an edge cut at joint j (tag 2 j + 1), or the triangle
  /// (cell, number) pierced at joint j (tag JOINT + j).
  struct Key {
    NodeEdge edge;
    std::size_t tag;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::uint64_t hashOf(const Key& key) { return mixHash(hashOf(key.edge), key.tag); }
  };
  struct End {
    Key key;
    Stencil stencil;
  };
  struct Piece {
    End from;
    End to;
    std::size_t cell;
  };
  class Cutter;
};

} // namespace kx
