// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSet.h>
#include <KerrinExtractor/KiDataSetI.h>

/// Values on the cells or nodes of an extracted unstructured mesh.
template <class T>
class KeXDataSetI : public virtual KeXDataSet<T>, public virtual KiDataSetI<T> {
public:
  /// A copy that no extractor touches, with the same time stamp; owned by the caller.
  virtual KeXDataSetI<T>* getNewClone() const = 0;
};
