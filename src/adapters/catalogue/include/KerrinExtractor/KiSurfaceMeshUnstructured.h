// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshUnstructuredI.h>
#include <KerrinExtractor/KiSurfaceTopologyExplicitI.h>

/// A surface mesh of explicit cells: triangles, quadrangles, polygons and their quadratic forms.
class KERRIN_EXTRACTOR_API KiSurfaceMeshUnstructured : public KiMeshUnstructuredI {
public:
  const KiSurfaceTopologyExplicitI& getTopology() const override = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
