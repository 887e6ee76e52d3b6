// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>

#include <cstddef>

class KiTessellator;

/// Says how representations below subdivide non-linear cells; without one they take them as linear.
///
/// The tessellator is not owned and must outlive its last traversal.
class KERRIN_DATAMAPPING_API KoTessellator : public KoActionNode {
  NX_NODE_HEADER(KoTessellator);

public:
  KoTessellator();

  /// Counts as a change even when it is the same object.
  virtual void setTessellator(KiTessellator* tessellator);
  virtual KiTessellator* getTessellator();

  void doAction(NxAction* action) override;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

protected:
  ~KoTessellator() override;

private:
  KiTessellator* m_tessellator = nullptr;
  std::size_t m_timeStamp = static_cast<std::size_t>(-1);
};
