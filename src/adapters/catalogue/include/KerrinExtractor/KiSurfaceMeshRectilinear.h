// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiSurfaceGeometryRectilinear.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// Rectangular cells in a plane with a spacing of its own along each axis.
class KERRIN_EXTRACTOR_API KiSurfaceMeshRectilinear : public virtual KiMeshIj {
public:
  const KiTopologyIj& getTopology() const override = 0;
  virtual const KiSurfaceGeometryRectilinear& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
