// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorI.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiTessellator.h>

/// A structured line mesh as an extracted one, without its dead and refused cells.
class KERRIN_EXTRACTOR_API KiLineExtract : public KiLineExtractorI<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiLineExtract* getNewInstance(const KiLineMeshRegular& mesh, bool parallel, KiTessellator* tessellator);
  static KiLineExtract* getNewInstance(const KiLineMeshCurvilinear& mesh, bool parallel, KiTessellator* tessellator);
};
