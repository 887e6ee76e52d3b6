// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Node (i, j) lies at (`getX(i)`, `getY(j)`) in a plane: with the default normal (0, 0, 1) and distance d at
/// (x, y, d).
class KERRIN_EXTRACTOR_API KiSurfaceGeometryRectilinear : public virtual KiGeometry {
public:
  virtual double getX(std::size_t i) const = 0;
  virtual double getY(std::size_t j) const = 0;
  /// Unit normal of the plane; (0, 0, 1) by default.
  virtual KbVec3<double> getNormal() const;
  /// Distance of the plane from the origin along the normal; 0 by default.
  virtual double getDistance() const;
};
