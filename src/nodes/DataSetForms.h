// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiDataSetIjk.h>

namespace kx {

/// Whether a set has one of the forms I, Ij and Ijk.
template <class T>
bool hasKnownForm(const KiTypedDataSet<T>* set) {
  return dynamic_cast<const KiDataSetI<T>*>(set) || dynamic_cast<const KiDataSetIj<T>*>(set) ||
         dynamic_cast<const KiDataSetIjk<T>*>(set);
}

} // namespace kx
