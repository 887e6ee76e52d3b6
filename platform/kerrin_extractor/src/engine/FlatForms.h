// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "InputView.h"

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiGeometryIj.h>

#include <type_traits>

namespace kx {

// Objects of the forms Ij and Ijk as objects of the form I, i fastest, so that algorithms are written for one form.
// Plain arrays of the source shine through.

/// Calls `f` with two or three indices, whichever it takes.
template <class F>
auto callSplit(const Dims& dims, std::size_t flat, const F& f) {
  const auto [i, j, k] = dims.split(flat);
  if constexpr (std::is_invocable_v<F, std::size_t, std::size_t>)
    return f(i, j);
  else
    return f(i, j, k);
}

/// A set of the form Ij (`Source` is `KiDataSetIj<T>`) or Ijk.
template <class T, class Source>
class FlatSet final : public KiDataSetI<T>, public KiRawArrays {
public:
  FlatSet(const Source& source, const Dims& dims)
      : m_source(source)
      , m_dims(dims) {}

  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  std::string getName() const override { return m_source.getName(); }
  DataBinding getBinding() const override { return m_source.getBinding(); }
  T getMin() const override { return m_source.getMin(); }
  T getMax() const override { return m_source.getMax(); }
  std::size_t getSize() const override { return m_dims.count(); }
  T get(std::size_t index) const override {
    return callSplit(m_dims, index,
                     [this](auto... ijk) -> decltype(m_source.get(ijk...)) { return m_source.get(ijk...); });
  }
  KiRawArray getRawArray(Role role) const override { return rawArrayOf(m_source, role); }

private:
  const Source& m_source;
  Dims m_dims;
};

/// Nodes of the form Ij.
class FlatGeometryIj final : public KiGeometryI, public KiRawArrays {
public:
  FlatGeometryIj(const KiGeometryIj& source, std::size_t numNodesI)
      : m_source(source)
      , m_numI(numNodesI) {}

  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  KbVec3<double> getCoord(std::size_t node) const override { return m_source.getCoord(node % m_numI, node / m_numI); }
  KiRawArray getRawArray(Role role) const override { return rawArrayOf(m_source, role); }

private:
  const KiGeometryIj& m_source;
  std::size_t m_numI;
};

} // namespace kx
