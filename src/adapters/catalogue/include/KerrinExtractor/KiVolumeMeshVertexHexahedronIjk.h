// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryHexahedronIjk.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiTopologyIjk.h>

/// Hexahedra addressed by (i, j, k), each with eight corners of its own (corner-point grids): no nodes are shared.
class KERRIN_EXTRACTOR_API KiVolumeMeshVertexHexahedronIjk : public virtual KiMeshIjk {
public:
  const KiTopologyIjk& getTopology() const override = 0;
  virtual const KiGeometryHexahedronIjk& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
