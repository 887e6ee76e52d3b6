// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/nodes/NxCamera.h>

/// A camera without perspective.
class NYX_CORE_API NxOrthographicCamera : public NxCamera {
  NX_NODE_HEADER(NxOrthographicCamera);

public:
  NxOrthographicCamera();

  NxSFFloat height; ///< of the view, in world units, 2

protected:
  ~NxOrthographicCamera() override;
  void shapeVolume(NbViewVolume& volume, float aspect, float nearDistance, float farDistance) const override;
  void frameSphere(const NbVec3f& center, float radius, float aspect) override;
};
