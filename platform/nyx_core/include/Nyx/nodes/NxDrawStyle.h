// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/fields/NxSFUShort.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// How shapes below are drawn. A field that is ignored (`setIgnored`) lets the value from above through.
class NYX_CORE_API NxDrawStyle : public NxPropertyNode {
  NX_NODE_HEADER(NxDrawStyle);

public:
  NxDrawStyle();

  /// FILLED draws faces as faces; LINES draws their edges and POINTS their corners.
  enum Style { FILLED = 0, LINES = 1, POINTS = 2, INVISIBLE = 3 };

  NxSFEnum style;                   ///< FILLED
  NxSFFloat pointSize;              ///< pixels, 1; 0 counts as 1
  NxSFFloat lineWidth;              ///< pixels, 1; 0 counts as 1
  NxSFUShort linePattern;           ///< 16 bits, lowest first; 0xFFFF is solid
  NxSFInt32 linePatternScaleFactor; ///< pixels a bit, 1

  void doAction(NxAction* action) override;

protected:
  ~NxDrawStyle() override;
};
