// SPDX-License-Identifier: BSD-3-Clause
#include "CellForm.h"

#include "src/contract/CellFaces.h"

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

struct Edges {
  std::size_t count;
  std::array<std::array<std::uint8_t, 2>, 12> ends;
};

/// In the order of the nodes in their middles.
const Edges& edgesOf(ReferenceShape shape) {
  static const Edges LINE{1, {{{0, 1}}}};
  static const Edges TRIANGLE{3, {{{0, 1}, {1, 2}, {2, 0}}}};
  static const Edges QUADRANGLE{4, {{{0, 1}, {1, 2}, {2, 3}, {3, 0}}}};
  static const Edges TETRAHEDRON{6, {{{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}}}};
  static const Edges PYRAMID{8, {{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}}}};
  static const Edges WEDGE{9, {{{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}}}};
  static const Edges HEXAHEDRON{
      12, {{{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}}};
  switch (shape) {
  case ReferenceShape::LINE:
  case ReferenceShape::QUADRATIC_LINE:
    return LINE;
  case ReferenceShape::TRIANGLE:
  case ReferenceShape::QUADRATIC_TRIANGLE:
    return TRIANGLE;
  case ReferenceShape::QUADRANGLE:
  case ReferenceShape::QUADRATIC_QUADRANGLE:
    return QUADRANGLE;
  case ReferenceShape::TETRAHEDRON:
  case ReferenceShape::QUADRATIC_TETRAHEDRON:
    return TETRAHEDRON;
  case ReferenceShape::PYRAMID:
  case ReferenceShape::QUADRATIC_PYRAMID:
    return PYRAMID;
  case ReferenceShape::WEDGE:
  case ReferenceShape::QUADRATIC_WEDGE:
    return WEDGE;
  default:
    return HEXAHEDRON;
  }
}

bool isPyramid(ReferenceShape shape) {
  return shape == ReferenceShape::PYRAMID || shape == ReferenceShape::QUADRATIC_PYRAMID;
}

ReferenceShape quadraticOf(ReferenceShape shape) {
  switch (shape) {
  case ReferenceShape::LINE:
    return ReferenceShape::QUADRATIC_LINE;
  case ReferenceShape::TRIANGLE:
  case ReferenceShape::QUADRANGLE:
    return static_cast<ReferenceShape>(static_cast<int>(shape) + 2);
  case ReferenceShape::TETRAHEDRON:
  case ReferenceShape::PYRAMID:
  case ReferenceShape::WEDGE:
  case ReferenceShape::HEXAHEDRON:
    return static_cast<ReferenceShape>(static_cast<int>(shape) + 4);
  default:
    return shape;
  }
}

/// Copies the nodes of a volume cell, at most those of the largest shape; 0 for cells that have none to be read here.
template <class Index>
std::size_t copyNodes(const UniformCells<Index>& cells, std::size_t cell, std::size_t* nodes) {
  if (cells.code >= POLYHEDRON) return 0;
  const Index* p = cells.connectivity + cell * cells.stride;
  for (std::size_t i = 0; i < cells.stride; ++i)
    nodes[i] = static_cast<std::size_t>(p[i]);
  return cells.stride;
}
template <class Index>
std::size_t copyNodes(const MixedCells<Index>& cells, std::size_t cell, std::size_t* nodes) {
  const auto begin = static_cast<std::size_t>(cells.offsets[cell]);
  const auto end = static_cast<std::size_t>(cells.offsets[cell + 1]);
  if (begin > end || end > cells.connectivitySize) return 0;
  if (codeOf(cells.shapes[cell * cells.shapeStep], end - begin) >= POLYHEDRON) return 0;
  for (std::size_t i = begin; i < end; ++i)
    nodes[i - begin] = static_cast<std::size_t>(cells.connectivity[i]);
  return end - begin;
}
std::size_t copyNodes(const VirtualCells& cells, std::size_t cell, std::size_t* nodes) {
  const KiVolumeCell* c = cells.topology->getCell(cell);
  if (!c || codeOf(c->getShape(), c->getNumNodes()) >= POLYHEDRON) return 0;
  for (std::size_t i = 0; i < c->getNumNodes(); ++i)
    nodes[i] = c->getNodeIndex(i);
  return c->getNumNodes();
}
/// Structured cells are linear and not asked for.
template <class Cells>
std::size_t copyNodes(const Cells&, std::size_t, std::size_t*) {
  return 0;
}

