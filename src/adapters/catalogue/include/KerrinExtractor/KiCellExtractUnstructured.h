// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

#include <vector>

/// Chosen cells as separate shapes, shrunk towards their centres by a factor in (0, 1].
class KERRIN_EXTRACTOR_API KiCellExtractUnstructured : public KiSurfaceExtractorI<double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiCellExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                   KiTessellator* tessellator);
  static KiCellExtractUnstructured* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel,
                                                   KiTessellator* tessellator);

  using KiSurfaceExtractorI<double>::extract;
  /// The listed cells only; indices out of range, dead and refused cells are left out.
  virtual const KeXSurfaceMeshUnstructured& extract(const std::vector<std::size_t>& cells, double factor,
                                                    const KiCellFilterI* filter) = 0;
};
