// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiDataSetIjk.h>

#include <array>
#include <cstddef>

/// Counts or indices along the axes: one for the form I, two for Ij, three for Ijk.
template <std::size_t N>
using KbIndex = std::array<std::size_t, N>;

/// The interfaces of the forms I, Ij and Ijk.
template <std::size_t N>
struct KbForm;

template <>
struct KbForm<1> {
  using CellFilter = KiCellFilterI;
  template <class T>
  using DataSet = KiDataSetI<T>;
};
template <>
struct KbForm<2> {
  using CellFilter = KiCellFilterIj;
  template <class T>
  using DataSet = KiDataSetIj<T>;
};
template <>
struct KbForm<3> {
  using CellFilter = KiCellFilterIjk;
  template <class T>
  using DataSet = KiDataSetIjk<T>;
};

/// The product of the counts; all bits set when it doesn't fit.
template <std::size_t N>
constexpr std::size_t KbProduct(const KbIndex<N>& counts) {
  std::size_t product = 1;
  for (const std::size_t count : counts) {
    if (count != 0 && product > static_cast<std::size_t>(-1) / count) return static_cast<std::size_t>(-1);
    product *= count;
  }
  return product;
}

/// The flat index, the first axis fastest.
template <std::size_t N>
constexpr std::size_t KbFlatIndex(const KbIndex<N>& counts, const KbIndex<N>& index) {
  std::size_t flat = 0;
  for (std::size_t axis = N; axis-- > 0;)
    flat = flat * counts[axis] + index[axis];
  return flat;
}
