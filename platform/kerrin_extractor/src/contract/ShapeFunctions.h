// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <array>
#include <cstddef>

class KiCell;
class KiGeometryI;

namespace kx {

/// Every cell shape that has a reference element. Reference coordinates (r, s, t) lie in the unit cube: lines r;
/// triangles r, s >= 0 with r + s <= 1; quadrangles the unit square; tetrahedra the unit corner; wedges triangle times
/// [0, 1]; hexahedra the cube. Pyramids use collapsed coordinates: (r, s) in the base square at any height t.
enum class ReferenceShape {
  LINE,
  QUADRATIC_LINE,
  TRIANGLE,
  QUADRANGLE,
  QUADRATIC_TRIANGLE,
  QUADRATIC_QUADRANGLE,
  TETRAHEDRON,
  PYRAMID,
  WEDGE,
  HEXAHEDRON,
  QUADRATIC_TETRAHEDRON,
  QUADRATIC_PYRAMID,
  QUADRATIC_WEDGE,
  QUADRATIC_HEXAHEDRON
};

constexpr std::size_t MAX_SHAPE_NODES = 20;

/// Values of the shape functions at a point and, in `d`, their derivatives along r, s and t.
struct ShapeValues {
  std::array<double, MAX_SHAPE_NODES> value{};
  std::array<KbVec3<double>, MAX_SHAPE_NODES> derivative{};
};

std::size_t numShapeNodes(ReferenceShape shape);
int shapeDimension(ReferenceShape shape);
/// Reference coordinates of a node.
KbVec3<double> shapeNode(ReferenceShape shape, std::size_t node);
/// Shape functions with derivatives: Lagrange and serendipity polynomials (Zienkiewicz and Taylor, The Finite Element
/// Method); the pyramid of 13 nodes is that of Bedrosian (1992).
ShapeValues evaluateShape(ReferenceShape shape, const KbVec3<double>& position);

/// The shape functions alone, one for each node of the shape.
void evaluateWeights(ReferenceShape shape, const KbVec3<double>& position, double* weights);

/// Finds the reference coordinates of a point by Newton's method (Gauss-Newton for lines and surfaces) from several
/// starts. True when the point lies in the cell; lines and surfaces also take points off by 1e-4 of the cell's size.
bool invertShape(ReferenceShape shape, const KbVec3<double>* nodes, const KbVec3<double>& point,
                 KbVec3<double>& position);

/// The shared part of `KiCell::isPointInsideCell` for shapes with a reference element: box test, inverse map, weights.
bool isPointInside(ReferenceShape shape, const KiCell& cell, const KiGeometryI& geometry, const KbVec3<double>& point,
                   double* weights);

} // namespace kx
