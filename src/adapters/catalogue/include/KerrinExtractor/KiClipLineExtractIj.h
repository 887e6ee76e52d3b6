// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorIj.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiTessellator.h>

#include <vector>

/// The section of a surface mesh by a plane (through normal / |normal| * distance) or by a curtain over a polyline, as
/// lines. A plane in which edges lie shows those of the faces on the side that the normal points to.
class KERRIN_EXTRACTOR_API KiClipLineExtractIj : public KiLineExtractorIj<const KbVec3<double>&, double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiClipLineExtractIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiClipLineExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiClipLineExtractIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);

  using KiLineExtractorIj<const KbVec3<double>&, double>::extract;
  /// Along the polyline (at least two points), swept both ways along `direction` without end.
  virtual const KeXLineMeshUnstructured& extract(const KbVec3<double>& direction,
                                                 const std::vector<KbVec3<double>>& polyline,
                                                 const KiCellFilterIj* filter) = 0;
};
