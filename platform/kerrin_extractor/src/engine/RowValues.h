// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ValueView.h"

namespace kx {

// Values of a structured grid by rows of nodes. A grid of values offers `row(j, k)`; a row offers `operator()(i,
// point)`, the value at a node of which the position is known too, and, where it is kept in no plain array, `fill`.

template <class T>
struct ArrayRow {
  const T* values;
  double operator()(std::size_t i, const KbVec3<double>&) const { return static_cast<double>(values[i]); }
};

template <class T>
struct ArrayGrid {
  const T* values;
  Dims nodes;
  ArrayRow<T> row(std::size_t j, std::size_t k) const { return {values + nodes.flat(0, j, k)}; }
};

struct SetRow {
  const KiDataSetIjk<double>* set;
  std::size_t j;
  std::size_t k;
  double operator()(std::size_t i, const KbVec3<double>&) const { return set->get(i, j, k); }
  void fill(std::size_t begin, std::size_t count, double* values) const {
    for (std::size_t n = 0; n < count; ++n)
      values[n] = set->get(begin + n, j, k);
  }
};

struct SetGrid {
  const KiDataSetIjk<double>* set;
  SetRow row(std::size_t j, std::size_t k) const { return {set, j, k}; }
};

struct AverageRow {
  const GridAverages* averages;
  std::size_t j;
  std::size_t k;
  double operator()(std::size_t i, const KbVec3<double>&) const {
    double value = 0.0;
    averages->fill(i, j, k, 1, &value);
    return value;
  }
  void fill(std::size_t begin, std::size_t count, double* values) const { averages->fill(begin, j, k, count, values); }
};

struct AverageGrid {
  const GridAverages* averages;
  AverageRow row(std::size_t j, std::size_t k) const { return {averages, j, k}; }
};

/// A function of space.
template <class Function>
struct FunctionGrid {
  const Function* function;
  double operator()(std::size_t, const KbVec3<double>& point) const { return (*function)(point); }
  const FunctionGrid& row(std::size_t, std::size_t) const { return *this; }
};

/// Calls `visit` with the values of a set; other fields have their own ways.
template <class Visit>
void withSetValues(const ScalarField& field, const Dims& nodes, Visit&& visit) {
  if (const auto* floats = std::get_if<ArrayValues<float, double>>(&field))
    visit(ArrayGrid<float>{floats->data, nodes});
  else if (const auto* doubles = std::get_if<ArrayValues<double, double>>(&field))
    visit(ArrayGrid<double>{doubles->data, nodes});
  else if (const auto* set = std::get_if<SetIjkValues<double>>(&field))
    visit(SetGrid{set->set});
  else if (const auto* averages = std::get_if<GridAverages>(&field))
    visit(AverageGrid{averages});
}

} // namespace kx
