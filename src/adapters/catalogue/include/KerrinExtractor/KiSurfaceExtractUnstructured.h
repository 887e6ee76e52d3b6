// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// An unstructured surface mesh as polygons, without its dead and refused cells. Quadratic cells are taken by their
/// corners, with or without a tessellator.
class KERRIN_EXTRACTOR_API KiSurfaceExtractUnstructured : public KiSurfaceExtractorI<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiSurfaceExtractUnstructured* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);

  using KiSurfaceExtractorI<>::extract;
  /// The same as `extract(filter)`.
  virtual const KeXSurfaceMeshUnstructured& extract(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  /// The edges of the cells as lines, each once, and their corners as points, each with the first of its cells.
  virtual const KeXLineMeshUnstructured* extractLines(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  virtual const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) = 0;
};
