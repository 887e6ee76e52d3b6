// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFColor.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>

/// Says how faces, lines and points of meshes below are coloured. Without such a node they are coloured by data, where
/// there are any, and keep the application's own material otherwise.
class KERRIN_DATAMAPPING_API KoMaterial : public KoActionNode {
  NX_NODE_HEADER(KoMaterial);

public:
  enum ColoringType {
    COLOR = 0,     ///< The colour field applies.
    CONTOURING = 1 ///< The colour comes from the colour mapping and the colour set; the field applies without them.
  };

  KoMaterial();
  KoMaterial(const KoMaterial& other);
  KoMaterial& operator=(const KoMaterial& other);

  NxSFEnum faceColoring;     ///< CONTOURING
  NxSFColor faceColor;       ///< (1, 1, 1)
  NxSFEnum lineColoring;     ///< CONTOURING
  NxSFColor lineColor;       ///< (1, 0, 0)
  NxSFEnum pointColoring;    ///< CONTOURING
  NxSFColor pointColor;      ///< (0, 1, 0)
  NxSFFloat transparency;    ///< 0 opaque to 1 fully transparent, 0; not clamped
  NxSFBool enhancedColoring; ///< colour polygons per fragment, FALSE

  void doAction(NxAction* action) override;

protected:
  ~KoMaterial() override;
};
