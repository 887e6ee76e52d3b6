// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXMeshUnstructured.h>
#include <KerrinExtractor/KeXSurfaceTopologyExplicitI.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>

/// An extracted surface mesh. It belongs to its extractor, which rewrites it on its next call.
class KERRIN_EXTRACTOR_API KeXSurfaceMeshUnstructured : public KiSurfaceMeshUnstructured,
                                                        public virtual KeXMeshUnstructured {
public:
  const KeXSurfaceTopologyExplicitI& getTopology() const override = 0;
  const KeXGeometryExplicit& getGeometry() const override = 0;
  /// A copy that no extractor touches, with the same time stamps; owned by the caller.
  virtual KeXSurfaceMeshUnstructured* getNewClone() const = 0;
};
