// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbCellListFilter.h>
#include <KerrinMesh/KbCombinedFilter.h>
#include <KerrinMesh/KbIndexRangeFilter.h>
#include <KerrinMesh/KbValueRangeFilter.h>

#include <KerrinExtractor/KiMessage.h>

#include <algorithm>

namespace {

template <class T>
double valueAt(const KiDataSetI<T>& set, const KbIndex<1>& c) {
  return set.get(c[0]);
}
template <class T>
double valueAt(const KiDataSetIj<T>& set, const KbIndex<2>& c) {
  return set.get(c[0], c[1]);
}
template <class T>
double valueAt(const KiDataSetIjk<T>& set, const KbIndex<3>& c) {
  return set.get(c[0], c[1], c[2]);
}

bool ask(const KiCellFilterI& filter, const KbIndex<1>& c) { return filter.acceptCell(c[0]); }
bool ask(const KiCellFilterIj& filter, const KbIndex<2>& c) { return filter.acceptCell(c[0], c[1]); }
bool ask(const KiCellFilterIjk& filter, const KbIndex<3>& c) { return filter.acceptCell(c[0], c[1], c[2]); }

} // namespace

template <std::size_t N>
KbValueRangeFilter<N>::KbValueRangeFilter(const Set& set, double min, double max)
    : m_set(&set)
    , m_min(min)
    , m_max(max) {
  if (set.getBinding() == DataBinding::PER_CELL) return;
  m_set = nullptr;
  KiMessage::postWarning("KbValueRangeFilter::KbValueRangeFilter",
                         "data set \"" + set.getName() + "\" has no values per cell");
}

template <std::size_t N>
void KbValueRangeFilter<N>::setRange(double min, double max) {
  m_min = min;
  m_max = max;
  this->renewStamp();
}

template <std::size_t N>
std::size_t KbValueRangeFilter<N>::getTimeStamp() const {
  // Stamps only grow, so that the younger of two changes whenever either does.
  return m_set ? std::max(this->m_stamp, m_set->getTimeStamp()) : this->m_stamp;
}

template <std::size_t N>
bool KbValueRangeFilter<N>::accepts(const KbIndex<N>& cell) const {
  if (!m_set) return true;
  const double value = valueAt(*m_set, cell);
  return value >= m_min && value <= m_max;
}

template <std::size_t N>
KbIndexRangeFilter<N>::KbIndexRangeFilter(const KbIndex<N>& begin, const KbIndex<N>& end)
    : m_begin(begin)
    , m_end(end) {}

template <std::size_t N>
void KbIndexRangeFilter<N>::setRange(const KbIndex<N>& begin, const KbIndex<N>& end) {
  m_begin = begin;
  m_end = end;
  this->renewStamp();
}

template <std::size_t N>
bool KbIndexRangeFilter<N>::accepts(const KbIndex<N>& cell) const {
  for (std::size_t axis = 0; axis < N; ++axis) {
    if (cell[axis] < m_begin[axis] || cell[axis] >= m_end[axis]) return false;
  }
  return true;
}

template <std::size_t N>
KbCellListFilter<N>::KbCellListFilter(std::vector<KbIndex<N>> cells) {
  setCells(std::move(cells));
}

template <std::size_t N>
void KbCellListFilter<N>::setCells(std::vector<KbIndex<N>> cells) {
  m_cells = std::move(cells);
  std::sort(m_cells.begin(), m_cells.end());
  m_cells.erase(std::unique(m_cells.begin(), m_cells.end()), m_cells.end());
  this->renewStamp();
}

template <std::size_t N>
bool KbCellListFilter<N>::accepts(const KbIndex<N>& cell) const {
  return std::binary_search(m_cells.begin(), m_cells.end(), cell);
}

template <std::size_t N>
KbCombinedFilter<N>::KbCombinedFilter(KbFilterRule rule, std::vector<const Filter*> filters) {
  setFilters(rule, std::move(filters));
}

template <std::size_t N>
void KbCombinedFilter<N>::setFilters(KbFilterRule rule, std::vector<const Filter*> filters) {
  m_rule = rule;
  m_filters = std::move(filters);
  m_filters.erase(std::remove(m_filters.begin(), m_filters.end(), nullptr), m_filters.end());
  this->renewStamp();
}

template <std::size_t N>
std::size_t KbCombinedFilter<N>::getTimeStamp() const {
  std::size_t stamp = this->m_stamp;
  for (const Filter* filter : m_filters)
    stamp = std::max(stamp, filter->getTimeStamp());
  return stamp;
}

template <std::size_t N>
bool KbCombinedFilter<N>::accepts(const KbIndex<N>& cell) const {
  const auto accept = [&cell](const Filter* filter) { return ask(*filter, cell); };
  switch (m_rule) {
  case KbFilterRule::ALL_OF:
    return std::all_of(m_filters.begin(), m_filters.end(), accept);
  case KbFilterRule::ANY_OF:
    return std::any_of(m_filters.begin(), m_filters.end(), accept);
  case KbFilterRule::NONE_OF:
    break;
  }
  return std::none_of(m_filters.begin(), m_filters.end(), accept);
}

template class KbValueRangeFilter<1>;
template class KbValueRangeFilter<2>;
template class KbValueRangeFilter<3>;
template class KbIndexRangeFilter<1>;
template class KbIndexRangeFilter<2>;
template class KbIndexRangeFilter<3>;
template class KbCellListFilter<1>;
template class KbCellListFilter<2>;
template class KbCellListFilter<3>;
template class KbCombinedFilter<1>;
template class KbCombinedFilter<2>;
template class KbCombinedFilter<3>;
