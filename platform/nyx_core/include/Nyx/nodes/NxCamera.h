// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NbViewVolume.h>
#include <Nyx/base/NbViewportRegion.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFRotation.h>
#include <Nyx/fields/NxSFVec3f.h>
#include <Nyx/nodes/NxPropertyNode.h>

class NxPath;

/// What cameras have in common. A camera looks along -z with y up, turned by `orientation` and moved to `position`, and
/// acts on what follows it.
class NYX_CORE_API NxCamera : public NxPropertyNode {
  NX_NODE_ABSTRACT_HEADER(NxCamera);

public:
  /// ADJUST_CAMERA takes the aspect ratio of the viewport and, where that is taller than wide, lets `height` or
  /// `heightAngle` span the width instead; LEAVE_ALONE keeps `aspectRatio`.
  enum ViewportMapping { ADJUST_CAMERA = 0, LEAVE_ALONE = 1 };

  NxSFEnum viewportMapping; ///< ADJUST_CAMERA
  NxSFVec3f position;       ///< (0, 0, 1)
  NxSFRotation orientation; ///< none
  NxSFFloat aspectRatio;    ///< width over height, 1; used with LEAVE_ALONE
  NxSFFloat nearDistance;   ///< 1
  NxSFFloat farDistance;    ///< 10
  NxSFFloat focalDistance;  ///< to what is looked at, 5
  NxSFBool autoClipping;    ///< FALSE: near and far as given; TRUE: fitted to the scene at each picture

  /// What the camera sees, in the coordinates that it stands in. With \p scene not empty and `autoClipping` on, near
  /// and far are fitted to that box.
  NbViewVolume getViewVolume(float viewportAspectRatio, const NbBox3f& scene = NbBox3f()) const;

  /// Turns the camera towards a point, with y up where that is possible.
  void pointAt(const NbVec3f& target);

  /// Moves the camera along its direction, and sets its clipping distances, so that all of a graph is in the picture.
  /// \p slack widens the clipping range: 1 fits it to the bounding sphere. An empty graph changes nothing.
  void viewAll(NxNode* root, const NbViewportRegion& viewport, float slack = 1.f);
  void viewAll(NxPath* path, const NbViewportRegion& viewport, float slack = 1.f);

  void doAction(NxAction* action) override;

protected:
  NxCamera();
  ~NxCamera() override;

  /// Sets the shape of the volume for an aspect ratio; placing it is done by the base.
  virtual void shapeVolume(NbViewVolume& volume, float aspect, float nearDistance, float farDistance) const = 0;
  /// Chooses position and size for a sphere that has to fit into the picture.
  virtual void frameSphere(const NbVec3f& center, float radius, float aspect) = 0;
  bool isWidened(float aspect) const { return viewportMapping.getValue() == ADJUST_CAMERA && aspect < 1.f; }

private:
  float getEffectiveAspect(float viewportAspectRatio) const;
  void fitClipping(const NbBox3f& scene, float& nearest, float& farthest) const;
  void viewBox(const NbBox3f& box, const NbViewportRegion& viewport, float slack);
};
