// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

/// The surface on which a scalar set has one value: the boundary of the region where the value is at least the
/// isovalue; normals point out of that region. `PER_CELL` sets are averaged to the nodes first. Cells around a NaN
/// value yield nothing. An isovalue that is not finite yields nothing and a message.
class KERRIN_EXTRACTOR_API KiIsosurfExtractIjk : public KiSurfaceExtractorIjk<double, const KiDataSetIjk<double>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiIsosurfExtractIjk* getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiIsosurfExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiIsosurfExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiIsosurfExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);
};
