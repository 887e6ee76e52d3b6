// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiLineExtractorIjk.h>

/// Shape of a line extractor on a hexahedron Ijk mesh: cells, filters and `PER_CELL` sets in the Ijk form by its base,
/// `PER_NODE` sets in the I form by its own operations.
template <class... P>
class KiLineExtractorHexahedronIjk : public KiLineExtractorIjk<P...> {
public:
  using KiLineExtractorIjk<P...>::extractScalarSet;
  using KiLineExtractorIjk<P...>::extractVec3Set;
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetI<KbVec3<double>>& set) = 0;
};
