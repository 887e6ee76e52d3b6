// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

#include <vector>

/// The curtain over a polyline, swept both ways along a direction through the whole mesh: each segment ends at its two
/// points, and segments share the vertices between them. Polygons face the right of the way along the polyline, seen
/// with the direction towards the viewer; a segment in a face of the hull shows it where the cells are on that side.
/// Points at the same place across the direction count once; fewer than two give an empty surface and a message.
class KERRIN_EXTRACTOR_API KiFenceSliceExtractUnstructured
    : public KiSurfaceExtractorI<const KbVec3<double>&, const std::vector<KbVec3<double>>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiFenceSliceExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                         KiTessellator* tessellator);
};
