// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxPickAction.h>
#include <Nyx/details/NxPickedPoint.h>

#include <memory>
#include <vector>

/// Finds where a ray meets what a graph shows.
class NYX_CORE_API NxRayPickAction : public NxPickAction {
  NX_ACTION_HEADER(NxRayPickAction);

public:
  explicit NxRayPickAction(const NbViewportRegion& viewport = NbViewportRegion());
  ~NxRayPickAction() override;

  /// The picked point at `index`, in the order in which the traversal found them; null for an index out of range.
  NxPickedPoint* getUnsortedPickedPoint(int index) const;
  int getNumPickedPoints() const { return static_cast<int>(m_points.size()); }
  /// Adds a point on the current node, given in the coordinates of the root. The action owns the result. For nodes.
  NxPickedPoint* addIntersection(const NbVec3f& point);

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  std::vector<std::unique_ptr<NxPickedPoint>> m_points;
};
