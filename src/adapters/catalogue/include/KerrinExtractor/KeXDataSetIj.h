// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSet.h>
#include <KerrinExtractor/KiDataSetIj.h>

/// Values on the cells or nodes of an extracted structured surface.
template <class T>
class KeXDataSetIj : public virtual KeXDataSet<T>, public virtual KiDataSetIj<T> {
public:
  KeXDataSetIj<T>* getNewClone() const override = 0;
};
