// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// An unstructured surface mesh as polygons, without its dead and refused cells.
class KERRIN_EXTRACTOR_API KiSurfaceExtractUnstructured : public KiSurfaceExtractorI<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh and the tessellator must outlive it. A null tessellator
  /// takes non-linear cells by their corners.
  static KiSurfaceExtractUnstructured* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);

  using KiSurfaceExtractorI<>::extract;
  /// The same with another tessellator, or null, for this call.
  virtual const KeXSurfaceMeshUnstructured& extract(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  /// The sides of the cells as lines, each once; those of non-linear cells are curves of several segments with a
  /// tessellator. Until the next call sets are mapped onto these lines.
  virtual const KeXLineMeshUnstructured* extractLines(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  /// The corners of the cells, and if the extractor has a tessellator the nodes in the middles of sides too, each with
  /// the first of its cells. Until the next call sets are mapped onto these points.
  virtual const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) = 0;
};
