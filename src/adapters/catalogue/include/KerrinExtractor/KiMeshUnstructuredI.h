// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiMeshUnstructured.h>
#include <KerrinExtractor/KiTopologyExplicitI.h>

/// An unstructured mesh whose cells are addressed by one flat index too.
class KERRIN_EXTRACTOR_API KiMeshUnstructuredI : public virtual KiMeshUnstructured {
public:
  virtual const KiTopologyExplicitI& getTopology() const = 0;
};
