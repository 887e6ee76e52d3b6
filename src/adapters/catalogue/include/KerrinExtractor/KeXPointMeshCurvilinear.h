// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXGeometryExplicit.h>
#include <KerrinExtractor/KeXTopologyI.h>
#include <KerrinExtractor/KiMesh.h>

/// An extracted set of points: nodes, and for each of them the input cell that it came from.
class KERRIN_EXTRACTOR_API KeXPointMeshCurvilinear : public virtual KiMesh {
public:
  virtual const KeXTopologyI& getTopology() const = 0;
  virtual const KeXGeometryExplicit& getGeometry() const = 0;
};
