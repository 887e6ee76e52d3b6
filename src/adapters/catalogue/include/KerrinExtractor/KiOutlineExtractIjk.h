// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorIjk.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

/// The outline of a mesh: edges of its skin with a dihedral angle over 30 degrees, boundary edges, and for
/// structured kinds the edges of the index box.
class KERRIN_EXTRACTOR_API KiOutlineExtractIjk : public KiLineExtractorIjk<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiOutlineExtractIjk* getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiOutlineExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiOutlineExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);
  static KiOutlineExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                             KiTessellator* tessellator);
};
