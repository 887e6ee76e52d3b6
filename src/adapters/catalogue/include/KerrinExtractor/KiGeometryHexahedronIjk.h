// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometry.h>

/// Eight corners for each cell (i, j, k); corners of neighbours may coincide or not (faults, gaps, pinched layers).
class KERRIN_EXTRACTOR_API KiGeometryHexahedronIjk : public virtual KiGeometry {
public:
  /// The eight corners of a cell in the order of `KiVolumeCell::HEXAHEDRON`. Corners that touch a neighbour's must be
  /// bit-equal to it: extractors match faces by comparing coordinates.
  virtual void getCellCorners(std::size_t i, std::size_t j, std::size_t k, KbVec3<double> corners[8]) const = 0;
};
