// SPDX-License-Identifier: BSD-3-Clause
// The structured kinds: cells and nodes by hand, arrays in place, dead flags, changes, refusals.
#include "MeshTestTools.h"

#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <gtest/gtest.h>

#include <numeric>

namespace {

using namespace meshtest;

std::vector<float> countedCoordinates(std::size_t numNodes) {
  std::vector<float> coordinates(3 * numNodes);
  std::iota(coordinates.begin(), coordinates.end(), 0.0f);
  return coordinates;
}

TEST(KbMeshes, VolumeRegular) {
  const std::vector<std::uint8_t> dead{0, 0, 0, 0, 0, 1};
  KbVolumeMeshRegular mesh({1, 2, 3}, {0, 0, 0}, {1, 4, 9}, dead);
  const KiTopologyIjk& topology = mesh.getTopology();
  EXPECT_EQ(topology.getNumCellsI(), 1u);
  EXPECT_EQ(topology.getNumCellsJ(), 2u);
  EXPECT_EQ(topology.getNumCellsK(), 3u);
  EXPECT_TRUE(topology.hasDeadCells());
  EXPECT_TRUE(topology.isDead(0, 1, 2));
  EXPECT_FALSE(topology.isDead(0, 0, 2));
  EXPECT_EQ(mesh.getTopology().getRawArray(KiRawArrays::DEAD).data, dead.data());
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(1, 4, 9));

  const std::size_t before = mesh.getGeometry().getTimeStamp();
  EXPECT_TRUE(mesh.setBox({0, 0, 0}, {2, 2, 2}));
  EXPECT_GT(mesh.getGeometry().getTimeStamp(), before);
  const Messages messages;
  EXPECT_FALSE(mesh.setBox({0, 0, 0}, {2, 2, std::nan("")}));
  EXPECT_EQ(messages.only(), "KbVolumeMeshRegular::setBox: corners (0 0 0) and (2 2 nan) are not finite");
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(2, 2, 2));
}

TEST(KbMeshes, DeadFlagsOfAnotherNumber) {
  const std::vector<std::uint8_t> dead(5, 1);
  const Messages messages;
  const KbVolumeMeshRegular mesh({1, 2, 3}, {0, 0, 0}, {1, 4, 9}, dead);
  EXPECT_EQ(messages.only(), "KbVolumeMeshRegular::setDead: 5 dead flags for 6 cells");
  EXPECT_EQ(mesh.getTopology().getNumCellsK(), 0u);
  EXPECT_FALSE(mesh.getTopology().isDead(0, 0, 0));
}

TEST(KbMeshes, DeadFlagsChangedInPlace) {
  std::vector<std::uint8_t> dead(6, 0);
  KbSurfaceMeshRegular mesh({3, 2}, {0, 0, 1}, {3, 2, 1}, dead);
  EXPECT_FALSE(mesh.getTopology().hasDeadCells());
  EXPECT_FALSE(mesh.getTopology().getRawArray(KiRawArrays::DEAD));
  dead[4] = 1;
  const std::size_t before = mesh.getTopology().getTimeStamp();
  mesh.touchTopology();
  EXPECT_GT(mesh.getTopology().getTimeStamp(), before);
  EXPECT_TRUE(mesh.getTopology().isDead(1, 1));
  EXPECT_TRUE(mesh.getTopology().getRawArray(KiRawArrays::DEAD));
}

TEST(KbMeshes, SurfaceRegularLiesAcrossAnAxis) {
  const Messages messages;
  const KbSurfaceMeshRegular mesh({3, 2}, {0, 0, 1}, {3, 2, 4});
  EXPECT_EQ(messages.only(), "KbSurfaceMeshRegular::setBox: corners (0 0 1) and (3 2 4) differ along all axes");
  const KbSurfaceMeshRegular upright({3, 2}, {0, 0, 1}, {3, 0, 4});
  EXPECT_EQ(upright.getTopology().getNumCellsI(), 3u);
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 0u);
}

TEST(KbMeshes, LineRegular) {
  const std::vector<std::uint8_t> dead{0, 1, 0};
  const KbLineMeshRegular mesh({3}, {0, 0, 0}, {3, 6, 9}, dead);
  EXPECT_EQ(mesh.getTopology().getNumCells(), 3u);
  EXPECT_TRUE(mesh.getTopology().isDead(1));
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(3, 6, 9));
}

