// SPDX-License-Identifier: BSD-3-Clause
#include "ShapeFunctions.h"

#include <KerrinExtractor/KiCell.h>
#include <KerrinExtractor/KiGeometryI.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kx {
namespace {

/// A value with its derivatives along r, s and t: the formulas below are written once and differentiate themselves.
struct Dual {
  double v = 0.0;
  KbVec3<double> d;

  Dual() = default;
  Dual(double value)
      : v(value) {} // NOLINT(google-explicit-constructor): numbers are constants
  Dual(double value, const KbVec3<double>& derivative)
      : v(value)
      , d(derivative) {}
};

Dual operator+(const Dual& a, const Dual& b) { return {a.v + b.v, a.d + b.d}; }
Dual operator-(const Dual& a, const Dual& b) { return {a.v - b.v, a.d - b.d}; }
Dual operator*(const Dual& a, const Dual& b) { return {a.v * b.v, a.d * b.v + b.d * a.v}; }

struct Shape {
  int dimension;
  std::size_t numNodes;
  std::array<KbVec3<double>, MAX_SHAPE_NODES> nodes;
};

constexpr double H = 0.5;

/// In the order of `ReferenceShape`.
const std::array<Shape, 14> SHAPES{{
    {1, 2, {{{0, 0, 0}, {1, 0, 0}}}},
    {1, 3, {{{0, 0, 0}, {1, 0, 0}, {H, 0, 0}}}},
    {2, 3, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}},
    {2, 4, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}},
    {2, 6, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {H, 0, 0}, {H, H, 0}, {0, H, 0}}}},
    {2, 8, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {H, 0, 0}, {1, H, 0}, {H, 1, 0}, {0, H, 0}}}},
    {3, 4, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {3, 5, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {H, H, 1}}}},
    {3, 6, {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}}},
    {3, 8, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}}},
    {3,
     10,
     {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {H, 0, 0}, {H, H, 0}, {0, H, 0}, {0, 0, H}, {H, 0, H}, {0, H, H}}}},
    {3,
     13,
     {{{0, 0, 0},
       {1, 0, 0},
       {1, 1, 0},
       {0, 1, 0},
       {H, H, 1},
       {H, 0, 0},
       {1, H, 0},
       {H, 1, 0},
       {0, H, 0},
       {0, 0, H},
       {1, 0, H},
       {1, 1, H},
       {0, 1, H}}}},
    {3,
     15,
     {{{0, 0, 0},
       {1, 0, 0},
       {0, 1, 0},
       {0, 0, 1},
       {1, 0, 1},
       {0, 1, 1},
       {H, 0, 0},
       {H, H, 0},
       {0, H, 0},
       {H, 0, 1},
       {H, H, 1},
       {0, H, 1},
       {0, 0, H},
       {1, 0, H},
       {0, 1, H}}}},
    {3, 20, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1},
              {0, 1, 1}, {H, 0, 0}, {1, H, 0}, {H, 1, 0}, {0, H, 0}, {H, 0, 1}, {1, H, 1},
              {H, 1, 1}, {0, H, 1}, {0, 0, H}, {1, 0, H}, {1, 1, H}, {0, 1, H}}}},
}};

const Shape& shapeOf(ReferenceShape shape) { return SHAPES[static_cast<std::size_t>(shape)]; }

/// `Number` is `Dual`, or `double` where the derivatives are not asked for.
template <class Number>
using Values = std::array<Number, MAX_SHAPE_NODES>;

/// Product form of the multilinear shapes: the corner's own side of each axis.
template <class Number>
Number corner(const KbVec3<double>& node, const Number* x, int dimension) {
  Number product(1.0);
  for (int axis = 0; axis < dimension; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    product = product * (node[a] > H ? x[a] : Number(1.0) - x[a]);
  }
  return product;
}

/// Serendipity functions of a square or cube with mid-edge nodes, in coordinates -1 .. 1.
template <class Number>
Number serendipity(const KbVec3<double>& node, const Number* x, int dimension) {
  Number product(1.0);
  Number sum(dimension == 3 ? -2.0 : -1.0);
  bool isCorner = true;
  for (int axis = 0; axis < dimension; ++axis) {
    const auto a = static_cast<std::size_t>(axis);
    const Number y = Number(2.0) * x[a] - Number(1.0);
    const double side = 2.0 * node[a] - 1.0;
    if (node[a] == H) {
      isCorner = false;
      product = product * (Number(1.0) - y * y);
    } else {
      product = product * (Number(1.0) + Number(side) * y) * Number(H);
      sum = sum + Number(side) * y;
    }
  }
  return isCorner ? product * sum : product;
}

