// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinMesh/KbMeshMaker.h>

#include <KerrinExtractor/KiSurfaceCell.h>
#include <KerrinExtractor/KiVolumeCell.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace {

using Arrays = KbMeshMaker::Arrays;
using Corners = std::array<std::size_t, 8>;

/// The faces of a lattice cell as local corners, counter-clockwise seen from inside: bases of pyramids whose apex is
/// the middle of the cell.
constexpr std::size_t baseFaces[6][4] = {{0, 1, 2, 3}, {4, 7, 6, 5}, {0, 4, 5, 1},
                                         {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}};
constexpr std::size_t topFace = 1;

KbVec3<double> latticePoint(const KbIndex<3>& counts, double warp, double i, double j, double k) {
  const double u = i / static_cast<double>(counts[0]);
  const double v = j / static_cast<double>(counts[1]);
  const double w = k / static_cast<double>(counts[2]);
  const double turn = 2.0 * std::numbers::pi;
  return {u + warp * std::sin(turn * v), v + warp * std::sin(turn * w), w + warp * std::sin(turn * u)};
}

void addNode(Arrays& arrays, const KbVec3<double>& point, const KbMeshMaker::Field& field) {
  for (std::size_t axis = 0; axis < 3; ++axis)
    arrays.coordinates.push_back(static_cast<float>(point[axis]));
  arrays.values.push_back(static_cast<float>(field(point)));
}

void addNodes(Arrays& arrays, const Corners& corners, std::initializer_list<std::size_t> locals) {
  for (const std::size_t local : locals)
    arrays.connectivity.push_back(static_cast<std::int32_t>(corners[local]));
}

/// A cell of its own shape.
void addCell(Arrays& arrays, KiVolumeCell::Shape shape, const Corners& corners,
             std::initializer_list<std::size_t> locals) {
  if (arrays.offsets.empty()) arrays.offsets.push_back(0);
  addNodes(arrays, corners, locals);
  arrays.offsets.push_back(static_cast<std::int32_t>(arrays.connectivity.size()));
  arrays.shapes.push_back(static_cast<std::uint8_t>(shape));
}

/// Calls `visit(corners, i, j, k)` for each lattice cell, corners in the order of a hexahedron.
template <class Visit>
void forEachCell(const KbIndex<3>& counts, Visit visit) {
  const std::size_t stepJ = counts[0] + 1;
  const std::size_t stepK = stepJ * (counts[1] + 1);
  for (std::size_t k = 0; k < counts[2]; ++k) {
    for (std::size_t j = 0; j < counts[1]; ++j) {
      for (std::size_t i = 0; i < counts[0]; ++i) {
        const std::size_t a = i + j * stepJ + k * stepK;
        const std::size_t b = a + stepK;
        visit(Corners{a, a + 1, a + stepJ + 1, a + stepJ, b, b + 1, b + stepJ + 1, b + stepJ}, i, j, k);
      }
    }
  }
}

/// Adds the node in the middle of a lattice cell and returns its index.
std::size_t addCentre(Arrays& arrays, const KbIndex<3>& counts, double warp, const KbMeshMaker::Field& field,
                      const KbIndex<3>& cell) {
  const auto middle = [&cell](std::size_t axis) { return static_cast<double>(cell[axis]) + 0.5; };
  addNode(arrays, latticePoint(counts, warp, middle(0), middle(1), middle(2)), field);
  return arrays.values.size() - 1;
}

} // namespace

double KbMeshMaker::wave(const KbVec3<double>& p) {
  return std::sin(20.0 * p[0]) * std::cos(20.0 * p[1]) + std::sin(20.0 * p[1]) * std::cos(20.0 * p[2]) +
         std::sin(20.0 * p[2]) * std::cos(20.0 * p[0]);
}

KbVec3<double> KbMeshMaker::abcFlow(const KbVec3<double>& p) {
  const double turn = 2.0 * std::numbers::pi;
  const double a = std::sqrt(3.0);
  const double b = std::sqrt(2.0);
  return {a * std::sin(turn * p[2]) + std::cos(turn * p[1]), b * std::sin(turn * p[0]) + a * std::cos(turn * p[2]),
          std::sin(turn * p[1]) + b * std::cos(turn * p[0])};
}

Arrays KbMeshMaker::lattice(const KbIndex<3>& counts, double warp, const Field& field) {
  Arrays arrays;
  const std::size_t numNodes = (counts[0] + 1) * (counts[1] + 1) * (counts[2] + 1);
  arrays.coordinates.reserve(3 * numNodes);
  arrays.values.reserve(numNodes);
  for (std::size_t k = 0; k <= counts[2]; ++k) {
    for (std::size_t j = 0; j <= counts[1]; ++j) {
      for (std::size_t i = 0; i <= counts[0]; ++i)
        addNode(arrays,
                latticePoint(counts, warp, static_cast<double>(i), static_cast<double>(j), static_cast<double>(k)),
                field);
    }
  }
  return arrays;
}

