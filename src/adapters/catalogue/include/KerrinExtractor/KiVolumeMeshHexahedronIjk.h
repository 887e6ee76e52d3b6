// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiHexahedronTopologyExplicitIjk.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KiMeshUnstructured.h>

/// Hexahedra addressed by (i, j, k) with eight explicit node indices each, so that neighbours may be torn apart
/// (faults). Data per node are flat (I form), data per cell have the Ijk form.
class KERRIN_EXTRACTOR_API KiVolumeMeshHexahedronIjk : public virtual KiMeshUnstructured, public virtual KiMeshIjk {
public:
  const KiHexahedronTopologyExplicitIjk& getTopology() const override = 0;

protected:
  void toStream(std::ostream& stream) const override;
};
