// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineTopologyExplicitI.h>
#include <KerrinExtractor/KeXMeshUnstructured.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>

/// An extracted line mesh. It belongs to its extractor, which rewrites it on its next call.
class KERRIN_EXTRACTOR_API KeXLineMeshUnstructured : public KiLineMeshUnstructured, public virtual KeXMeshUnstructured {
public:
  const KeXLineTopologyExplicitI& getTopology() const override = 0;
  const KeXGeometryExplicit& getGeometry() const override = 0;
  /// A copy that no extractor touches, with the same time stamps; owned by the caller.
  virtual KeXLineMeshUnstructured* getNewClone() const = 0;
};
