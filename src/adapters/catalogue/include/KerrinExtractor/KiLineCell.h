// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCell.h>

/// A segment: two nodes, or three for a quadratic one (end, end, middle).
class KERRIN_EXTRACTOR_API KiLineCell : public virtual KiCell {
public:
  enum Shape { LINE = 0, QUADRATIC_LINE = 1 };

  /// Appends the node ids of the two-node pieces, two a piece, from the first end to the last; returns how many pieces.
  virtual std::size_t getSubEdgeNodesIndex(std::vector<std::size_t>& edges) const;
  /// Number of two-node pieces: 1 for a two-node segment, 2 for a three-node one.
  virtual std::size_t getNumEdges() const;
  /// Maps a parameter in [0, 1] along the nodes to the parameter of the shape functions; the identity here.
  virtual double getParametricValue(double value) const;
  Shape getShape() const { return getNumNodes() == 3 ? QUADRATIC_LINE : LINE; }

  void getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const override;
  KbVec3<double> getIsoParametricCoord(std::size_t localIndex) const override;
  bool isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                         std::vector<double>& weights) const override;
};