template <class Number>
void quadraticSimplex(const Number* l, int numCorners, const std::pair<int, int>* edges, std::size_t numEdges,
                      Values<Number>& n) {
  const auto corners = static_cast<std::size_t>(numCorners);
  for (std::size_t i = 0; i < corners; ++i)
    n[i] = l[i] * (Number(2.0) * l[i] - Number(1.0));
  for (std::size_t e = 0; e < numEdges; ++e)
    n[corners + e] = Number(4.0) * l[edges[e].first] * l[edges[e].second];
}

template <class Number>
void quadraticPyramid(const Number* x, const Shape& shape, Values<Number>& n) {
  const Number& t = x[2];
  const Number u = Number(1.0) - t;
  const Number p = Number(2.0) * x[0] - Number(1.0);
  const Number q = Number(2.0) * x[1] - Number(1.0);
  for (std::size_t i = 0; i < 4; ++i) {
    const Number a = Number(2.0 * shape.nodes[i][0] - 1.0) * p;
    const Number b = Number(2.0 * shape.nodes[i][1] - 1.0) * q;
    const Number bilinear = (Number(1.0) + a) * (Number(1.0) + b);
    n[i] = Number(0.25) * u * bilinear * (u * (a + b) - Number(1.0));
    n[9 + i] = t * u * bilinear;
  }
  n[4] = t * (Number(2.0) * t - Number(1.0));
  const Number u2 = u * u * Number(H);
  n[5] = u2 * (Number(1.0) - p * p) * (Number(1.0) - q);
  n[6] = u2 * (Number(1.0) - q * q) * (Number(1.0) + p);
  n[7] = u2 * (Number(1.0) - p * p) * (Number(1.0) + q);
  n[8] = u2 * (Number(1.0) - q * q) * (Number(1.0) - p);
}

template <class Number>
void quadraticWedge(const Number* x, Values<Number>& n) {
  const std::array<Number, 3> l{Number(1.0) - x[0] - x[1], x[0], x[1]};
  const Number z = Number(2.0) * x[2] - Number(1.0);
  const Number bubble = Number(1.0) - z * z;
  for (std::size_t i = 0; i < 3; ++i) {
    const Number low = Number(1.0) - z;
    const Number high = Number(1.0) + z;
    const Number twice = Number(2.0) * l[i] - Number(1.0);
    n[i] = Number(H) * l[i] * (twice * low - bubble);
    n[3 + i] = Number(H) * l[i] * (twice * high - bubble);
    const Number edge = Number(2.0) * l[i] * l[(i + 1) % 3];
    n[6 + i] = edge * low;
    n[9 + i] = edge * high;
    n[12 + i] = l[i] * bubble;
  }
}

constexpr std::pair<int, int> TETRAHEDRON_EDGES[] = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};

template <class Number>
Values<Number> evaluate(ReferenceShape shape, const Number* x) {
  const Shape& s = shapeOf(shape);
  Values<Number> n{};
  const std::array<Number, 4> barycentric{Number(1.0) - x[0] - x[1] - (s.dimension == 3 ? x[2] : Number(0.0)), x[0],
                                          x[1], x[2]};
  switch (shape) {
  case ReferenceShape::LINE:
  case ReferenceShape::QUADRANGLE:
  case ReferenceShape::HEXAHEDRON:
    for (std::size_t i = 0; i < s.numNodes; ++i)
      n[i] = corner(s.nodes[i], x, s.dimension);
    break;
  case ReferenceShape::QUADRATIC_LINE:
    n[0] = (Number(1.0) - x[0]) * (Number(1.0) - Number(2.0) * x[0]);
    n[1] = x[0] * (Number(2.0) * x[0] - Number(1.0));
    n[2] = Number(4.0) * x[0] * (Number(1.0) - x[0]);
    break;
  case ReferenceShape::QUADRATIC_QUADRANGLE:
  case ReferenceShape::QUADRATIC_HEXAHEDRON:
    for (std::size_t i = 0; i < s.numNodes; ++i)
      n[i] = serendipity(s.nodes[i], x, s.dimension);
    break;
  case ReferenceShape::TRIANGLE:
  case ReferenceShape::TETRAHEDRON:
    std::copy_n(barycentric.begin(), s.numNodes, n.begin());
    break;
  case ReferenceShape::QUADRATIC_TRIANGLE:
    quadraticSimplex(barycentric.data(), 3, TETRAHEDRON_EDGES, 3, n);
    break;
  case ReferenceShape::QUADRATIC_TETRAHEDRON:
    quadraticSimplex(barycentric.data(), 4, TETRAHEDRON_EDGES, 6, n);
    break;
  case ReferenceShape::PYRAMID:
    for (std::size_t i = 0; i < 4; ++i)
      n[i] = corner(s.nodes[i], x, 2) * (Number(1.0) - x[2]);
    n[4] = x[2];
    break;
  case ReferenceShape::WEDGE: {
    const std::array<Number, 3> l{Number(1.0) - x[0] - x[1], x[0], x[1]};
    for (std::size_t i = 0; i < 6; ++i)
      n[i] = l[i % 3] * (i < 3 ? Number(1.0) - x[2] : x[2]);
    break;
  }
  case ReferenceShape::QUADRATIC_PYRAMID:
    quadraticPyramid(x, s, n);
    break;
  case ReferenceShape::QUADRATIC_WEDGE:
    quadraticWedge(x, n);
    break;
  }
  return n;
}

