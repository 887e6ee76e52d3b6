// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbMatrix.h>
#include <Nyx/base/NbPlane.h>
#include <Nyx/base/NbRotation.h>
#include <Nyx/base/NbVec2f.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NyxBaseExport.h>

/// What a camera sees: a frustum or a box in world coordinates. Screen coordinates run from 0 at the lower left to 1
/// at the upper right; depth from 0 at the near to 1 at the far plane.
class NYX_BASE_API NbViewVolume {
public:
  enum ProjectionType { ORTHOGRAPHIC = 0, PERSPECTIVE = 1 };

  /// A box that reaches from -1 to 1 in x and y and from z = -1 to z = -10, looking along -z.
  NbViewVolume();

  /// A box; the numbers are camera coordinates, nearDistance and farDistance are counted along the view direction.
  void ortho(float left, float right, float bottom, float top, float nearDistance, float farDistance);
  /// A frustum; `fieldOfView` is the vertical angle in radians, `aspectRatio` is width over height, 0 < near < far.
  void perspective(float fieldOfView, float aspectRatio, float nearDistance, float farDistance);

  /// Places the camera: turns it from looking along -z, then moves it to `position`.
  void placeCamera(const NbVec3f& position, const NbRotation& orientation);

  ProjectionType getProjectionType() const { return m_type; }
  const NbVec3f& getProjectionPoint() const { return m_position; }
  NbVec3f getProjectionDirection() const { return m_orientation.multVec(NbVec3f(0.f, 0.f, -1.f)); }
  NbVec3f getViewUp() const { return m_orientation.multVec(NbVec3f(0.f, 1.f, 0.f)); }
  float getNearDist() const { return m_near; }
  float getDepth() const { return m_far - m_near; }
  /// Size of the near plane's rectangle.
  float getWidth() const { return m_right - m_left; }
  float getHeight() const { return m_top - m_bottom; }

  /// World to camera coordinates, and camera to clip coordinates with OpenGL's depth range of -1..1.
  void getMatrices(NbMatrix& affine, NbMatrix& projection) const;
  NbMatrix getMatrix() const;

  /// World to screen coordinates and depth.
  NbVec3f projectToScreen(const NbVec3f& worldPoint) const;
  /// The line of world points behind a screen point, from the near to the far plane.
  void projectPointToLine(const NbVec2f& screenPoint, NbVec3f& nearPoint, NbVec3f& farPoint) const;
  /// The plane at `distanceFromEye` across the view direction, facing the camera.
  NbPlane getPlane(float distanceFromEye) const;

private:
  ProjectionType m_type;
  NbVec3f m_position;
  NbRotation m_orientation;
  float m_left, m_right, m_bottom, m_top, m_near, m_far;
};
