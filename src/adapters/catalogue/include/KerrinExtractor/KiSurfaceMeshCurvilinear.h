// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryIj.h>
#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// A structured surface of quadrangles with an explicit position for each node (i, j).
class KERRIN_EXTRACTOR_API KiSurfaceMeshCurvilinear : public virtual KiMeshIj {
public:
  const KiTopologyIj& getTopology() const override = 0;
  virtual const KiGeometryIj& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
