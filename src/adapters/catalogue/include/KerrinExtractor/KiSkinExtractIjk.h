// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

/// The faces that belong to exactly one live, accepted cell of the cell ranges. Where neighbours do not match (a
/// fault) both faces stay.
class KERRIN_EXTRACTOR_API KiSkinExtractIjk : public KiSurfaceExtractorIjk<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiSkinExtractIjk* getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                          KiTessellator* tessellator);
  static KiSkinExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel, KiTessellator* tessellator);
  static KiSkinExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                          KiTessellator* tessellator);
  static KiSkinExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                          KiTessellator* tessellator);

  /// Adds the cells in [min, max) (per index) to the ranges; `size_t(-1)` leaves that end open. The skin is that of the
  /// union of all ranges; with no range at all, that of the whole mesh.
  virtual void addCellRange(const KbVec3<std::size_t>& min, const KbVec3<std::size_t>& max) = 0;
  virtual void clearCellRanges() = 0;
};
