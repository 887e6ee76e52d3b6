// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// An unstructured surface mesh with its non-linear cells subdivided.
class KERRIN_EXTRACTOR_API KiTessellatedSurfaceExtract : public KiSurfaceExtractorI<KiTessellator*> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiTessellatedSurfaceExtract* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel);

  virtual const KeXLineMeshUnstructured* extractLines(KiTessellator* tessellator, const KiCellFilterI* filter) = 0;
  virtual const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) = 0;
};