namespace {

/// The cells of a lattice, each divided into cells of one shape, whose corners are told one after the other.
Arrays divide(KiVolumeCell::Shape shape, const KbIndex<3>& counts, double warp, const KbMeshMaker::Field& field,
              std::initializer_list<std::size_t> corners) {
  Arrays arrays = KbMeshMaker::lattice(counts, warp, field);
  arrays.shapes = {static_cast<std::uint8_t>(shape)};
  arrays.connectivity.reserve(corners.size() * KbProduct(counts));
  forEachCell(counts, [&](const Corners& c, std::size_t, std::size_t, std::size_t) { addNodes(arrays, c, corners); });
  return arrays;
}

} // namespace

Arrays KbMeshMaker::hexahedra(const KbIndex<3>& counts, double warp, const Field& field) {
  return divide(KiVolumeCell::HEXAHEDRON, counts, warp, field, {0, 1, 2, 3, 4, 5, 6, 7});
}

Arrays KbMeshMaker::tetrahedra(const KbIndex<3>& counts, double warp, const Field& field) {
  // From corner 0 to corner 6 one axis at a time: xyz, yzx, zxy, and xzy, zyx, yxz with the middle corners exchanged,
  // so that no cell is inverted.
  return divide(KiVolumeCell::TETRAHEDRON, counts, warp, field,
                {0, 1, 2, 6, 0, 3, 7, 6, 0, 4, 5, 6, 0, 5, 1, 6, 0, 7, 4, 6, 0, 2, 3, 6});
}

Arrays KbMeshMaker::wedges(const KbIndex<3>& counts, double warp, const Field& field) {
  return divide(KiVolumeCell::WEDGE, counts, warp, field, {0, 1, 2, 4, 5, 6, 0, 2, 3, 4, 6, 7});
}

Arrays KbMeshMaker::pyramids(const KbIndex<3>& counts, double warp, const Field& field) {
  Arrays arrays = lattice(counts, warp, field);
  arrays.shapes = {KiVolumeCell::PYRAMID};
  arrays.connectivity.reserve(30 * KbProduct(counts));
  forEachCell(counts, [&](const Corners& c, std::size_t i, std::size_t j, std::size_t k) {
    const auto centre = static_cast<std::int32_t>(addCentre(arrays, counts, warp, field, {i, j, k}));
    for (const auto& face : baseFaces) {
      addNodes(arrays, c, {face[0], face[1], face[2], face[3]});
      arrays.connectivity.push_back(centre);
    }
  });
  return arrays;
}

Arrays KbMeshMaker::mixed(const KbIndex<3>& counts, double warp, const Field& field) {
  Arrays arrays = lattice(counts, warp, field);
  forEachCell(counts, [&](const Corners& c, std::size_t i, std::size_t j, std::size_t k) {
    if ((i + j) % 3 == 0) {
      addCell(arrays, KiVolumeCell::WEDGE, c, {0, 1, 2, 4, 5, 6});
      addCell(arrays, KiVolumeCell::WEDGE, c, {0, 2, 3, 4, 6, 7});
      return;
    }
    if ((i + j + k) % 2 == 0) {
      addCell(arrays, KiVolumeCell::HEXAHEDRON, c, {0, 1, 2, 3, 4, 5, 6, 7});
      return;
    }
    const std::size_t centre = addCentre(arrays, counts, warp, field, {i, j, k});
    for (std::size_t f = 0; f < 6; ++f) {
      const Corners p{c[baseFaces[f][0]], c[baseFaces[f][1]], c[baseFaces[f][2]], c[baseFaces[f][3]], centre, 0, 0, 0};
      if (f == topFace && k + 1 == counts[2]) {
        addCell(arrays, KiVolumeCell::TETRAHEDRON, p, {0, 1, 2, 4});
        addCell(arrays, KiVolumeCell::TETRAHEDRON, p, {0, 2, 3, 4});
      } else {
        addCell(arrays, KiVolumeCell::PYRAMID, p, {0, 1, 2, 3, 4});
      }
    }
  });
  return arrays;
}

Arrays KbMeshMaker::surfaceLattice(const KbIndex<2>& counts, const Field& field) {
  Arrays arrays;
  for (std::size_t j = 0; j <= counts[1]; ++j) {
    for (std::size_t i = 0; i <= counts[0]; ++i) {
      const double x = static_cast<double>(i) / static_cast<double>(counts[0]);
      const double y = static_cast<double>(j) / static_cast<double>(counts[1]);
      addNode(arrays, {x, y, 0.1 * std::sin(6.0 * x) * std::cos(5.0 * y)}, field);
    }
  }
  return arrays;
}

Arrays KbMeshMaker::quadrangles(const KbIndex<2>& counts, const Field& field) {
  Arrays arrays = surfaceLattice(counts, field);
  arrays.shapes = {KiSurfaceCell::QUADRANGLE};
  const std::size_t stepJ = counts[0] + 1;
  for (std::size_t j = 0; j < counts[1]; ++j) {
    for (std::size_t i = 0; i < counts[0]; ++i) {
      const std::size_t a = i + j * stepJ;
      addNodes(arrays, {a, a + 1, a + stepJ + 1, a + stepJ, 0, 0, 0, 0}, {0, 1, 2, 3});
    }
  }
  return arrays;
}
