// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KxTimeStamp.h>
#include <KerrinMesh/KbExport.h>
#include <KerrinMesh/KbForm.h>

/// Turns the three forms of `acceptCell` into one question, `Filter::accepts(index)`, without another virtual call.
template <class Filter, std::size_t N>
class KbFilterForm;

template <class Filter>
class KbFilterForm<Filter, 1> : public KiCellFilterI {
public:
  bool acceptCell(std::size_t i) const final { return static_cast<const Filter*>(this)->accepts({i}); }
};
template <class Filter>
class KbFilterForm<Filter, 2> : public KiCellFilterIj {
public:
  bool acceptCell(std::size_t i, std::size_t j) const final {
    return static_cast<const Filter*>(this)->accepts({i, j});
  }
};
template <class Filter>
class KbFilterForm<Filter, 3> : public KiCellFilterIjk {
public:
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const final {
    return static_cast<const Filter*>(this)->accepts({i, j, k});
  }
};

/// A filter with parameters of its own: each change of them takes a new stamp.
template <class Filter, std::size_t N>
class KbFilterBase : public KbFilterForm<Filter, N> {
public:
  std::size_t getTimeStamp() const override { return m_stamp; }

protected:
  KbFilterBase() { renewStamp(); }
  void renewStamp() { m_stamp = KxTimeStamp::getTimeStamp(); }

  std::size_t m_stamp;
};
