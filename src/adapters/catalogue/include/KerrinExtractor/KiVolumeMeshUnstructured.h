// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshUnstructuredI.h>
#include <KerrinExtractor/KiVolumeTopologyExplicitI.h>

/// A volume mesh of explicit cells: tetrahedra, pyramids, wedges, hexahedra, their quadratic forms, and polyhedra.
class KERRIN_EXTRACTOR_API KiVolumeMeshUnstructured : public KiMeshUnstructuredI {
public:
  const KiVolumeTopologyExplicitI& getTopology() const override = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
