// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// The outline of a mesh: edges of its skin with a dihedral angle over 30 degrees, boundary edges, and for
/// structured kinds the edges of the index box.
class KERRIN_EXTRACTOR_API KiOutlineExtractUnstructured : public KiLineExtractorI<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiOutlineExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);
  static KiOutlineExtractUnstructured* getNewInstance(const KiSurfaceMeshUnstructured& mesh, bool parallel,
                                                      KiTessellator* tessellator);
};
