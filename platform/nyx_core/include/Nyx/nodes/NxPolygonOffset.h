// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// Shifts what is below in depth, so that lines on faces are not hidden by them: factor times the slope in depth plus
/// units times the smallest step in depth, positive away from the eye. Points cannot be shifted.
class NYX_CORE_API NxPolygonOffset : public NxPropertyNode {
  NX_NODE_HEADER(NxPolygonOffset);

public:
  NxPolygonOffset();

  /// The draw styles that are shifted.
  enum Style { FILLED = 1, LINES = 2, POINTS = 4 };

  NxSFFloat factor; ///< 1
  NxSFFloat units;  ///< 1
  NxSFInt32 styles; ///< sum of Style values, FILLED
  NxSFBool on;      ///< TRUE

  void doAction(NxAction* action) override;

protected:
  ~NxPolygonOffset() override;
};