bool isQuadraticShape(std::size_t shape) {
  return shape >= KiVolumeCell::QUADRATIC_TETRAHEDRON && shape <= KiVolumeCell::QUADRATIC_HEXAHEDRON;
}

template <class Index>
bool hasQuadratic(const UniformCells<Index>& cells, std::size_t) {
  return cells.code < POLYHEDRON && cells.stride != NUM_CORNERS[cells.code];
}
template <class Index>
bool hasQuadratic(const MixedCells<Index>& cells, std::size_t numCells) {
  const std::size_t numShapes = cells.shapeStep == 0 ? std::min<std::size_t>(numCells, 1) : numCells;
  return std::any_of(cells.shapes, cells.shapes + numShapes, isQuadraticShape);
}
bool hasQuadratic(const VirtualCells& cells, std::size_t numCells) {
  for (std::size_t c = 0; c < numCells; ++c)
    if (const KiVolumeCell* cell = cells.topology->getCell(c); cell && isQuadraticShape(cell->getShape())) return true;
  return false;
}
template <class Cells>
bool hasQuadratic(const Cells&, std::size_t) {
  return false;
}

bool isQuadraticFace(std::size_t shape) {
  return shape == KiSurfaceCell::QUADRATIC_TRIANGLE || shape == KiSurfaceCell::QUADRATIC_QUADRANGLE;
}

template <class Index>
bool hasQuadraticFace(const ArrayCellLists<Index>& cells, std::size_t numCells) {
  const std::size_t numShapes = cells.shapeStep == 0 ? std::min<std::size_t>(numCells, 1) : numCells;
  return std::any_of(cells.shapes, cells.shapes + numShapes, isQuadraticFace);
}
bool hasQuadraticFace(const VirtualSurfaceCells& cells, std::size_t numCells) {
  for (std::size_t c = 0; c < numCells; ++c)
    if (const KiSurfaceCell* cell = cells.topology->getCell(c); cell && isQuadraticFace(cell->getShape())) return true;
  return false;
}
template <class Cells>
bool hasQuadraticFace(const Cells&, std::size_t) {
  return false;
}

} // namespace

void CellForm::setFace(const std::size_t* ids, std::size_t corners, std::size_t numAll) {
  const ReferenceShape linear = corners == 2   ? ReferenceShape::LINE
                                : corners == 3 ? ReferenceShape::TRIANGLE
                                               : ReferenceShape::QUADRANGLE;
  shape = numAll > corners ? quadraticOf(linear) : linear;
  numCorners = corners;
  numNodes = numAll;
  std::copy_n(ids, numAll, nodes.begin());
}

bool CellForm::loadVolume(const MeshView& mesh, std::size_t cell) {
  numNodes = std::visit([&](const auto& cells) { return copyNodes(cells, cell, nodes.data()); }, mesh.cells);
  switch (numNodes) {
  case 4:
  case 10:
    shape = ReferenceShape::TETRAHEDRON;
    break;
  case 5:
  case 13:
    shape = ReferenceShape::PYRAMID;
    break;
  case 6:
  case 15:
    shape = ReferenceShape::WEDGE;
    break;
  case 8:
  case 20:
    shape = ReferenceShape::HEXAHEDRON;
    break;
  default:
    return false;
  }
  numCorners = numShapeNodes(shape);
  if (numNodes > numCorners) shape = quadraticOf(shape);
  return true;
}

void CellForm::join(const EdgeMiddles& middles) {
  if (isQuadratic()) return;
  const Edges& edges = edgesOf(shape);
  bool hasAny = false;
  for (std::size_t e = 0; e < edges.count; ++e) {
    nodes[numCorners + e] = middles.find(nodes[edges.ends[e][0]], nodes[edges.ends[e][1]]);
    hasAny |= nodes[numCorners + e] != EdgeMiddles::NONE;
  }
  if (!hasAny) return;
  shape = quadraticOf(shape);
  numNodes = numCorners + edges.count;
}

std::size_t CellForm::numFaces() const {
  const int code = (static_cast<int>(shape) - static_cast<int>(ReferenceShape::TETRAHEDRON)) % 4;
  return CELL_FACES[static_cast<std::size_t>(code)].numFaces;
}
std::size_t CellForm::numEdges() const { return edgesOf(shape).count; }
std::array<std::uint8_t, 2> CellForm::edge(std::size_t e) const { return edgesOf(shape).ends[e]; }

