// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbFilterBase.h>

/// Accepts the cells whose value lies in [min, max]. NaN is refused.
///
///     KbValueRangeFilterIjk goodRock(porosity, 0.15, 1.0);
///
/// The set holds values per cell and must outlive the filter; the filter's stamp follows the set's. A set of values per
/// node is told by a message through `KiMessage`, and every cell is accepted.
template <std::size_t N>
class KERRIN_MESH_API KbValueRangeFilter final : public KbFilterBase<KbValueRangeFilter<N>, N> {
public:
  using Set = typename KbForm<N>::template DataSet<double>;

  KbValueRangeFilter(const Set& set, double min, double max);
  void setRange(double min, double max);
  double getMin() const { return m_min; }
  double getMax() const { return m_max; }

  std::size_t getTimeStamp() const override;
  bool accepts(const KbIndex<N>& cell) const;

private:
  const Set* m_set;
  double m_min;
  double m_max;
};

using KbValueRangeFilterI = KbValueRangeFilter<1>;
using KbValueRangeFilterIj = KbValueRangeFilter<2>;
using KbValueRangeFilterIjk = KbValueRangeFilter<3>;

extern template class KbValueRangeFilter<1>;
extern template class KbValueRangeFilter<2>;
extern template class KbValueRangeFilter<3>;
