// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbFilterBase.h>

#include <vector>

/// How a combination answers.
enum class KbFilterRule {
  ALL_OF, ///< accepts what all accept; every cell when there is no filter
  ANY_OF, ///< accepts what at least one accepts; no cell when there is no filter
  NONE_OF ///< accepts what none accepts; every cell when there is no filter
};

/// Joins filters of the same form; they must outlive it. Its stamp follows theirs.
///
///     KbCombinedFilterI both(KbFilterRule::ALL_OF, {&a, &b});
///     KbCombinedFilterI notA(KbFilterRule::NONE_OF, {&a});
template <std::size_t N>
class KERRIN_MESH_API KbCombinedFilter final : public KbFilterBase<KbCombinedFilter<N>, N> {
public:
  using Filter = typename KbForm<N>::CellFilter;

  /// Null pointers are left out.
  KbCombinedFilter(KbFilterRule rule, std::vector<const Filter*> filters);
  void setFilters(KbFilterRule rule, std::vector<const Filter*> filters);
  KbFilterRule getRule() const { return m_rule; }
  const std::vector<const Filter*>& getFilters() const { return m_filters; }

  std::size_t getTimeStamp() const override;
  bool accepts(const KbIndex<N>& cell) const;

private:
  KbFilterRule m_rule;
  std::vector<const Filter*> m_filters;
};

using KbCombinedFilterI = KbCombinedFilter<1>;
using KbCombinedFilterIj = KbCombinedFilter<2>;
using KbCombinedFilterIjk = KbCombinedFilter<3>;

extern template class KbCombinedFilter<1>;
extern template class KbCombinedFilter<2>;
extern template class KbCombinedFilter<3>;
