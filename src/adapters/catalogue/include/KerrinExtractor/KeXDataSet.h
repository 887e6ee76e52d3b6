// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTypedDataSet.h>

/// Values that lie on an extracted mesh.
template <class T>
class KeXDataSet : public virtual KiTypedDataSet<T> {
public:
  virtual T getMean() const = 0;
  virtual T getStandardDeviation() const = 0;
  /// The values in memory, or null when they don't lie in one piece.
  virtual const T* getValues() const = 0;
  /// A copy that no extractor touches, with the same time stamp; owned by the caller.
  virtual KeXDataSet<T>* getNewClone() const = 0;
};
