// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// The section by the plane through normal / |normal| * distance, across the normal. A plane in which faces of cells
/// lie shows those of the cells on the side that the normal points to, so that a face between two cells counts once.
/// A normal without length, or numbers that are not finite, yield nothing and a message.
class KERRIN_EXTRACTOR_API KiPlaneSliceExtractUnstructured : public KiSurfaceExtractorI<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh and the tessellator must outlive it. A null tessellator
  /// takes non-linear cells as linear.
  static KiPlaneSliceExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                         KiTessellator* tessellator);

  /// The same cut as lines: where the sides of the cells are cut, without the edges that a subdivision adds. Null
  /// without a tessellator and for meshes without non-linear cells, whose polygons have no other edges. Until the next
  /// `extract` sets are mapped onto these lines.
  virtual const KeXLineMeshUnstructured* extractLines(const KbVec3<double>& normal, double distance,
                                                      const KiCellFilterI* filter) = 0;
};
