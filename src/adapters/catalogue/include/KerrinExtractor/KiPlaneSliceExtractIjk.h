// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

/// The section by the plane of the points p with normal . p = distance; the normal need not have length 1 (distance
/// scales with it: the plane holds the point normal / |normal| * distance).
class KERRIN_EXTRACTOR_API KiPlaneSliceExtractIjk : public KiSurfaceExtractorIjk<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                KiTessellator* tessellator);
  static KiPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                KiTessellator* tessellator);
  static KiPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                KiTessellator* tessellator);
  static KiPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                KiTessellator* tessellator);
};
