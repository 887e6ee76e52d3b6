// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIj.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiTessellator.h>

#include <utility>
#include <vector>

/// Chosen cells as separate shapes, shrunk towards their centres by a factor in (0, 1].
class KERRIN_EXTRACTOR_API KiCellExtractIj : public KiSurfaceExtractorIj<double> {
public:
  using couple = std::pair<std::size_t, std::size_t>;

  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCellExtractIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel, KiTessellator* tessellator);
  static KiCellExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                         KiTessellator* tessellator);
  static KiCellExtractIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                         KiTessellator* tessellator);

  using KiSurfaceExtractorIj<double>::extract;
  /// The listed cells only; indices out of range, dead and refused cells are left out.
  virtual const KeXSurfaceMeshUnstructured& extract(const std::vector<couple>& cells, double factor,
                                                    const KiCellFilterIj* filter) = 0;
};
