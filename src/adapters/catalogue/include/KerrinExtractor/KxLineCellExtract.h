// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiExport.h>

#include <vector>

class KiGeometryI;
class KiLineCell;

/// What line cells are asked when a point was picked.
class KERRIN_EXTRACTOR_API KxLineCellExtract {
public:
  /// Whether a point lies on a cell; if so, `weights` receives the shape-function values there.
  static bool isPointInsideCell(const KiGeometryI& geometry, const KiLineCell* cell, const KbVec3<double>& point,
                                std::vector<double>& weights);
};
