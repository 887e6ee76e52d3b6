// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryRegular.h>
#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// A rectangle of equal cells, parallel to the axes x and y; z is the same for all nodes.
class KERRIN_EXTRACTOR_API KiSurfaceMeshRegular : public virtual KiMeshIj {
public:
  const KiTopologyIj& getTopology() const override = 0;
  virtual const KiGeometryRegular& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
