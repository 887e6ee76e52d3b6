// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTypedDataSet.h>

/// Values addressed by one index in [0, `getSize()`).
template <class T>
class KiDataSetI : public virtual KiTypedDataSet<T> {
public:
  virtual std::size_t getSize() const = 0;
  virtual T get(std::size_t i) const = 0;
};
