// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFColor.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/shapes/NxIndexedFaceSet.h>

/// An indexed face set that can carry what drawing faces and their outlines in one pass needs. This renderer draws
/// outlines as lines of their own: `isCompatibleWithState` says no, and the shape is drawn as an NxIndexedFaceSet
/// whatever the fields say.
class NYX_CORE_API NxIndexedFaceSetOutline : public NxIndexedFaceSet {
  NX_NODE_HEADER(NxIndexedFaceSetOutline);

public:
  NxIndexedFaceSetOutline();

  enum OutlineMode { ACTIVE = 0, OFF = 2 };
  /// COLOR takes the field beside it, INHERITED the material or the vertices' colours.
  enum ColoringMode { COLOR = 0, INHERITED = 1 };

  NxSFEnum outlineMode;      ///< OFF
  NxSFEnum edgeColoringMode; ///< INHERITED
  NxSFColor edgeColor;       ///< (0, 0, 0)
  NxSFEnum faceColoringMode; ///< INHERITED
  NxSFColor faceColor;       ///< (1, 1, 1)
  NxSFBool fading;           ///< whether outlines fade where they are dense; FALSE
  NxSFFloat transparency;    ///< of both colours; 0

  /// Whether outlines can be drawn together with the faces under this state.
  bool isCompatibleWithState(NxState* state) const;

  /// Asks for faces without outlines, whatever `outlineMode` says.
  void bypassSinglePassOutline(bool bypass) { m_isBypassed = bypass; }
  bool isSinglePassOutlineBypassed() const { return m_isBypassed; }

protected:
  ~NxIndexedFaceSetOutline() override;

private:
  bool m_isBypassed = false;
};
