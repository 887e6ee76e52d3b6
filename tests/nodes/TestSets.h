// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <string>
#include <vector>

/// What the sets of the tests have in common: a name, a binding and a stamp that the test may change.
template <class Base>
class TestSetBase : public Base {
public:
  DataBinding binding = DataBinding::PER_NODE;
  std::size_t stamp = KxTimeStamp::getTimeStamp();

  std::size_t getTimeStamp() const override { return stamp; }
  std::string getName() const override { return "test"; }
  DataBinding getBinding() const override { return binding; }
};

/// A scalar set of none of the forms.
class FormlessSet : public TestSetBase<KiTypedDataSet<double>> {
public:
  double getMin() const override { return 0.0; }
  double getMax() const override { return 0.0; }
};

template <class T>
class TestSetI : public TestSetBase<KiDataSetI<T>> {
public:
  explicit TestSetI(std::vector<T> content = {})
      : values(std::move(content)) {}
  std::vector<T> values;

  T getMin() const override { return T(); }
  T getMax() const override { return T(); }
  std::size_t getSize() const override { return values.size(); }
  T get(std::size_t i) const override { return values[i]; }
};

template <class T>
class TestSetIj : public TestSetBase<KiDataSetIj<T>> {
public:
  T getMin() const override { return T(); }
  T getMax() const override { return T(); }
  T get(std::size_t, std::size_t) const override { return T(); }
};

template <class T>
class TestSetIjk : public TestSetBase<KiDataSetIjk<T>> {
public:
  T getMin() const override { return T(); }
  T getMax() const override { return T(); }
  T get(std::size_t, std::size_t, std::size_t) const override { return T(); }
};
