// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KdIndexedMesh.h"

class KeXSurfaceMeshUnstructured;
class KoSurfaceMeshDetail;
class KxSurfaceSceneGraph;
class NxRayPickAction;

/// Shows an extracted surface.
class KdSurfaceMesh final : public KdIndexedMesh {
public:
  /// Adds the separator "SurfaceMesh_Display" to the group. The faces are moved back a little, so that lines on them
  /// are seen, unless the preference `KERRIN_POLYGON_OFFSET` (default true) says no.
  explicit KdSurfaceMesh(NxGroup& parentGroup);
  ~KdSurfaceMesh() override;

  void clear() override;

  /// Shows the mesh, coloured by the sets (see `KxMeshSceneGraph::fillColors`); null clears the display.
  void setSurfaceMesh(NxState* state, const KeXSurfaceMeshUnstructured* mesh, const ExtractedSets& colorSets);
  void setUseSinglePassOutline(bool use);
  /// Gives the picked points on this surface details that know the extracted mesh.
  void fillPickedPoints(NxRayPickAction* action);

private:
  std::unique_ptr<KoSurfaceMeshDetail> m_detail;
  KxSurfaceSceneGraph* m_surfaceGraph;
};
