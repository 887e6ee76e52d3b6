// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Node (i, j, k) lies at (`getX(i)`, `getY(j)`, `getZ(k)`).
class KERRIN_EXTRACTOR_API KiVolumeGeometryRectilinear : public virtual KiGeometry {
public:
  virtual double getX(std::size_t i) const = 0;
  virtual double getY(std::size_t j) const = 0;
  virtual double getZ(std::size_t k) const = 0;
};
