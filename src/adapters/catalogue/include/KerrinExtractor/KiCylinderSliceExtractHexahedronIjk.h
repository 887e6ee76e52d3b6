// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The section by an infinite cylinder (a point of the axis, radius, direction of the axis, of any length). A radius
/// that is not greater than 0, a direction without length, or numbers that are not finite, yield nothing and a message.
class KERRIN_EXTRACTOR_API KiCylinderSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<const KbVec3<double>&, double, const KbVec3<double>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCylinderSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                             KiTessellator* tessellator);
};
