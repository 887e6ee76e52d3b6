// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>

/// The surface at a fractional node position along one axis: axis, position in [0, number of cells]. At a whole
/// position it runs between two layers of cells: a face is there if one of its two cells is alive and accepted, and its
/// input cell is the upper one of those. Faults stay open. A position out of range yields nothing; one that is no
/// number also a message.
class KERRIN_EXTRACTOR_API KiInterpolatedLogicalSliceExtract : public KiSurfaceExtractorIjk<KiMesh::Dimension, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiInterpolatedLogicalSliceExtract* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                           KiTessellator* tessellator);
  static KiInterpolatedLogicalSliceExtract* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                           KiTessellator* tessellator);
  static KiInterpolatedLogicalSliceExtract* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                           KiTessellator* tessellator);
};
