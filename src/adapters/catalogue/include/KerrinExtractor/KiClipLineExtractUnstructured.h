// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

#include <vector>

/// The section of a surface mesh by a plane (through normal / |normal| * distance) or by a curtain over a polyline, as
/// lines. A plane in which edges lie shows those of the faces on the side that the normal points to.
class KERRIN_EXTRACTOR_API KiClipLineExtractUnstructured : public KiLineExtractorI<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiClipLineExtractUnstructured* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel,
                                                       KiTessellator* tessellator);

  using KiLineExtractorI<const KbVec3<double>&, double>::extract;
  /// Along the polyline (at least two points), swept both ways along `direction` without end.
  virtual const KeXLineMeshUnstructured& extract(const KbVec3<double>& direction,
                                                 const std::vector<KbVec3<double>>& polyline,
                                                 const KiCellFilterI* filter) = 0;
};
