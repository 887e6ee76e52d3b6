// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// An unstructured surface mesh with its non-linear cells subdivided, without its dead and refused cells; a null
/// tessellator takes them by their corners.
class KERRIN_EXTRACTOR_API KiTessellatedSurfaceExtract : public KiSurfaceExtractorI<KiTessellator*> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiTessellatedSurfaceExtract* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel);

  /// The sides of the cells as lines, each once; those of non-linear cells are curves of several segments. Until the
  /// next call sets are mapped onto these lines.
  virtual const KeXLineMeshUnstructured* extractLines(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  /// The nodes of the cells, those in the middles of sides too, each with the first of its cells. Until the next call
  /// sets are mapped onto these points.
  virtual const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) = 0;
};
