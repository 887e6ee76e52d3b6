// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KiVolumeCell.h>

#include "CellFaces.h"
#include "MeanValue.h"
#include "ShapeFunctions.h"

#include <KerrinExtractor/KiGeometryI.h>

namespace {

kx::ReferenceShape referenceOf(KiVolumeCell::Shape shape) {
  return static_cast<kx::ReferenceShape>(static_cast<int>(kx::ReferenceShape::TETRAHEDRON) + static_cast<int>(shape));
}

} // namespace

KiVolumeCell::Shape KiVolumeCell::getShape() const {
  switch (getNumNodes()) {
  case 4:
    return TETRAHEDRON;
  case 5:
    return PYRAMID;
  case 6:
    return WEDGE;
  case 8:
    return HEXAHEDRON;
  case 10:
    return QUADRATIC_TETRAHEDRON;
  case 13:
    return QUADRATIC_PYRAMID;
  case 15:
    return QUADRATIC_WEDGE;
  case 20:
    return QUADRATIC_HEXAHEDRON;
  default:
    return POLYHEDRON;
  }
}

std::size_t KiVolumeCell::getNumFacets() const {
  const Shape shape = getShape();
  return shape == POLYHEDRON ? 0 : kx::CELL_FACES[static_cast<std::size_t>(shape) % 4].numFaces;
}

void KiVolumeCell::getFacet(std::size_t facet, std::vector<std::size_t>& localIndices) const {
  localIndices.clear();
  const Shape shape = getShape();
  if (shape == POLYHEDRON) return;
  const kx::CellFaces& faces = kx::CELL_FACES[static_cast<std::size_t>(shape) % 4];
  if (facet >= faces.numFaces) return;
  const kx::CellFace& face = faces.faces[facet];
  localIndices.assign(face.corners.begin(), face.corners.begin() + face.numCorners);
}

// A polyhedron has no reference element: any position in its own coordinates stands for its centre.
void KiVolumeCell::getWeight(const KbVec3<double>& isoCoord, std::vector<double>& weights) const {
  const Shape shape = getShape();
  if (shape == POLYHEDRON) {
    KiCell::getWeight(isoCoord, weights);
    return;
  }
  const kx::ShapeValues n = kx::evaluateShape(referenceOf(shape), isoCoord);
  weights.assign(n.value.begin(), n.value.begin() + static_cast<std::ptrdiff_t>(getNumNodes()));
}

KbVec3<double> KiVolumeCell::getIsoParametricCoord(std::size_t localIndex) const {
  const Shape shape = getShape();
  if (shape == POLYHEDRON || localIndex >= getNumNodes()) return KbVec3<double>(0.5);
  return kx::shapeNode(referenceOf(shape), localIndex);
}

bool KiVolumeCell::isPointInsideCell(const KiGeometryI& geometry, const KbVec3<double>& point,
                                     std::vector<double>& weights) const {
  const Shape shape = getShape();
  if (shape != POLYHEDRON) {
    weights.resize(kx::numShapeNodes(referenceOf(shape)));
    return kx::isPointInside(referenceOf(shape), *this, geometry, point, weights.data());
  }
  std::vector<KbVec3<double>> nodes(getNumNodes());
  for (std::size_t i = 0; i < nodes.size(); ++i)
    nodes[i] = geometry.getCoord(getNodeIndex(i));
  kx::Facets facets(getNumFacets());
  for (std::size_t f = 0; f < facets.size(); ++f) {
    getFacet(f, facets[f]);
    for (const std::size_t local : facets[f])
      if (local >= nodes.size()) return false;
  }
  if (!kx::isInsidePolyhedron(facets, nodes, point)) return false;
  kx::polyhedronWeights(facets, nodes, point, weights);
  return true;
}
