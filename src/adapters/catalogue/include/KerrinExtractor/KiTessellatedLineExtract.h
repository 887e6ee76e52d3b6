// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorI.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// An unstructured line mesh with its three-node segments subdivided; a null tessellator takes them as linear.
class KERRIN_EXTRACTOR_API KiTessellatedLineExtract : public KiLineExtractorI<KiTessellator*> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiTessellatedLineExtract* getNewInstance(const KiLineMeshUnstructured& mesh, bool parallel);
};
