// SPDX-License-Identifier: BSD-3-Clause
#include "ValueView.h"

#include "InputView.h"

namespace kx {
namespace {

/// The array-backed view where the set offers its array.
template <class T>
std::optional<SetView<T>> viewArray(const KiDataSet& set, unsigned slotBits, std::size_t count, bool& isTooShort) {
  const KiRawArray values = rawArrayOf(set, KiRawArrays::VALUES);
  if (values.type != KiRawArray::FLOAT32 && values.type != KiRawArray::FLOAT64) return std::nullopt;
  constexpr std::size_t components = std::is_same_v<T, double> ? 1 : 3;
  isTooShort = values.size < components * count;
  if (values.type == KiRawArray::FLOAT32)
    return SetView<T>(ArrayValues<float, T>{static_cast<const float*>(values.data), slotBits});
  return SetView<T>(ArrayValues<double, T>{static_cast<const double*>(values.data), slotBits});
}

std::string shortSet(const KiDataSet& set, std::size_t count) {
  return "the set \"" + set.getName() + "\" has fewer than the " + std::to_string(count) +
         " values that the mesh needs";
}

} // namespace

template <class T>
std::optional<SetView<T>> viewSet(const KiDataSetI<T>& set, std::size_t count, std::string& fault) {
  bool isTooShort = set.getSize() < count;
  std::optional<SetView<T>> view;
  if (!isTooShort) {
    view = viewArray<T>(set, 0, count, isTooShort);
    if (!view) view = SetView<T>(SetIValues<T>{&set});
  }
  if (!isTooShort) return view;
  fault = shortSet(set, count);
  return std::nullopt;
}

template <class T>
std::optional<SetView<T>> viewSet(const KiDataSetIjk<T>& set, const Dims& dims, unsigned slotBits, std::string& fault) {
  bool isTooShort = false;
  std::optional<SetView<T>> view = viewArray<T>(set, slotBits, dims.count(), isTooShort);
  if (isTooShort) {
    fault = shortSet(set, dims.count());
    return std::nullopt;
  }
  return view ? view : SetView<T>(SetIjkValues<T>{&set, dims, slotBits});
}

template std::optional<SetView<double>> viewSet(const KiDataSetI<double>&, std::size_t, std::string&);
template std::optional<SetView<KbVec3<double>>> viewSet(const KiDataSetI<KbVec3<double>>&, std::size_t, std::string&);
template std::optional<SetView<double>> viewSet(const KiDataSetIjk<double>&, const Dims&, unsigned, std::string&);
template std::optional<SetView<KbVec3<double>>> viewSet(const KiDataSetIjk<KbVec3<double>>&, const Dims&, unsigned,
                                                        std::string&);

} // namespace kx
