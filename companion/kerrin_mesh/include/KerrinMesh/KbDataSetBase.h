// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSet.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinMesh/KbArray.h>
#include <KerrinMesh/KbExport.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbStampedCache.h>

#include <string>

/// How values of a data set lie in memory: numbers, x y z triples, or strings.
template <class T>
struct KbValues;

template <>
struct KbValues<double> {
  using Array = KbArray;
  static std::size_t count(const Array& array) { return array.size(); }
  static double at(const Array& array, std::size_t i) { return array.value(i); }
};
template <>
struct KbValues<KbVec3<double>> {
  using Array = KbArray;
  static std::size_t count(const Array& array) { return array.size() / 3; }
  static KbVec3<double> at(const Array& array, std::size_t i) { return array.triple(i); }
};
template <>
struct KbValues<std::string> {
  using Array = KbSpan<std::string>;
  static std::size_t count(const Array& array) { return array.size(); }
  static std::string at(const Array& array, std::size_t i) { return array[i]; }
};

/// What the sets of the forms I, Ij and Ijk have in common.
template <class T, std::size_t N>
class KERRIN_MESH_API KbDataSetBase : public KbForm<N>::template DataSet<T>, public KiRawArrays {
public:
  using Array = typename KbValues<T>::Array;

  std::size_t getTimeStamp() const override { return m_stamp; }
  std::string getName() const override { return m_name; }
  DataBinding getBinding() const override { return m_binding; }
  /// Least and greatest value, computed when first asked for after a change; NaN is left out, vectors are compared by
  /// length. NaN when there is no value at all. Empty strings for sets of strings.
  T getMin() const override { return range().min; }
  T getMax() const override { return range().max; }
  KiRawArray getRawArray(Role role) const override;
  /// Number of values along each axis.
  const KbIndex<N>& getCounts() const { return m_counts; }

  /// The caller has changed values in place.
  void touch();
  /// Other values for the same cells or nodes. False, with a message and without any change, when their number differs.
  bool setValues(const Array& values);

protected:
  KbDataSetBase(const std::string& name, DataBinding binding, const Array& values, const KbIndex<N>& counts);
  T at(const KbIndex<N>& index) const;

private:
  struct Range {
    T min{};
    T max{};
  };
  Range range() const;

  std::string m_name;
  DataBinding m_binding;
  Array m_values;
  KbIndex<N> m_counts;
  std::size_t m_stamp;
  KbStampedCache<Range> m_range;
};

// Marked again, for a template argument that is not exported itself would hide the instance.
extern template class KERRIN_MESH_API KbDataSetBase<double, 1>;
extern template class KERRIN_MESH_API KbDataSetBase<double, 2>;
extern template class KERRIN_MESH_API KbDataSetBase<double, 3>;
extern template class KERRIN_MESH_API KbDataSetBase<KbVec3<double>, 1>;
extern template class KERRIN_MESH_API KbDataSetBase<KbVec3<double>, 2>;
extern template class KERRIN_MESH_API KbDataSetBase<KbVec3<double>, 3>;
extern template class KERRIN_MESH_API KbDataSetBase<std::string, 1>;
extern template class KERRIN_MESH_API KbDataSetBase<std::string, 2>;
extern template class KERRIN_MESH_API KbDataSetBase<std::string, 3>;
