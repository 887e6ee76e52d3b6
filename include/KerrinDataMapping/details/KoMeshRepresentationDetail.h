// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <Nyx/details/NxDetail.h>

#include <cstddef>
#include <vector>

class KiMeshUnstructuredI;

/// An extracted mesh and the values on it. Good until the next extraction.
class KERRIN_DATAMAPPING_API KoMeshRepresentationDetail : public NxDetail {
  NX_DETAIL_HEADER(KoMeshRepresentationDetail);

public:
  using ExtractedSets = std::vector<const KeXDataSetI<double>*>;

  KoMeshRepresentationDetail() = default;
  /// A list of nothing but nulls counts as empty.
  KoMeshRepresentationDetail(const KiMeshUnstructuredI* mesh, const ExtractedSets& sets);

  NxDetail* copy() const override { return new KoMeshRepresentationDetail(*this); }

  const ExtractedSets& getExtractedColorScalarSets() const { return m_sets; }
  /// The first of the sets, or null.
  const KeXDataSetI<double>* getExtractedColorScalarSet() const { return m_sets.empty() ? nullptr : m_sets.front(); }

  /// The value of each set at a point in an extracted cell, interpolated where values lie on nodes. Null sets add no
  /// value; nor do sets on nodes when the point lies outside the cell.
  std::vector<double> computeValues(const KbVec3<double>& point, std::size_t cellIndex) const;

private:
  const KiMeshUnstructuredI* m_mesh = nullptr;
  ExtractedSets m_sets;
};
