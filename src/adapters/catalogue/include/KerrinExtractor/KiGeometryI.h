// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Nodes addressed by one index.
class KERRIN_EXTRACTOR_API KiGeometryI : public virtual KiGeometry {
public:
  virtual KbVec3<double> getCoord(std::size_t nodeId) const = 0;
};
