// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCell.h>

/// A volume cell.
///
/// Corner order, for cells that are not inverted ("up" is the right-hand normal of the first face):
/// - TETRAHEDRON 0 1 2 below, 3 above;
/// - PYRAMID base 0 1 2 3, apex 4 above;
/// - WEDGE 0 1 2 below, 3 4 5 above them in the same order;
/// - HEXAHEDRON 0 1 2 3 below, 4 5 6 7 above them in the same order.
///
/// Quadratic forms list the corners first and then one node in the middle of each edge, in the order
/// - tetrahedron 01 12 20 03 13 23;
/// - pyramid 01 12 23 30 04 14 24 34;
/// - wedge 01 12 20 34 45 53 03 14 25;
/// - hexahedron 01 12 23 30 45 56 67 74 04 15 26 37.
///
/// A polyhedron tells its faces by `getFacet`. Extractors accept inverted cells: orientation of what they yield comes
/// from the geometry.
class KERRIN_EXTRACTOR_API KiVolumeCell : public virtual KiCell {
public:
  enum Shape {
    TETRAHEDRON = 0,
    PYRAMID = 1,
    WEDGE = 2,
    HEXAHEDRON = 3,
    QUADRATIC_TETRAHEDRON = 4,
    QUADRATIC_PYRAMID = 5,
    QUADRATIC_WEDGE = 6,
    QUADRATIC_HEXAHEDRON = 7,
    POLYHEDRON = 8
  };

  /// By default told from the number of nodes: 4, 5, 6, 8 and 10, 13, 15, 20; a polyhedron for any other number.
  virtual Shape getShape() const;
  /// Number of faces; by default that of the shape (0 for a polyhedron, which must override it).
  virtual std::size_t getNumFacets() const;
  /// Local indices of a face's corners, in order around it, counter-clockwise seen from outside.
  virtual void getFacet(std::size_t facet, std::vector<std::size_t>& localIndices) const;

  void getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const override;
  KbVec3<double> getIsoParametricCoord(std::size_t localIndex) const override;
  bool isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                         std::vector<double>& weights) const override;
};
