// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The section by a sphere (centre, radius). A radius that is not greater than 0, or numbers that are not finite, yield
/// nothing and a message.
class KERRIN_EXTRACTOR_API KiSphereSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiSphereSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                           KiTessellator* tessellator);
};