TEST(KbMeshes, VolumeRectilinear) {
  const std::vector<double> x{0, 1, 3};
  const std::vector<float> y{0, 2};
  const std::vector<double> z{5, 4, 2, 1};
  KbVolumeMeshRectilinear mesh(x, y, z);
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 2u);
  EXPECT_EQ(mesh.getTopology().getNumCellsJ(), 1u);
  EXPECT_EQ(mesh.getTopology().getNumCellsK(), 3u);
  EXPECT_EQ(mesh.getGeometry().getX(2), 3.0);
  EXPECT_EQ(mesh.getGeometry().getY(1), 2.0);
  EXPECT_EQ(mesh.getGeometry().getZ(3), 1.0);
  EXPECT_EQ(mesh.getGeometry().getMin(), Point(0, 0, 1));
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(3, 2, 5));

  const Messages messages;
  EXPECT_FALSE(mesh.setAxes(x, y, x));
  EXPECT_EQ(messages.only(),
            "KbVolumeMeshRectilinear::setAxes: 3, 2 and 3 positions don't suit the cells that the mesh has");
  EXPECT_EQ(mesh.getGeometry().getZ(3), 1.0);
}

TEST(KbMeshes, VolumeRectilinearWithoutPositions) {
  const std::vector<double> x{0, 1, 3};
  const Messages messages;
  const KbVolumeMeshRectilinear mesh(x, x, {});
  EXPECT_EQ(messages.only(),
            "KbVolumeMeshRectilinear::setAxes: each axis needs float or double positions, at least one; "
            "there are 3, 3 and 0");
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 0u);
  EXPECT_EQ(mesh.getGeometry().getX(0), 0.0);
}

TEST(KbMeshes, SurfaceRectilinear) {
  const std::vector<double> x{0, 1, 3};
  const std::vector<double> y{0, 2};
  KbSurfaceMeshRectilinear mesh(x, y, -4.0);
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 2u);
  EXPECT_EQ(mesh.getTopology().getNumCellsJ(), 1u);
  EXPECT_EQ(mesh.getGeometry().getDistance(), -4.0);
  EXPECT_EQ(mesh.getGeometry().getNormal(), Point(0, 0, 1));
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(3, 2, -4));
  EXPECT_TRUE(mesh.setAxes(x, y, 6.0));
  EXPECT_EQ(mesh.getGeometry().getMin(), Point(0, 0, 6));
}

TEST(KbMeshes, VolumeCurvilinear) {
  const std::vector<float> coordinates = countedCoordinates(2 * 3 * 4);
  KbVolumeMeshCurvilinear mesh({1, 2, 3}, coordinates);
  // Node (1, 2, 3) is the last one.
  EXPECT_EQ(mesh.getGeometry().getCoord(1, 2, 3), Point(69, 70, 71));
  EXPECT_EQ(mesh.getGeometry().getCoord(0, 1, 0), Point(6, 7, 8));
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(69, 70, 71));
  EXPECT_EQ(mesh.getGeometry().getRawArray(KiRawArrays::COORDINATES).data, coordinates.data());
  EXPECT_EQ(mesh.getGeometry().getRawArray(KiRawArrays::COORDINATES).type, KiRawArray::FLOAT32);

  const Messages messages;
  const KbVolumeMeshCurvilinear bad({2, 2, 3}, coordinates);
  EXPECT_EQ(messages.only(),
            "KbVolumeMeshCurvilinear::setCoordinates: 72 coordinate values instead of 3 for each of 36 nodes");
  EXPECT_EQ(bad.getTopology().getNumCellsI(), 0u);
}

TEST(KbMeshes, SurfaceAndLineCurvilinear) {
  const std::vector<float> coordinates = countedCoordinates(12);
  const KbSurfaceMeshCurvilinear surface({3, 2}, coordinates);
  EXPECT_EQ(surface.getTopology().getNumCellsJ(), 2u);
  EXPECT_EQ(surface.getGeometry().getCoord(1, 2), Point(27, 28, 29));
  const KbLineMeshCurvilinear line({11}, coordinates);
  EXPECT_EQ(line.getTopology().getNumCells(), 11u);
  EXPECT_EQ(line.getGeometry().getCoord(11), Point(33, 34, 35));
}

TEST(KbMeshes, CoordinatesOfIntegersAreRefused) {
  const std::vector<std::int32_t> integers(6, 0);
  const Messages messages;
  const KbLineMeshCurvilinear line({1}, integers);
  EXPECT_EQ(messages.only(), "KbLineMeshCurvilinear::setCoordinates: the coordinates are neither float nor double");
  EXPECT_EQ(line.getTopology().getNumCells(), 0u);
}

