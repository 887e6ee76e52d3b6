// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXGeometryExplicit.h>
#include <KerrinExtractor/KiMeshUnstructured.h>

/// Root of the unstructured meshes that extractors yield.
class KERRIN_EXTRACTOR_API KeXMeshUnstructured : public virtual KiMeshUnstructured {
public:
  const KeXGeometryExplicit& getGeometry() const override = 0;
};
