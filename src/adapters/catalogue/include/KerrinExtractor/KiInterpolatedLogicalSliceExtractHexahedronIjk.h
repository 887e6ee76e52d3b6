// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The surface at a fractional node position along one axis: axis, position in [0, number of cells]. At a whole
/// position it runs between two layers of cells: a face is there if one of its two cells is alive and accepted, and its
/// input cell is the upper one of those. Faults stay open. A position out of range yields nothing; one that is no
/// number also a message.
class KERRIN_EXTRACTOR_API KiInterpolatedLogicalSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<KiMesh::Dimension, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiInterpolatedLogicalSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                        bool parallel, KiTessellator* tessellator);
};
