// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIj.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiTessellator.h>

/// A structured surface mesh as polygons, without its dead and refused cells.
class KERRIN_EXTRACTOR_API KiSurfaceExtractIj : public KiSurfaceExtractorIj<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiSurfaceExtractIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                            KiTessellator* tessellator);
  static KiSurfaceExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                            KiTessellator* tessellator);
  static KiSurfaceExtractIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                            KiTessellator* tessellator);
};
