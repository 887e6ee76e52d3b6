// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NbViewportRegion.h>

/// What picking actions have in common: the viewport that they pick in.
class NYX_CORE_API NxPickAction : public NxAction {
  NX_ACTION_HEADER(NxPickAction);

public:
  explicit NxPickAction(const NbViewportRegion& viewport = NbViewportRegion());
  ~NxPickAction() override;

  void setViewportRegion(const NbViewportRegion& viewport) { m_viewport = viewport; }
  const NbViewportRegion& getViewportRegion() const { return m_viewport; }

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  NbViewportRegion m_viewport;
};
