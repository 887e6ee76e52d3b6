// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryIjk.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiTopologyIjk.h>

/// A structured grid of hexahedra with an explicit position for each node (i, j, k).
class KERRIN_EXTRACTOR_API KiVolumeMeshCurvilinear : public virtual KiMeshIjk {
public:
  const KiTopologyIjk& getTopology() const override = 0;
  virtual const KiGeometryIjk& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
