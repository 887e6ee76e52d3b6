// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiTopologyIjk.h>
#include <KerrinExtractor/KiVolumeGeometryRectilinear.h>

/// Cells parallel to the axes with a spacing of its own along each axis.
class KERRIN_EXTRACTOR_API KiVolumeMeshRectilinear : public virtual KiMeshIjk {
public:
  const KiTopologyIjk& getTopology() const override = 0;
  virtual const KiVolumeGeometryRectilinear& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
