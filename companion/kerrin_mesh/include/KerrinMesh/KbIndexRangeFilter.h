// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbFilterBase.h>

/// Accepts the cells with `begin` <= index < `end` along each axis.
///
///     KbIndexRangeFilterIjk upperLayers({0, 0, 0}, {numI, numJ, 5});
template <std::size_t N>
class KERRIN_MESH_API KbIndexRangeFilter final : public KbFilterBase<KbIndexRangeFilter<N>, N> {
public:
  KbIndexRangeFilter(const KbIndex<N>& begin, const KbIndex<N>& end);
  void setRange(const KbIndex<N>& begin, const KbIndex<N>& end);
  const KbIndex<N>& getBegin() const { return m_begin; }
  const KbIndex<N>& getEnd() const { return m_end; }

  bool accepts(const KbIndex<N>& cell) const;

private:
  KbIndex<N> m_begin;
  KbIndex<N> m_end;
};

using KbIndexRangeFilterI = KbIndexRangeFilter<1>;
using KbIndexRangeFilterIj = KbIndexRangeFilter<2>;
using KbIndexRangeFilterIjk = KbIndexRangeFilter<3>;

extern template class KbIndexRangeFilter<1>;
extern template class KbIndexRangeFilter<2>;
extern template class KbIndexRangeFilter<3>;
