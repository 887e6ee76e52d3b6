// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryRegular.h>
#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// A rectangle of equal cells in a plane across one of the axes: the one along which the box of its geometry has the
/// least extent, which is taken as 0. Index i runs along the first of the other two axes, j along the second.
class KERRIN_EXTRACTOR_API KiSurfaceMeshRegular : public virtual KiMeshIj {
public:
  const KiTopologyIj& getTopology() const override = 0;
  virtual const KiGeometryRegular& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