bool hasTriangleSection(ReferenceShape shape) {
  return shape == ReferenceShape::TRIANGLE || shape == ReferenceShape::QUADRATIC_TRIANGLE ||
         shape == ReferenceShape::WEDGE || shape == ReferenceShape::QUADRATIC_WEDGE;
}

bool isInReference(ReferenceShape shape, const KbVec3<double>& x) {
  const int dimension = shapeDimension(shape);
  const double eps = dimension == 1 ? 1e-4 : 1e-9; // positions picked at the end of a line are rounded
  for (int axis = 0; axis < dimension; ++axis) {
    const double c = x[static_cast<std::size_t>(axis)];
    if (!(c >= -eps && c <= 1.0 + eps)) return false;
  }
  if (hasTriangleSection(shape)) return x[0] + x[1] <= 1.0 + eps;
  if (shape == ReferenceShape::TETRAHEDRON || shape == ReferenceShape::QUADRATIC_TETRAHEDRON)
    return x[0] + x[1] + x[2] <= 1.0 + eps;
  return true;
}

/// Solves the normal equations of J step = residual for 1, 2 or 3 columns; false when J has lost its rank.
bool solveStep(const std::array<KbVec3<double>, 3>& columns, int dimension, const KbVec3<double>& residual,
               KbVec3<double>& step) {
  step = KbVec3<double>(0.0);
  if (dimension == 3) {
    const KbVec3<double> bc = columns[1].cross(columns[2]);
    const double det = columns[0].dot(bc);
    const double scale = columns[0].length() * columns[1].length() * columns[2].length();
    if (!(std::abs(det) > 1e-14 * scale)) return false;
    step = {residual.dot(bc) / det, columns[0].dot(residual.cross(columns[2])) / det,
            columns[0].dot(columns[1].cross(residual)) / det};
    return true;
  }
  const double aa = columns[0].squaredLength();
  if (dimension == 1) {
    if (!(aa > 0.0)) return false;
    step[0] = columns[0].dot(residual) / aa;
    return true;
  }
  const double bb = columns[1].squaredLength();
  const double ab = columns[0].dot(columns[1]);
  const double det = aa * bb - ab * ab;
  if (!(det > 1e-14 * aa * bb)) return false;
  const double ar = columns[0].dot(residual);
  const double br = columns[1].dot(residual);
  step[0] = (ar * bb - br * ab) / det;
  step[1] = (br * aa - ar * ab) / det;
  return true;
}

bool newton(ReferenceShape shape, const KbVec3<double>* nodes, const KbVec3<double>& point, double size,
            KbVec3<double>& x) {
  const std::size_t numNodes = numShapeNodes(shape);
  const int dimension = shapeDimension(shape);
  for (int iteration = 0; iteration < 50; ++iteration) {
    const ShapeValues n = evaluateShape(shape, x);
    KbVec3<double> image;
    std::array<KbVec3<double>, 3> columns{};
    for (std::size_t i = 0; i < numNodes; ++i) {
      image += nodes[i] * n.value[i];
      for (std::size_t axis = 0; axis < 3; ++axis)
        columns[axis] += nodes[i] * n.derivative[i][axis];
    }
    const KbVec3<double> residual = point - image;
    KbVec3<double> step;
    if (!solveStep(columns, dimension, residual, step)) {
      // Collapsed corners have no inverse there; the point may still be hit exactly.
      return residual.length() <= 1e-9 * size && isInReference(shape, x);
    }
    const double length = std::max({std::abs(step[0]), std::abs(step[1]), std::abs(step[2])});
    if (length > 1.0) step *= 1.0 / length;
    x += step;
    for (std::size_t axis = 0; axis < 3; ++axis)
      x[axis] = std::clamp(x[axis], -2.0, 3.0);
    if (length < 1e-12) {
      if (!isInReference(shape, x)) return false;
      return dimension == 3 ? residual.length() <= 1e-7 * size : residual.length() <= 1e-4 * size;
    }
  }
  return false;
}

} // namespace

