// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The layer of faces at the lower or upper side of the cells of one layer: axis, index of the layer, and whether
/// the side is the upper one. Faults stay open. An index behind the last layer yields nothing.
class KERRIN_EXTRACTOR_API KiLogicalSliceExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<KiMesh::Dimension, std::size_t, bool> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiLogicalSliceExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                            KiTessellator* tessellator);
};
