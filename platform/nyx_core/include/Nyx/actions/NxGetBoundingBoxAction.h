// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NbViewportRegion.h>

class NbMatrix;

/// Computes the box around what a graph shows, in the coordinates of the graph's root.
class NYX_CORE_API NxGetBoundingBoxAction : public NxAction {
  NX_ACTION_HEADER(NxGetBoundingBoxAction);

public:
  /// The viewport matters to shapes whose size is given in pixels.
  explicit NxGetBoundingBoxAction(const NbViewportRegion& viewport = NbViewportRegion());
  ~NxGetBoundingBoxAction() override;

  void setViewportRegion(const NbViewportRegion& viewport) { m_viewport = viewport; }
  const NbViewportRegion& getViewportRegion() const { return m_viewport; }

  /// The result of the last apply(); empty when nothing is shown.
  const NbBox3f& getBoundingBox() const { return m_box; }
  /// The mean of the centres that the shapes have set, or the box's centre when none has.
  NbVec3f getCenter() const;

  /// Adds a box in the coordinates of the root. For nodes.
  void extendBy(const NbBox3f& box) { m_box.extendBy(box); }
  /// Adds a box in the coordinates of a shape, which `modelMatrix` takes to those of the root. For nodes.
  void extendBy(const NbBox3f& box, const NbMatrix& modelMatrix);
  /// Tells a shape's centre, in its own coordinates. For nodes.
  void setCenter(const NbVec3f& center, const NbMatrix& modelMatrix);

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  NbViewportRegion m_viewport;
  NbBox3f m_box;
  NbVec3f m_centerSum;
  int m_numCenters = 0;
};
