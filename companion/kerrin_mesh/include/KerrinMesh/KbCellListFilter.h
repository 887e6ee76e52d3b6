// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbFilterBase.h>

#include <vector>

/// Accepts the cells of a list, in any order; a cell may be listed twice.
///
///     KbCellListFilterI chosen({{3}, {17}, {42}});
template <std::size_t N>
class KERRIN_MESH_API KbCellListFilter final : public KbFilterBase<KbCellListFilter<N>, N> {
public:
  explicit KbCellListFilter(std::vector<KbIndex<N>> cells);
  void setCells(std::vector<KbIndex<N>> cells);
  /// The list in ascending order, each cell once.
  const std::vector<KbIndex<N>>& getCells() const { return m_cells; }

  bool accepts(const KbIndex<N>& cell) const;

private:
  std::vector<KbIndex<N>> m_cells;
};

using KbCellListFilterI = KbCellListFilter<1>;
using KbCellListFilterIj = KbCellListFilter<2>;
using KbCellListFilterIjk = KbCellListFilter<3>;

extern template class KbCellListFilter<1>;
extern template class KbCellListFilter<2>;
extern template class KbCellListFilter<3>;
