// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSet.h>
#include <KerrinExtractor/KiDataSetI.h>

/// Values on the cells or nodes of an extracted unstructured mesh.
template <class T>
class KeXDataSetI : public virtual KeXDataSet<T>, public virtual KiDataSetI<T> {
public:
  KeXDataSetI<T>* getNewClone() const override = 0;
};
