// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSet.h>

/// A data set of double, `KbVec3<double>` or `std::string` values. NaN means "no value".
template <class T>
class KiTypedDataSet : public virtual KiDataSet {
public:
  /// Least and greatest value, NaN left out; vectors by length. Strings have no meaningful answer.
  virtual T getMin() const = 0;
  virtual T getMax() const = 0;
};
