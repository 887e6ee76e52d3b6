// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbDataSetBase.h>

/// Values over the caller's memory: one for each cell or for each node of a mesh.
///
///     KbScalarSetI pressure("pressure", DataBinding::PER_NODE, values);
///     KbScalarSetIjk porosity("porosity", DataBinding::PER_CELL, values, {numI, numJ, numK});
///
/// The values are used in place: float or double for the fast path of the extractors; integers work too. Structured
/// sets hold the first axis fastest, with as many values along an axis as there are cells or nodes. When the number of
/// values is wrong, one message is posted through `KiMessage` and the set is empty. A value out of range is NaN.
template <class T, std::size_t N>
class KbDataSet;

template <class T>
class KbDataSet<T, 1> final : public KbDataSetBase<T, 1> {
public:
  using typename KbDataSetBase<T, 1>::Array;
  KbDataSet(const std::string& name, DataBinding binding, const Array& values)
      : KbDataSetBase<T, 1>(name, binding, values, {KbValues<T>::count(values)}) {}
  std::size_t getSize() const override { return this->getCounts()[0]; }
  T get(std::size_t i) const override { return this->at({i}); }
};

template <class T>
class KbDataSet<T, 2> final : public KbDataSetBase<T, 2> {
public:
  using typename KbDataSetBase<T, 2>::Array;
  KbDataSet(const std::string& name, DataBinding binding, const Array& values, const KbIndex<2>& counts)
      : KbDataSetBase<T, 2>(name, binding, values, counts) {}
  T get(std::size_t i, std::size_t j) const override { return this->at({i, j}); }
};

template <class T>
class KbDataSet<T, 3> final : public KbDataSetBase<T, 3> {
public:
  using typename KbDataSetBase<T, 3>::Array;
  KbDataSet(const std::string& name, DataBinding binding, const Array& values, const KbIndex<3>& counts)
      : KbDataSetBase<T, 3>(name, binding, values, counts) {}
  T get(std::size_t i, std::size_t j, std::size_t k) const override { return this->at({i, j, k}); }
};

using KbScalarSetI = KbDataSet<double, 1>;
using KbScalarSetIj = KbDataSet<double, 2>;
using KbScalarSetIjk = KbDataSet<double, 3>;
using KbVec3SetI = KbDataSet<KbVec3<double>, 1>;
using KbVec3SetIj = KbDataSet<KbVec3<double>, 2>;
using KbVec3SetIjk = KbDataSet<KbVec3<double>, 3>;
using KbStringSetI = KbDataSet<std::string, 1>;
using KbStringSetIj = KbDataSet<std::string, 2>;
using KbStringSetIjk = KbDataSet<std::string, 3>;
