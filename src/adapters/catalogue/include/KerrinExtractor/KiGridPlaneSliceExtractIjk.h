// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>

/// A plane section (normal, distance) sampled on a square grid of the given step in the plane: quads whose four
/// corners lie in live cells. The grid starts at the point of the plane nearest to the coordinate origin; its first
/// axis is the coordinate axis that follows the greatest component of the normal (x after z), laid into the plane, the
/// second is the normal times the first. A quad's input cell is the one at its centre. A step that is not positive, or
/// that asks for more than 2^26 grid nodes in the mesh's box, gives an empty surface and a message.
class KERRIN_EXTRACTOR_API KiGridPlaneSliceExtractIjk
    : public KiSurfaceExtractorIjk<const KbVec3<double>&, double, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiGridPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                    KiTessellator* tessellator);
  static KiGridPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                    KiTessellator* tessellator);
  static KiGridPlaneSliceExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                    KiTessellator* tessellator);
};
