// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiMesh.h>

/// A mesh whose nodes are addressed by one flat index.
class KERRIN_EXTRACTOR_API KiMeshUnstructured : public virtual KiMesh {
public:
  virtual const KiGeometryI& getGeometry() const = 0;
};
