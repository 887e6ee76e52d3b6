// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryRegular.h>
#include <KerrinExtractor/KiMesh.h>
#include <KerrinExtractor/KiTopologyI.h>

/// Equal segments in a row between the two corners of the geometry.
class KERRIN_EXTRACTOR_API KiLineMeshRegular : public virtual KiMesh {
public:
  virtual const KiTopologyI& getTopology() const = 0;
  virtual const KiGeometryRegular& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
