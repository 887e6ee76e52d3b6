// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>
#include <KerrinExtractor/KiMeshIjk.h>

/// Nodes addressed by (i, j, k).
class KERRIN_EXTRACTOR_API KiGeometryIjk : public virtual KiGeometry {
public:
  virtual KbVec3<double> getCoord(std::size_t i, std::size_t j, std::size_t k) const = 0;
  /// The order in which the nodes lie in memory; i fastest by default.
  virtual KiMeshIjk::StorageLayout getStorageLayout() const;
};
