// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>

#include <vector>

/// Chosen cells as separate shapes, shrunk towards their centres by a factor in (0, 1].
class KERRIN_EXTRACTOR_API KiCellExtractIjk : public KiSurfaceExtractorIjk<double> {
public:
  using triplet = KbVec3<std::size_t>;

  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCellExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel, KiTessellator* tessellator);
  static KiCellExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                          KiTessellator* tessellator);
  static KiCellExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                          KiTessellator* tessellator);

  using KiSurfaceExtractorIjk<double>::extract;
  /// The listed cells only; indices out of range, dead and refused cells are left out.
  virtual const KeXSurfaceMeshUnstructured& extract(const std::vector<triplet>& cells, double factor,
                                                    const KiCellFilterIjk* filter) = 0;
};
