// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCell.h>

/// A face: its nodes in order around it, counter-clockwise seen from the side that its normal points to.
///
/// Quadratic forms list the corners first and then the mid-edge nodes: the node between the corners 0 and 1, between
/// 1 and 2, and so on.
class KERRIN_EXTRACTOR_API KiSurfaceCell : public virtual KiCell {
public:
  enum Shape { TRIANGLE = 0, QUADRANGLE = 1, POLYGON = 2, QUADRATIC_TRIANGLE = 3, QUADRATIC_QUADRANGLE = 4 };

  /// By default told from the number of nodes: 3, 4, and a (possibly concave) polygon for any other number.
  virtual Shape getShape() const;

  void getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const override;
  KbVec3<double> getIsoParametricCoord(std::size_t localIndex) const override;
  bool isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                         std::vector<double>& weights) const override;
};
