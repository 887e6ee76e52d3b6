// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// The surface on which a scalar set has one value: the boundary of the region where the value is at least the
/// isovalue; normals point out of that region. `PER_CELL` sets are averaged to the nodes first. Cells around a NaN
/// value yield nothing. An isovalue that is not finite yields nothing and a message.
class KERRIN_EXTRACTOR_API KiIsosurfExtractUnstructured
    : public KiSurfaceExtractorI<double, const KiDataSetI<double>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh and the tessellator must outlive it. A null tessellator
  /// takes non-linear cells as linear.
  static KiIsosurfExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);

  /// The same cut as lines: where the sides of the cells are cut, without the edges that a subdivision adds. Null
  /// without a tessellator and for meshes without non-linear cells, whose polygons have no other edges. Until the next
  /// `extract` sets are mapped onto these lines.
  virtual const KeXLineMeshUnstructured* extractLines(double isovalue, const KiDataSetI<double>& isoSet,
                                                      const KiCellFilterI* filter) = 0;
};