TEST(KbMeshes, VolumeHexahedronIjk) {
  // Two cells along i that share no nodes: a fault.
  const std::vector<float> coordinates = countedCoordinates(16);
  std::vector<std::int64_t> connectivity(16);
  std::iota(connectivity.begin(), connectivity.end(), 0);
  KbVolumeMeshHexahedronIjk mesh({2, 1, 1}, coordinates, connectivity);
  std::size_t nodes[8];
  mesh.getTopology().getCellNodeIds(1, 0, 0, nodes);
  EXPECT_EQ(nodes[0], 8u);
  EXPECT_EQ(nodes[7], 15u);
  EXPECT_EQ(mesh.getTopology().getEndNodeId(), 16u);
  EXPECT_EQ(mesh.getTopology().getRawArray(KiRawArrays::CONNECTIVITY).data, connectivity.data());
  EXPECT_EQ(mesh.getGeometry().getCoord(15), Point(45, 46, 47));

  connectivity[3] = 99;
  const Messages messages;
  mesh.touchTopology();
  EXPECT_EQ(messages.only(), "KbVolumeMeshHexahedronIjk::setCells: node index 99 with 16 nodes");
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 0u);
}

TEST(KbMeshes, PillarsWithoutCellsMakeAnEmptyMesh) {
  const Messages messages;
  const std::vector<float> coord(6, 0.0f);
  const std::vector<float> zcorn;
  const KbVolumeMeshVertexHexahedronIjk mesh({0, 0, 0}, coord, zcorn);
  EXPECT_EQ(mesh.getTopology().getNumCellsI(), 0u);
  EXPECT_TRUE(messages.all().empty());
}

TEST(KbMeshes, VolumeVertexHexahedronIjk) {
  // Two cells along i on six pillars; the middle ones lean, and the right cell is thrown down by 0.5.
  const std::vector<double> coord{0, 0, 0, 0, 0, 2, 1, 0, 0, 2, 0, 2, 4, 0, 0, 4, 0, 2,
                                  0, 1, 0, 0, 1, 2, 1, 1, 0, 2, 1, 2, 4, 1, 0, 4, 1, 2};
  const std::vector<float> zcorn{0, 0, 0.5f, 0.5f, 0, 0, 0.5f, 0.5f, 1, 1, 1.5f, 1.5f, 1, 1, 1.5f, 1.5f};
  KbVolumeMeshVertexHexahedronIjk mesh({2, 1, 1}, coord, zcorn);
  ASSERT_EQ(mesh.getTopology().getNumCellsI(), 2u);
  Point corners[8];
  mesh.getGeometry().getCellCorners(0, 0, 0, corners);
  EXPECT_EQ(corners[0], Point(0, 0, 0));
  EXPECT_EQ(corners[1], Point(1, 0, 0));
  EXPECT_EQ(corners[2], Point(1, 1, 0));
  EXPECT_EQ(corners[3], Point(0, 1, 0));
  EXPECT_EQ(corners[5], Point(1.5, 0, 1));
  mesh.getGeometry().getCellCorners(1, 0, 0, corners);
  EXPECT_EQ(corners[0], Point(1.25, 0, 0.5));
  EXPECT_EQ(corners[6], Point(4, 1, 1.5));
  EXPECT_EQ(corners[7], Point(1.75, 1, 1.5));
  EXPECT_EQ(mesh.getGeometry().getMin(), Point(0, 0, 0));
  EXPECT_EQ(mesh.getGeometry().getMax(), Point(4, 1, 1.5));
  mesh.getGeometry().getCellCorners(2, 0, 0, corners);
  EXPECT_TRUE(std::isnan(corners[0][0]));

  const Messages messages;
  const KbVolumeMeshVertexHexahedronIjk bad({2, 2, 1}, coord, zcorn);
  EXPECT_EQ(messages.only(),
            "KbVolumeMeshVertexHexahedronIjk::setPillars: coord must have 6 float or double numbers for "
            "each of 9 pillars and has 36; zcorn must have 8 for each of 4 cells and has 16");
  EXPECT_EQ(bad.getTopology().getNumCellsI(), 0u);
}

TEST(KbMeshes, VerticalPillarsGivenByOnePoint) {
  const std::vector<double> coord{0, 0, 5, 0, 0, 5, 1, 0, 5, 1, 0, 5, 0, 1, 5, 0, 1, 5, 1, 1, 5, 1, 1, 5};
  const std::vector<double> zcorn{0, 0, 0, 0, 1, 1, 1, 1};
  const KbVolumeMeshVertexHexahedronIjk mesh({1, 1, 1}, coord, zcorn);
  Point corners[8];
  mesh.getGeometry().getCellCorners(0, 0, 0, corners);
  EXPECT_EQ(corners[6], Point(1, 1, 1));
}

} // namespace
