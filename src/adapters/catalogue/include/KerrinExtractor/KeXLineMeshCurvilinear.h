// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXGeometryExplicit.h>
#include <KerrinExtractor/KeXTopologyI.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>

/// An extracted line: its nodes in order. It belongs to its extractor, which rewrites it on its next call.
class KERRIN_EXTRACTOR_API KeXLineMeshCurvilinear : public KiLineMeshCurvilinear {
public:
  const KeXTopologyI& getTopology() const override = 0;
  const KeXGeometryExplicit& getGeometry() const override = 0;
};
