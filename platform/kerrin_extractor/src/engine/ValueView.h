// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ImplicitFunction.h"
#include "PointView.h"

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>

#include <optional>
#include <string>
#include <variant>

namespace kx {

class MeshView;

// Each view below offers `prefetch(id)`, which brings a value nearer where that is known, and those of one number a
// node `raw(id)`, the number as it is stored.

/// Values in a plain array of `Scalar`, read as `T` (a number or a triple). `slotBits` are the low bits of an id that
/// tell positions only.
template <class Scalar, class T>
struct ArrayValues {
  const Scalar* data;
  unsigned slotBits;

  T operator()(std::size_t id) const {
    if constexpr (std::is_same_v<T, double>) {
      return static_cast<double>(data[id >> slotBits]);
    } else {
      const Scalar* p = data + 3 * (id >> slotBits);
      return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
    }
  }

  using Raw = Scalar;
  Scalar raw(std::size_t id) const { return data[id >> slotBits]; }
  void prefetch(std::size_t id) const {
    __builtin_prefetch(data + (std::is_same_v<T, double> ? 1 : 3) * (id >> slotBits));
  }
};

template <class T>
struct SetIValues {
  const KiDataSetI<T>* set;
  T operator()(std::size_t id) const { return set->get(id); }

  using Raw = T;
  T raw(std::size_t id) const { return set->get(id); }
  void prefetch(std::size_t) const {}
};

template <class T>
struct SetIjkValues {
  const KiDataSetIjk<T>* set;
  Dims dims;
  unsigned slotBits;

  T operator()(std::size_t id) const {
    const auto [i, j, k] = dims.split(id >> slotBits);
    return set->get(i, j, k);
  }

  using Raw = T;
  T raw(std::size_t id) const { return (*this)(id); }
  void prefetch(std::size_t) const {}
};

struct FunctionValues {
  const ImplicitFunction* function;
  const PointView* points;
  double operator()(std::size_t id) const { return (*function)((*points)[id]); }

  using Raw = double;
  double raw(std::size_t id) const { return (*this)(id); }
  void prefetch(std::size_t) const {}
};

/// A data set as it is read during one extraction, by flat index.
template <class T>
using SetView = std::variant<ArrayValues<float, T>, ArrayValues<double, T>, SetIValues<T>, SetIjkValues<T>>;

/// Values of the cells of a mesh with nodes by (i, j, k), averaged over the live, accepted cells around a node whenever
/// it is read; NaN where there are none.
struct GridAverages {
  const MeshView* mesh;
  SetView<double> cellValues;

  double operator()(std::size_t id) const;
  using Raw = double;
  double raw(std::size_t id) const { return (*this)(id); }
  void prefetch(std::size_t) const {}
  /// The averages at the nodes (begin, j, k), (begin + 1, j, k), ...
  void fill(std::size_t begin, std::size_t j, std::size_t k, std::size_t count, double* averages) const;
};

/// What a surface is cut from: one number at each node.
using ScalarField = std::variant<ArrayValues<float, double>, ArrayValues<double, double>, SetIValues<double>,
                                 SetIjkValues<double>, FunctionValues, GridAverages>;

/// Views `count` values of a set; nothing, and the reason in `fault`, when the set has fewer.
template <class T>
std::optional<SetView<T>> viewSet(const KiDataSetI<T>& set, std::size_t count, std::string& fault);
/// Views the values of a set in the form Ijk over `dims` cells or nodes.
template <class T>
std::optional<SetView<T>> viewSet(const KiDataSetIjk<T>& set, const Dims& dims, unsigned slotBits, std::string& fault);

inline ScalarField toField(const SetView<double>& view) {
  return std::visit([](const auto& values) { return ScalarField(values); }, view);
}

} // namespace kx
