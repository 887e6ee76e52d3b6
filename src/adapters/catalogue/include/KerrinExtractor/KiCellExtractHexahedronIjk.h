// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

#include <vector>

/// Chosen cells as separate shapes, shrunk towards their centres by a factor in (0, 1].
class KERRIN_EXTRACTOR_API KiCellExtractHexahedronIjk : public KiSurfaceExtractorHexahedronIjk<double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCellExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                    KiTessellator* tessellator);

  using KiSurfaceExtractorHexahedronIjk<double>::extract;
  /// The listed cells only; indices out of range, dead and refused cells are left out.
  virtual const KeXSurfaceMeshUnstructured& extract(const std::vector<KiCellExtractIjk::triplet>& cells, double factor,
                                                    const KiCellFilterIjk* filter) = 0;
};
