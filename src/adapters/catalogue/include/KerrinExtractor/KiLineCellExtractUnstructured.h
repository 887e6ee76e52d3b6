// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineExtractorI.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

#include <vector>

/// Chosen line cells as separate segments, shrunk towards their centres by a factor in (0, 1].
class KERRIN_EXTRACTOR_API KiLineCellExtractUnstructured : public KiLineExtractorI<double> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiLineCellExtractUnstructured* getNewInstance(const KiLineMeshUnstructured& mesh, bool parallel,
                                                       KiTessellator* tessellator);

  using KiLineExtractorI<double>::extract;
  /// The listed cells only; indices out of range, dead and refused cells are left out.
  virtual const KeXLineMeshUnstructured& extract(const std::vector<std::size_t>& cells, double factor,
                                                 const KiCellFilterI* filter) = 0;
};
