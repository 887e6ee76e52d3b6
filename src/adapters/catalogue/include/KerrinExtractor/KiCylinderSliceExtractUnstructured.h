// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// The section by an infinite cylinder (a point of the axis, radius, direction of the axis, of any length). A radius
/// that is not greater than 0, a direction without length, or numbers that are not finite, yield nothing and a message.
class KERRIN_EXTRACTOR_API KiCylinderSliceExtractUnstructured
    : public KiSurfaceExtractorI<const KbVec3<double>&, double, const KbVec3<double>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCylinderSliceExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                            KiTessellator* tessellator);
};
