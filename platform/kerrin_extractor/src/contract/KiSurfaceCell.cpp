// SPDX-License-Identifier: BSD-3-Clause
// The defaults of cells in general, of surface cells and of line cells.
#include <KerrinExtractor/KiSurfaceCell.h>

#include "MeanValue.h"
#include "ShapeFunctions.h"

#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiLineCell.h>

#include <cmath>
#include <numbers>

KiCell::~KiCell() = default;

double KiCell::getRelativeSize(const KiGeometryI* geometry) const {
  const std::size_t n = getNumNodes();
  if (!geometry || n == 0) return 0.0;
  const KbVec3<double> centre = getCenter(*geometry);
  double sum = 0.0;
  for (std::size_t i = 0; i < n; ++i)
    sum += (geometry->getCoord(getNodeIndex(i)) - centre).length();
  return sum / static_cast<double>(n);
}

void KiCell::getWeight(const KbVec3<double>&, std::vector<double>& weights) const {
  const std::size_t n = getNumNodes();
  weights.assign(n, n > 0 ? 1.0 / static_cast<double>(n) : 0.0);
}

KbVec3<double> KiCell::getIsoParametricCoord(std::size_t) const { return KbVec3<double>(0.0); }

KbVec3<double> KiCell::getCenter(const KiGeometryI& geometry) const {
  const std::size_t n = getNumNodes();
  KbVec3<double> sum;
  for (std::size_t i = 0; i < n; ++i)
    sum += geometry.getCoord(getNodeIndex(i));
  return n > 0 ? sum / static_cast<double>(n) : sum;
}

bool KiCell::isPointInsideCell(const KiGeometryI&, const KbVec3<double>&, std::vector<double>&) const { return false; }

void KiCell::toStream(std::ostream& stream) const {
  stream << "# cell";
  for (std::size_t i = 0; i < getNumNodes(); ++i)
    stream << ' ' << getNodeIndex(i);
  stream << '\n';
}

std::ostream& operator<<(std::ostream& stream, const KiCell& cell) {
  cell.toStream(stream);
  return stream;
}

namespace {

kx::ReferenceShape referenceOf(KiSurfaceCell::Shape shape) {
  switch (shape) {
  case KiSurfaceCell::TRIANGLE:
    return kx::ReferenceShape::TRIANGLE;
  case KiSurfaceCell::QUADRATIC_TRIANGLE:
    return kx::ReferenceShape::QUADRATIC_TRIANGLE;
  case KiSurfaceCell::QUADRATIC_QUADRANGLE:
    return kx::ReferenceShape::QUADRATIC_QUADRANGLE;
  default:
    return kx::ReferenceShape::QUADRANGLE;
  }
}

kx::ReferenceShape referenceOf(KiLineCell::Shape shape) {
  return shape == KiLineCell::LINE ? kx::ReferenceShape::LINE : kx::ReferenceShape::QUADRATIC_LINE;
}

/// A polygon's own coordinates: its corners lie on the unit circle, at equal angles.
std::vector<KbVec3<double>> circle(std::size_t n) {
  std::vector<KbVec3<double>> corners(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double angle = 2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(n);
    corners[i] = {std::cos(angle), std::sin(angle), 0.0};
  }
  return corners;
}

void evaluate(kx::ReferenceShape shape, const KbVec3<double>& isoCoord, std::vector<double>& weights) {
  const kx::ShapeValues n = kx::evaluateShape(shape, isoCoord);
  weights.assign(n.value.begin(), n.value.begin() + static_cast<std::ptrdiff_t>(kx::numShapeNodes(shape)));
}

} // namespace

KiSurfaceCell::Shape KiSurfaceCell::getShape() const {
  switch (getNumNodes()) {
  case 3:
    return TRIANGLE;
  case 4:
    return QUADRANGLE;
  default:
    return POLYGON;
  }
}

void KiSurfaceCell::getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const {
  const Shape shape = getShape();
  if (shape == POLYGON)
    kx::polygonWeights(circle(getNumNodes()), isoCoord, weights);
  else
    evaluate(referenceOf(shape), isoCoord, weights);
}

KbVec3<double> KiSurfaceCell::getIsoParametricCoord(std::size_t localIndex) const {
  const Shape shape = getShape();
  if (localIndex >= getNumNodes()) return KbVec3<double>(0.0);
  return shape == POLYGON ? circle(getNumNodes())[localIndex] : kx::shapeNode(referenceOf(shape), localIndex);
}

bool KiSurfaceCell::isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                                      std::vector<double>& weights) const {
  const Shape shape = getShape();
  if (shape != POLYGON) {
    weights.resize(kx::numShapeNodes(referenceOf(shape)));
    if (kx::isPointInside(referenceOf(shape), *this, geometry, point, weights.data())) return true;
    if (shape != TRIANGLE && shape != QUADRANGLE) return false;
    // Off the bilinear surface, where the display's triangles may yet be, or rounded out of the border.
  }
  std::vector<KbVec3<double>> corners(getNumNodes());
  for (std::size_t i = 0; i < corners.size(); ++i)
    corners[i] = geometry.getCoord(getNodeIndex(i));
  return kx::weightsOnPolygon(corners, point, weights);
}

std::size_t KiLineCell::getSubEdgeNodesIndex(std::vector<std::size_t>& edges) const {
  if (getShape() == LINE)
    edges.insert(edges.end(), {getNodeIndex(0), getNodeIndex(1)});
  else
    edges.insert(edges.end(), {getNodeIndex(0), getNodeIndex(2), getNodeIndex(2), getNodeIndex(1)});
  return getNumEdges();
}

std::size_t KiLineCell::getNumEdges() const { return getShape() == LINE ? 1 : 2; }
double KiLineCell::getParametricValue(double value) const { return value; }

void KiLineCell::getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const {
  evaluate(referenceOf(getShape()), isoCoord, weights);
}

KbVec3<double> KiLineCell::getIsoParametricCoord(std::size_t localIndex) const {
  return localIndex < getNumNodes() ? kx::shapeNode(referenceOf(getShape()), localIndex) : KbVec3<double>(0.0);
}

bool KiLineCell::isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                                   std::vector<double>& weights) const {
  const kx::ReferenceShape shape = referenceOf(getShape());
  weights.resize(kx::numShapeNodes(shape));
  return kx::isPointInside(shape, *this, geometry, point, weights.data());
}
