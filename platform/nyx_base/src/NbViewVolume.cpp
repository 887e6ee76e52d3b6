// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbViewVolume.h>

#include <cmath>

NbViewVolume::NbViewVolume() { ortho(-1.f, 1.f, -1.f, 1.f, 1.f, 10.f); }

void NbViewVolume::ortho(float left, float right, float bottom, float top, float nearDistance, float farDistance) {
  m_type = ORTHOGRAPHIC;
  m_left = left;
  m_right = right;
  m_bottom = bottom;
  m_top = top;
  m_near = nearDistance;
  m_far = farDistance;
}

void NbViewVolume::perspective(float fieldOfView, float aspectRatio, float nearDistance, float farDistance) {
  const float halfHeight = nearDistance * std::tan(fieldOfView / 2.f);
  const float halfWidth = halfHeight * aspectRatio;
  ortho(-halfWidth, halfWidth, -halfHeight, halfHeight, nearDistance, farDistance);
  m_type = PERSPECTIVE;
}

void NbViewVolume::placeCamera(const NbVec3f& position, const NbRotation& orientation) {
  m_position = position;
  m_orientation = orientation;
}

void NbViewVolume::getMatrices(NbMatrix& affine, NbMatrix& projection) const {
  affine = NbMatrix::translation(-m_position) * NbMatrix::rotation(m_orientation.inverse());

  const float width = getWidth(), height = getHeight(), depth = getDepth();
  const float sumX = m_right + m_left, sumY = m_top + m_bottom, sumZ = m_far + m_near;
  projection.makeIdentity();
  if (m_type == ORTHOGRAPHIC) {
    projection[0][0] = 2.f / width;
    projection[1][1] = 2.f / height;
    projection[2][2] = -2.f / depth;
    projection[3][0] = -sumX / width;
    projection[3][1] = -sumY / height;
    projection[3][2] = -sumZ / depth;
  } else {
    projection[0][0] = 2.f * m_near / width;
    projection[1][1] = 2.f * m_near / height;
    projection[2][0] = sumX / width;
    projection[2][1] = sumY / height;
    projection[2][2] = -sumZ / depth;
    projection[2][3] = -1.f;
    projection[3][2] = -2.f * m_far * m_near / depth;
    projection[3][3] = 0.f;
  }
}

NbMatrix NbViewVolume::getMatrix() const {
  NbMatrix affine, projection;
  getMatrices(affine, projection);
  return affine * projection;
}

NbVec3f NbViewVolume::projectToScreen(const NbVec3f& worldPoint) const {
  return (getMatrix().multVecMatrix(worldPoint) + NbVec3f(1.f, 1.f, 1.f)) * 0.5f;
}

void NbViewVolume::projectPointToLine(const NbVec2f& screenPoint, NbVec3f& nearPoint, NbVec3f& farPoint) const {
  // From the rectangle of the near plane rather than by the inverse matrix, which loses depth when far/near is large.
  const float x = m_left + screenPoint[0] * getWidth();
  const float y = m_bottom + screenPoint[1] * getHeight();
  const float widening = m_type == PERSPECTIVE ? m_far / m_near : 1.f;
  nearPoint = m_position + m_orientation.multVec(NbVec3f(x, y, -m_near));
  farPoint = m_position + m_orientation.multVec(NbVec3f(x * widening, y * widening, -m_far));
}

NbPlane NbViewVolume::getPlane(float distanceFromEye) const {
  const NbVec3f direction = getProjectionDirection();
  return NbPlane(-direction, m_position + direction * distanceFromEye);
}
