// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMesh.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// A structured surface mesh: its cells are addressed by (i, j).
class KERRIN_EXTRACTOR_API KiMeshIj : public virtual KiMesh {
public:
  virtual const KiTopologyIj& getTopology() const = 0;
};
