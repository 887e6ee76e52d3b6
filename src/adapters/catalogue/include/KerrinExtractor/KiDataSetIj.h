// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiTypedDataSet.h>

/// Values addressed by (i, j), of the cells or of the nodes of a structured surface mesh.
template <class T>
class KiDataSetIj : public virtual KiTypedDataSet<T> {
public:
  virtual T get(std::size_t i, std::size_t j) const = 0;
  virtual KiMeshIjk::StorageLayout getStorageLayout() const { return KiMeshIjk::KJI_LAYOUT; }
};
