// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Nodes addressed by (i, j).
class KERRIN_EXTRACTOR_API KiGeometryIj : public virtual KiGeometry {
public:
  virtual KbVec3<double> getCoord(std::size_t i, std::size_t j) const = 0;
};
