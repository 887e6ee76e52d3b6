// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The section by the plane of the points p with normal . p = distance; the normal need not have length 1 (distance
/// scales with it: the plane holds the point normal / |normal| * distance).
class KERRIN_EXTRACTOR_API KiPlaneSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiPlaneSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                          KiTessellator* tessellator);
};
