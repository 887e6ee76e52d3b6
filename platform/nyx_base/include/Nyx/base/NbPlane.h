// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NyxBaseExport.h>

class NbMatrix;

/// An oriented plane: the points p with normal . p == distance. The default is the plane z = 0, facing +z.
class NYX_BASE_API NbPlane {
public:
  constexpr NbPlane()
      : m_normal(0.f, 0.f, 1.f)
      , m_distance(0.f) {}
  /// `normal` of any length (it is normalised); `distance` from the origin along it.
  NbPlane(const NbVec3f& normal, float distance);
  /// The plane through a point.
  NbPlane(const NbVec3f& normal, const NbVec3f& point);
  /// The plane through three points, facing the side from which they run counterclockwise.
  NbPlane(const NbVec3f& p0, const NbVec3f& p1, const NbVec3f& p2);

  const NbVec3f& getNormal() const { return m_normal; }
  float getDistanceFromOrigin() const { return m_distance; }

  /// The signed distance of a point, positive on the side of the normal.
  float getDistance(const NbVec3f& point) const { return m_normal.dot(point) - m_distance; }
  bool isInHalfSpace(const NbVec3f& point) const { return getDistance(point) >= 0.f; }

  /// Moves the plane along its normal.
  void offset(float distance) { m_distance += distance; }
  /// Transforms the plane by an invertible matrix.
  void transform(const NbMatrix& matrix);
  /// Where the line through `start` along `direction` meets the plane; false when it is parallel.
  bool intersect(const NbVec3f& start, const NbVec3f& direction, NbVec3f& intersection) const;

  friend bool operator==(const NbPlane& a, const NbPlane& b) {
    return a.m_normal == b.m_normal && !(a.m_distance < b.m_distance) && !(b.m_distance < a.m_distance);
  }
  friend bool operator!=(const NbPlane& a, const NbPlane& b) { return !(a == b); }

private:
  NbVec3f m_normal;
  float m_distance;
};
