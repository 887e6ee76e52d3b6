// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorHexahedronIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// The surface on which a scalar set has one value: the boundary of the region where the value is at least the
/// isovalue; normals point out of that region. `PER_CELL` sets are averaged to the nodes first. Cells around a NaN
/// value yield nothing. An isovalue that is not finite yields nothing and a message.
class KERRIN_EXTRACTOR_API KiIsosurfExtractHexahedronIjk
    : public KiSurfaceExtractorHexahedronIjk<double, const KiDataSetIjk<double>&> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiIsosurfExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                       KiTessellator* tessellator);

  using KiSurfaceExtractorHexahedronIjk<double, const KiDataSetIjk<double>&>::extract;
  /// The same over a `PER_NODE` set.
  virtual const KeXSurfaceMeshUnstructured& extract(double isovalue, const KiDataSetI<double>& isoSet,
                                                    const KiCellFilterIjk* filter) = 0;
};
