// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Nodes at equal steps between the corners `getMin()` and `getMax()`, which this class must give.
class KERRIN_EXTRACTOR_API KiGeometryRegular : public virtual KiGeometry {
public:
  KbVec3<double> getMin() const override = 0;
  KbVec3<double> getMax() const override = 0;
};
