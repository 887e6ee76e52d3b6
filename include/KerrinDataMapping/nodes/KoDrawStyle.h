// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/fields/NxSFBool.h>
#include <Nyx/fields/NxSFFloat.h>

/// Chooses the styles in which meshes below are displayed. Without such a node they follow the application's own draw
/// style.
class KERRIN_DATAMAPPING_API KoDrawStyle : public KoActionNode {
  NX_NODE_HEADER(KoDrawStyle);

public:
  KoDrawStyle();
  KoDrawStyle(const KoDrawStyle& other);
  KoDrawStyle& operator=(const KoDrawStyle& other);

  NxSFBool displayFaces;     ///< TRUE
  NxSFBool displayEdges;     ///< FALSE
  NxSFBool displayPoints;    ///< FALSE
  NxSFFloat fadingThreshold; ///< length in pixels at which edges begin to fade, 0; 0 or less means no fading

  void doAction(NxAction* action) override;

protected:
  ~KoDrawStyle() override;
};
