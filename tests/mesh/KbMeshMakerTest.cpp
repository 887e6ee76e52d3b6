// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using namespace meshtest;
using Arrays = KbMeshMaker::Arrays;

struct Maker {
  const char* name;
  Arrays (*make)(const KbIndex<3>&, double, const KbMeshMaker::Field&);
  std::size_t cellsPerLatticeCell; ///< 0: mixed
};

class KbMeshMakerVolume : public testing::TestWithParam<Maker> {};

/// The faces of the linear shapes as local corners.
const std::vector<std::vector<std::vector<std::size_t>>> facesOfShape{
    {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}},
    {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}},
    {{0, 2, 1}, {3, 4, 5}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}},
    {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}};

TEST_P(KbMeshMakerVolume, FillsTheCubeWithoutGapsAndInversions) {
  const KbIndex<3> counts{4, 3, 5};
  const Arrays arrays = GetParam().make(counts, 0.0, KbMeshMaker::wave);
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const auto& topology = mesh.getTopology();
  if (GetParam().cellsPerLatticeCell != 0) {
    EXPECT_EQ(topology.getNumCells(), 60 * GetParam().cellsPerLatticeCell);
  }

  double volume = 0.0;
  std::map<std::vector<std::size_t>, int> uses;
  for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
    const KiVolumeCell& cell = *topology.getCell(c);
    const double own = cellVolume(cell, mesh.getGeometry());
    EXPECT_GT(own, 0.0) << "cell " << c;
    volume += own;
    for (const auto& face : facesOfShape[static_cast<std::size_t>(cell.getShape())]) {
      std::vector<std::size_t> nodes;
      for (const std::size_t local : face)
        nodes.push_back(cell.getNodeIndex(local));
      std::sort(nodes.begin(), nodes.end());
      ++uses[nodes];
    }
  }
  EXPECT_NEAR(volume, 1.0, 1e-6);

  // Conforming: a face belongs to two cells, or lies on the cube.
  for (const auto& [nodes, count] : uses) {
    EXPECT_LE(count, 2);
    if (count == 2) continue;
    bool onCube = false;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (const double side : {0.0, 1.0})
        onCube = onCube || std::all_of(nodes.begin(), nodes.end(), [&](std::size_t node) {
                   return mesh.getGeometry().getCoord(node)[axis] == side;
                 });
    }
    EXPECT_TRUE(onCube) << "a face inside belongs to one cell only";
  }
}

TEST_P(KbMeshMakerVolume, WarpMovesNodesAndValues) {
  const auto field = [](const Point& p) { return p[0] + 10.0 * p[1] + 100.0 * p[2]; };
  const Arrays arrays = GetParam().make({3, 3, 3}, 0.03, field);
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  ASSERT_EQ(arrays.values.size(), mesh.getGeometry().getNumNodes());
  for (std::size_t n = 0; n < arrays.values.size(); ++n)
    EXPECT_NEAR(arrays.values[n], field(mesh.getGeometry().getCoord(n)), 2e-5);
  // Node (1, 1, 1): u = v = w = 1/3.
  const double x = 1.0 / 3.0 + 0.03 * std::sqrt(0.75);
  EXPECT_NEAR(mesh.getGeometry().getCoord(1 + 4 + 16)[0], x, 1e-7);
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c)
    EXPECT_GT(cellVolume(*mesh.getTopology().getCell(c), mesh.getGeometry()), 0.0);
}

INSTANTIATE_TEST_SUITE_P(, KbMeshMakerVolume,
                         testing::Values(Maker{"Hexahedra", KbMeshMaker::hexahedra, 1},
                                         Maker{"Tetrahedra", KbMeshMaker::tetrahedra, 6},
                                         Maker{"Wedges", KbMeshMaker::wedges, 2},
                                         Maker{"Pyramids", KbMeshMaker::pyramids, 6},
                                         Maker{"Mixed", KbMeshMaker::mixed, 0}),
                         [](const auto& test) { return test.param.name; });

TEST(KbMeshMaker, MixedHasAllFourShapes) {
  const Arrays arrays = KbMeshMaker::mixed({4, 4, 4});
  for (const int shape :
       {KiVolumeCell::TETRAHEDRON, KiVolumeCell::PYRAMID, KiVolumeCell::WEDGE, KiVolumeCell::HEXAHEDRON})
    EXPECT_GT(std::count(arrays.shapes.begin(), arrays.shapes.end(), shape), 0) << shape;
}

TEST(KbMeshMaker, Surface) {
  const Arrays arrays = KbMeshMaker::quadrangles({3, 2}, [](const Point& p) { return p[2]; });
  const KbSurfaceMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  ASSERT_EQ(mesh.getTopology().getNumCells(), 6u);
  EXPECT_EQ(nodesOf(*mesh.getTopology().getCell(4)), (std::vector<std::size_t>{5, 6, 10, 9}));
  const Point p = mesh.getGeometry().getCoord(6);
  EXPECT_NEAR(p[2], 0.1 * std::sin(4.0) * std::cos(2.5), 1e-7);
  EXPECT_EQ(static_cast<double>(arrays.values[6]), p[2]);
}

TEST(KbMeshMaker, Fields) {
  EXPECT_NEAR(KbMeshMaker::wave({0.1, 0.2, 0.3}),
              std::sin(2.0) * std::cos(4.0) + std::sin(4.0) * std::cos(6.0) + std::sin(6.0) * std::cos(2.0), 1e-15);
  // At the origin: u = C, v = A, w = B.
  const Point flow = KbMeshMaker::abcFlow({0, 0, 0});
  EXPECT_DOUBLE_EQ(flow[0], 1.0);
  EXPECT_DOUBLE_EQ(flow[1], std::sqrt(3.0));
  EXPECT_DOUBLE_EQ(flow[2], std::sqrt(2.0));
}

} // namespace
