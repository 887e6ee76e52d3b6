// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbPlane.h>

#include <Nyx/base/NbMatrix.h>

#include <cmath>

NbPlane::NbPlane(const NbVec3f& normal, float distance)
    : m_normal(normal)
    , m_distance(distance) {
  m_normal.normalize();
}

NbPlane::NbPlane(const NbVec3f& normal, const NbVec3f& point)
    : NbPlane(normal, 0.f) {
  m_distance = m_normal.dot(point);
}

NbPlane::NbPlane(const NbVec3f& p0, const NbVec3f& p1, const NbVec3f& p2)
    : NbPlane((p1 - p0).cross(p2 - p0), p0) {}

void NbPlane::transform(const NbMatrix& matrix) {
  const NbVec3f point = matrix.multVecMatrix(m_normal * m_distance);
  *this = NbPlane(matrix.inverse().transpose().multDirMatrix(m_normal), point);
}

bool NbPlane::intersect(const NbVec3f& start, const NbVec3f& direction, NbVec3f& intersection) const {
  const float approach = m_normal.dot(direction);
  if (!(std::abs(approach) > 0.f)) return false;
  intersection = start - direction * (getDistance(start) / approach);
  return true;
}
