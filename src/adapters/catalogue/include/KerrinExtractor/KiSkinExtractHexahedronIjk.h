// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The faces that belong to exactly one live, accepted cell of the cell ranges. Cells are neighbours by their indices:
/// where the faces between two neighbours do not match (a fault) both stay, and so do those on the two sides of a seam
/// where the index box is bent until it meets itself.
class KERRIN_EXTRACTOR_API KiSkinExtractHexahedronIjk : public KiSurfaceExtractorHexahedronIjk<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiSkinExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                    KiTessellator* tessellator);

  /// Adds the cells in [min, max) (per index) to the ranges; `size_t(-1)` leaves that end open. The skin is that of the
  /// union of all ranges; with no range at all, that of the whole mesh.
  virtual void addCellRange(const KbVec3<std::size_t>& min, const KbVec3<std::size_t>& max) = 0;
  virtual void clearCellRanges() = 0;
};
