// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The section by the plane through normal / |normal| * distance, across the normal. A plane in which faces of cells
/// lie shows those of the cells on the side that the normal points to, so that a face between two cells counts once.
/// A normal without length, or numbers that are not finite, yield nothing and a message.
class KERRIN_EXTRACTOR_API KiPlaneSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiPlaneSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                          KiTessellator* tessellator);
};