std::size_t CellForm::edgeBetween(std::size_t a, std::size_t b) const {
  const Edges& edges = edgesOf(shape);
  for (std::size_t e = 0; e + 1 < edges.count; ++e)
    if (edges.ends[e][0] + edges.ends[e][1] == a + b && (edges.ends[e][0] == a || edges.ends[e][0] == b)) return e;
  return edges.count - 1;
}

KbVec3<double> CellForm::position(std::size_t local) const {
  KbVec3<double> p = shapeNode(shape, local);
  if (isPyramid(shape))
    for (std::size_t axis = 0; axis < 2; ++axis)
      p[axis] = 0.5 + (p[axis] - 0.5) * (1.0 - p[2]);
  return p;
}

void CellForm::blendAt(const KbVec3<double>& at, Blend& blend) const {
  std::array<double, MAX_SHAPE_NODES> weights{};
  if (isPyramid(shape)) {
    const double height = 1.0 - at[2];
    KbVec3<double> collapsed(0.5, 0.5, at[2]);
    for (std::size_t axis = 0; axis < 2 && height > 0.0; ++axis)
      collapsed[axis] = 0.5 + (at[axis] - 0.5) / height;
    evaluateWeights(shape, collapsed, weights.data());
    // Their functions divide; on the faces the exact weights have few binary digits and are found again by rounding.
    constexpr double DIGITS = 0x1p36;
    for (double& w : weights)
      w = std::nearbyint(w * DIGITS) / DIGITS;
  } else {
    evaluateWeights(shape, at, weights.data());
  }
  if (isQuadratic()) {
    const Edges& edges = edgesOf(shape);
    for (std::size_t e = 0; e < edges.count; ++e) {
      if (nodes[numCorners + e] != EdgeMiddles::NONE) continue;
      const double half = 0.5 * weights[numCorners + e];
      weights[edges.ends[e][0]] += half;
      weights[edges.ends[e][1]] += half;
      weights[numCorners + e] = 0.0;
    }
  }
  blend.count = 0;
  for (std::size_t i = 0; i < numNodes; ++i) {
    if (weights[i] == 0.0) continue;
    std::size_t place = blend.count++;
    for (; place > 0 && blend.nodes[place - 1] > nodes[i]; --place) {
      blend.nodes[place] = blend.nodes[place - 1];
      blend.weights[place] = blend.weights[place - 1];
    }
    blend.nodes[place] = nodes[i];
    blend.weights[place] = weights[i];
  }
}

KbVec3<double> CellForm::nearPosition(const PointView& points, const KbVec3<double>& target,
                                      const KbVec3<double>& position) const {
  constexpr double STEP = 1e-5;
  Blend blend;
  const auto at = [&](const KbVec3<double>& x) {
    blendAt(x, blend);
    return blend.valueAt([&](std::size_t node) { return points[node]; });
  };
  KbVec3<double> x = position;
  KbVec3<double> residual = target - at(x);
  const double first = residual.squaredLength();
  for (int i = 0; i < 6 && residual.squaredLength() > 1e-20 * first; ++i) {
    std::array<KbVec3<double>, 3> columns;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      // Downwards in height, since a pyramid has nothing above its apex.
      KbVec3<double> moved = x;
      moved[axis] -= STEP;
      columns[axis] = (target - residual - at(moved)) / STEP;
    }
    const KbVec3<double> normal = columns[1].cross(columns[2]);
    const double volume = columns[0].dot(normal);
    if (volume == 0.0) break;
    x += KbVec3<double>(residual.dot(normal), columns[0].dot(residual.cross(columns[2])),
                        columns[0].dot(columns[1].cross(residual))) /
         volume;
    if (!((x - position).squaredLength() < 0.25)) return position;
    residual = target - at(x);
  }
  return residual.squaredLength() < first ? x : position;
}

bool hasQuadraticCells(const MeshView& mesh) {
  return std::visit([&](const auto& cells) { return hasQuadratic(cells, mesh.numCells); }, mesh.cells);
}

bool hasQuadraticCells(const FlatMesh& mesh) {
  return std::visit([&](const auto& cells) { return hasQuadraticFace(cells, mesh.numCells); }, mesh.cells);
}

} // namespace kx
