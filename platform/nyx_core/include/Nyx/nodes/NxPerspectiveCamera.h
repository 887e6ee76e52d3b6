// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/nodes/NxCamera.h>

/// A camera with a field of view.
class NYX_CORE_API NxPerspectiveCamera : public NxCamera {
  NX_NODE_HEADER(NxPerspectiveCamera);

public:
  NxPerspectiveCamera();

  NxSFFloat heightAngle; ///< vertical angle of view in radians, pi / 4

protected:
  ~NxPerspectiveCamera() override;
  void shapeVolume(NbViewVolume& volume, float aspect, float nearDistance, float farDistance) const override;
  void frameSphere(const NbVec3f& center, float radius, float aspect) override;
};
