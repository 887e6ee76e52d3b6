// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopologyIjk.h>

/// Hexahedra addressed by (i, j, k) with explicit nodes.
class KERRIN_EXTRACTOR_API KiHexahedronTopologyExplicitIjk : public virtual KiTopologyIjk {
public:
  /// The eight node ids of a cell in the corner order of `KiVolumeCell::HEXAHEDRON`: (0,0,0) (1,0,0) (1,1,0) (0,1,0)
  /// and the same four at k + 1, as offsets along (i, j, k).
  virtual void getCellNodeIds(std::size_t i, std::size_t j, std::size_t k, std::size_t nodeIds[8]) const = 0;
  virtual std::size_t getEndNodeId() const = 0;
  virtual std::size_t getBeginNodeId() const;
};