std::size_t numShapeNodes(ReferenceShape shape) { return shapeOf(shape).numNodes; }
int shapeDimension(ReferenceShape shape) { return shapeOf(shape).dimension; }
KbVec3<double> shapeNode(ReferenceShape shape, std::size_t node) { return shapeOf(shape).nodes[node]; }

ShapeValues evaluateShape(ReferenceShape shape, const KbVec3<double>& position) {
  const std::array<Dual, 3> x{Dual{position[0], {1, 0, 0}}, Dual{position[1], {0, 1, 0}}, Dual{position[2], {0, 0, 1}}};
  const Values<Dual> n = evaluate(shape, x.data());
  ShapeValues result;
  for (std::size_t i = 0; i < MAX_SHAPE_NODES; ++i) {
    result.value[i] = n[i].v;
    result.derivative[i] = n[i].d;
  }
  return result;
}

void evaluateWeights(ReferenceShape shape, const KbVec3<double>& position, double* weights) {
  const std::array<double, 3> x{position[0], position[1], position[2]};
  const Values<double> n = evaluate(shape, x.data());
  std::copy_n(n.begin(), numShapeNodes(shape), weights);
}

bool invertShape(ReferenceShape shape, const KbVec3<double>* nodes, const KbVec3<double>& point,
                 KbVec3<double>& position) {
  const std::size_t numNodes = numShapeNodes(shape);
  KbVec3<double> low = nodes[0];
  KbVec3<double> high = nodes[0];
  KbVec3<double> centre;
  std::size_t nearest = 0;
  for (std::size_t i = 0; i < numNodes; ++i) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], nodes[i][axis]);
      high[axis] = std::max(high[axis], nodes[i][axis]);
    }
    centre += shapeNode(shape, i) / static_cast<double>(numNodes);
    if ((nodes[i] - point).squaredLength() < (nodes[nearest] - point).squaredLength()) nearest = i;
  }
  const double size = (high - low).length();
  // The starts: the centre, half way to the nearest node, then half way to every other node for badly warped cells.
  const auto halfWay = [&](std::size_t node) { return (centre + shapeNode(shape, node)) * 0.5; };
  position = centre;
  if (newton(shape, nodes, point, size, position)) return true;
  position = halfWay(nearest);
  if (newton(shape, nodes, point, size, position)) return true;
  const bool isAffine =
      shape == ReferenceShape::TETRAHEDRON || shape == ReferenceShape::TRIANGLE || shape == ReferenceShape::LINE;
  if (isAffine) return false;
  for (std::size_t i = 0; i < numNodes; ++i) {
    if (i == nearest) continue;
    position = halfWay(i);
    if (newton(shape, nodes, point, size, position)) return true;
  }
  return false;
}

bool isPointInside(ReferenceShape shape, const KiCell& cell, const KiGeometryI& geometry, const KbVec3<double>& point,
                   double* weights) {
  std::array<KbVec3<double>, MAX_SHAPE_NODES> nodes;
  const std::size_t numNodes = numShapeNodes(shape);
  if (cell.getNumNodes() != numNodes) return false;
  KbVec3<double> low(1e300);
  KbVec3<double> high(-1e300);
  for (std::size_t i = 0; i < numNodes; ++i) {
    nodes[i] = geometry.getCoord(cell.getNodeIndex(i));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], nodes[i][axis]);
      high[axis] = std::max(high[axis], nodes[i][axis]);
    }
  }
  // Curved cells may bulge out of the box of their nodes: a quarter of its diagonal covers every convex bulge.
  const bool isCurved = numNodes > 8 || shape == ReferenceShape::QUADRATIC_LINE ||
                        shape == ReferenceShape::QUADRATIC_TRIANGLE || shape == ReferenceShape::QUADRATIC_QUADRANGLE;
  const double margin = (high - low).length() * (isCurved ? 0.25 : 1e-4);
  for (std::size_t axis = 0; axis < 3; ++axis)
    if (!(point[axis] >= low[axis] - margin && point[axis] <= high[axis] + margin)) return false;
  KbVec3<double> position;
  if (!invertShape(shape, nodes.data(), point, position)) return false;
  if (shapeDimension(shape) == 1) position[0] = std::clamp(position[0], 0.0, 1.0);
  const ShapeValues n = evaluateShape(shape, position);
  std::copy_n(n.value.begin(), numNodes, weights);
  return true;
}

} // namespace kx
