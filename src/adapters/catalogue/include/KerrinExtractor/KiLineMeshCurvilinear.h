// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiMesh.h>
#include <KerrinExtractor/KiTopologyI.h>

/// Segments in a row with an explicit position for each node; cell i joins the nodes i and i + 1.
class KERRIN_EXTRACTOR_API KiLineMeshCurvilinear : public virtual KiMesh {
public:
  virtual const KiTopologyI& getTopology() const = 0;
  virtual const KiGeometryI& getGeometry() const = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
