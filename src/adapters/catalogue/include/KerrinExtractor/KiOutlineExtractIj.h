// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorIj.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiTessellator.h>

/// The outline of a mesh: edges of its skin with a dihedral angle over 30 degrees, boundary edges, and for
/// structured kinds the edges of the index box.
class KERRIN_EXTRACTOR_API KiOutlineExtractIj : public KiLineExtractorIj<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiOutlineExtractIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                            KiTessellator* tessellator);
  static KiOutlineExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                            KiTessellator* tessellator);
  static KiOutlineExtractIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                            KiTessellator* tessellator);
};
