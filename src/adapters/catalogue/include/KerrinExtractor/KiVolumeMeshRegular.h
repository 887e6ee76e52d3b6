// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryRegular.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiTopologyIjk.h>

/// A box of equal cells, parallel to the axes.
class KERRIN_EXTRACTOR_API KiVolumeMeshRegular : public virtual KiMeshIjk {
public:
  const KiTopologyIjk& getTopology() const override = 0;
  virtual const KiGeometryRegular& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
