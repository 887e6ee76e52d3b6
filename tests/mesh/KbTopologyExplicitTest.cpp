// SPDX-License-Identifier: BSD-3-Clause
#include "MeshTestTools.h"

#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace meshtest;
using Nodes = std::vector<std::size_t>;

/// The corners of the unit cube in the order of a hexahedron, and two points above it.
const std::vector<double> cube{0, 0, 0, 1, 0, 0, 1, 1, 0, 0,   1,   0, 0,   0,   1,
                               1, 0, 1, 1, 1, 1, 0, 1, 1, 0.5, 0.5, 2, 0.5, 0.5, 3};

TEST(KbTopologyExplicit, UniformCellsInPlace) {
  const std::vector<std::int32_t> connectivity{0, 1, 2, 6, 0, 3, 7, 6};
  const KbVolumeMeshUnstructured mesh(cube, {KiVolumeCell::TETRAHEDRON, connectivity});
  const auto& topology = mesh.getTopology();
  EXPECT_EQ(topology.getNumCells(), 2u);
  EXPECT_EQ(topology.getBeginNodeId(), 0u);
  EXPECT_EQ(topology.getEndNodeId(), 10u);
  EXPECT_EQ(nodesOf(*topology.getCell(1)), (Nodes{0, 3, 7, 6}));
  EXPECT_EQ(topology.getCell(1)->getShape(), KiVolumeCell::TETRAHEDRON);
  EXPECT_EQ(topology.getCell(2), nullptr);

  EXPECT_EQ(topology.getRawArray(KiRawArrays::CONNECTIVITY).data, connectivity.data());
  EXPECT_EQ(topology.getRawArray(KiRawArrays::CONNECTIVITY).type, KiRawArray::INT32);
  EXPECT_FALSE(topology.getRawArray(KiRawArrays::OFFSETS));
  const KiRawArray shapes = topology.getRawArray(KiRawArrays::SHAPES);
  ASSERT_EQ(shapes.size, 1u);
  EXPECT_EQ(*static_cast<const std::uint8_t*>(shapes.data), KiVolumeCell::TETRAHEDRON);
  EXPECT_FALSE(topology.getRawArray(KiRawArrays::DEAD));
  EXPECT_EQ(mesh.getGeometry().getRawArray(KiRawArrays::COORDINATES).data, cube.data());
}

TEST(KbTopologyExplicit, MixedCellsOf64Bits) {
  const std::vector<std::int64_t> connectivity{0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 8};
  const std::vector<std::int64_t> offsets{0, 8, 13};
  const std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON, KiVolumeCell::PYRAMID};
  const std::vector<std::uint8_t> dead{0, 1};
  const KbVolumeMeshUnstructured mesh(cube, {shapes, connectivity, offsets}, dead);
  const auto& topology = mesh.getTopology();
  ASSERT_EQ(topology.getNumCells(), 2u);
  EXPECT_EQ(topology.getCell(0)->getShape(), KiVolumeCell::HEXAHEDRON);
  EXPECT_DOUBLE_EQ(cellVolume(*topology.getCell(0), mesh.getGeometry()), 1.0);
  EXPECT_EQ(nodesOf(*topology.getCell(1)), (Nodes{4, 5, 6, 7, 8}));
  EXPECT_NEAR(cellVolume(*topology.getCell(1), mesh.getGeometry()), 1.0 / 3.0, 1e-15);
  EXPECT_TRUE(topology.hasDeadCells());
  EXPECT_FALSE(topology.isDead(0));
  EXPECT_TRUE(topology.isDead(1));
  EXPECT_EQ(topology.getRawArray(KiRawArrays::OFFSETS).data, offsets.data());
  EXPECT_EQ(topology.getRawArray(KiRawArrays::SHAPES).data, shapes.data());
  EXPECT_EQ(topology.getRawArray(KiRawArrays::DEAD).data, dead.data());
}

TEST(KbTopologyExplicit, PolyhedronTellsItsFaces) {
  const std::vector<std::int32_t> connectivity{4, 5, 6, 7, 8};
  const std::vector<std::int32_t> offsets{0, 5};
  const std::vector<std::int32_t> faces{5, 4, 7, 6, 5, 4, 3, 4, 5, 8, 3, 5, 6, 8, 3, 6, 7, 8, 3, 7, 4, 8};
  const std::vector<std::int32_t> faceOffsets{0, 22};
  const KbVolumeMeshUnstructured mesh(
      cube, KbCells(KiVolumeCell::POLYHEDRON, connectivity, offsets).setFaces(faces, faceOffsets));
  ASSERT_EQ(mesh.getTopology().getNumCells(), 1u);
  const KiVolumeCell& cell = *mesh.getTopology().getCell(0);
  EXPECT_EQ(cell.getShape(), KiVolumeCell::POLYHEDRON);
  ASSERT_EQ(cell.getNumFacets(), 5u);
  Nodes local;
  cell.getFacet(0, local);
  EXPECT_EQ(local, (Nodes{3, 2, 1, 0}));
  cell.getFacet(4, local);
  EXPECT_EQ(local, (Nodes{3, 0, 4}));
}

TEST(KbTopologyExplicit, QuadraticCellsKeepTheirShape) {
  std::vector<float> coordinates(3 * 20, 0.0f);
  std::vector<std::int32_t> connectivity(20);
  for (int n = 0; n < 20; ++n)
    connectivity[static_cast<std::size_t>(n)] = 19 - n;
  const KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::QUADRATIC_HEXAHEDRON, connectivity});
  ASSERT_EQ(mesh.getTopology().getNumCells(), 1u);
  EXPECT_EQ(mesh.getTopology().getCell(0)->getShape(), KiVolumeCell::QUADRATIC_HEXAHEDRON);
  EXPECT_EQ(mesh.getTopology().getCell(0)->getNodeIndex(0), 19u);

  // Six nodes are a quadratic triangle here, and a polygon there: the array says which.
  const std::vector<std::int32_t> six{0, 1, 2, 3, 4, 5};
  const std::vector<std::int32_t> offsets{0, 6};
  const KbSurfaceMeshUnstructured triangle(coordinates, {KiSurfaceCell::QUADRATIC_TRIANGLE, six});
  const KbSurfaceMeshUnstructured polygon(coordinates, {KiSurfaceCell::POLYGON, six, offsets});
  EXPECT_EQ(triangle.getTopology().getCell(0)->getShape(), KiSurfaceCell::QUADRATIC_TRIANGLE);
  EXPECT_EQ(polygon.getTopology().getCell(0)->getShape(), KiSurfaceCell::POLYGON);
  const KbLineMeshUnstructured line(coordinates, {KiLineCell::QUADRATIC_LINE, six});
  ASSERT_EQ(line.getTopology().getNumCells(), 2u);
  EXPECT_EQ(line.getTopology().getCell(1)->getShape(), KiLineCell::QUADRATIC_LINE);
  EXPECT_EQ(nodesOf(*line.getTopology().getCell(1)), (Nodes{3, 4, 5}));
}

TEST(KbTopologyExplicit, EachThreadHasItsView) {
  std::vector<std::int32_t> connectivity;
  for (std::int32_t c = 0; c < 1000; ++c)
    connectivity.insert(connectivity.end(), {c, c + 1, c + 2, c + 3});
  const std::vector<float> coordinates(3 * 1003, 0.0f);
  const KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::TETRAHEDRON, connectivity});
  ASSERT_EQ(mesh.getTopology().getNumCells(), 1000u);
  std::atomic<int> wrong{0};
  const auto walk = [&mesh, &wrong](std::size_t first) {
    for (std::size_t n = 0; n < 20000; ++n) {
      const std::size_t c = (first + n) % 1000;
      const KiVolumeCell* cell = mesh.getTopology().getCell(c);
      if (cell->getNodeIndex(0) != c || cell->getNodeIndex(3) != c + 3) ++wrong;
    }
  };
  std::thread other(walk, 500);
  walk(0);
  other.join();
  EXPECT_EQ(wrong, 0);
}

TEST(KbTopologyExplicit, ChangesTakeNewStamps) {
  std::vector<std::int32_t> connectivity{0, 1, 2, 6};
  std::vector<std::uint8_t> dead{0};
  KbVolumeMeshUnstructured mesh(cube, {KiVolumeCell::TETRAHEDRON, connectivity}, dead);
  const std::size_t cellsBefore = mesh.getTopology().getTimeStamp();
  const std::size_t nodesBefore = mesh.getGeometry().getTimeStamp();
  EXPECT_FALSE(mesh.getTopology().hasDeadCells());

  dead[0] = 1;
  mesh.touchTopology();
  EXPECT_GT(mesh.getTopology().getTimeStamp(), cellsBefore);
  EXPECT_EQ(mesh.getGeometry().getTimeStamp(), nodesBefore);
  EXPECT_TRUE(mesh.getTopology().isDead(0));

  std::vector<double> moved = cube;
  moved[0] = -7.0;
  EXPECT_DOUBLE_EQ(mesh.getGeometry().getMin()[0], 0.0);
  EXPECT_TRUE(mesh.setCoordinates(moved));
  EXPECT_GT(mesh.getGeometry().getTimeStamp(), nodesBefore);
  EXPECT_DOUBLE_EQ(mesh.getGeometry().getMin()[0], -7.0);
  moved[0] = -8.0;
  mesh.touchGeometry();
  EXPECT_DOUBLE_EQ(mesh.getGeometry().getMin()[0], -8.0);

  EXPECT_TRUE(mesh.setDead({}));
  EXPECT_FALSE(mesh.getTopology().hasDeadCells());

  const Messages messages;
  const std::vector<float> tooFew(3, 0.0f);
  EXPECT_FALSE(mesh.setCoordinates(tooFew));
  EXPECT_EQ(messages.only(),
            "KbVolumeMeshUnstructured::setCoordinates: 3 coordinate values instead of 3 for each of 10 nodes");
  EXPECT_EQ(mesh.getGeometry().getNumNodes(), 10u);
}

TEST(KbTopologyExplicit, CellsThatTurnBadInPlaceAreRefused) {
  std::vector<std::int32_t> connectivity{0, 1, 2, 6};
  KbVolumeMeshUnstructured mesh(cube, {KiVolumeCell::TETRAHEDRON, connectivity});
  connectivity[2] = 10;
  const Messages messages;
  mesh.touchTopology();
  EXPECT_EQ(messages.only(), "KbVolumeMeshUnstructured::setCells: node index 10 with 10 nodes");
  EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
  EXPECT_FALSE(mesh.getTopology().getRawArray(KiRawArrays::CONNECTIVITY));
}

struct BadCells {
  const char* name;
  KbCells cells;
  const char* message;
};

class KbTopologyExplicitBad : public testing::TestWithParam<BadCells> {};

TEST_P(KbTopologyExplicitBad, OneMessageAndNoCells) {
  const Messages messages;
  const KbVolumeMeshUnstructured mesh(cube, GetParam().cells);
  EXPECT_EQ(messages.only(), std::string("KbVolumeMeshUnstructured::setCells: ") + GetParam().message);
  EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
  EXPECT_EQ(mesh.getTopology().getCell(0), nullptr);
  EXPECT_FALSE(mesh.getTopology().getRawArray(KiRawArrays::SHAPES));
  EXPECT_EQ(mesh.getGeometry().getNumNodes(), 10u);
}

const std::vector<std::int32_t> tooHigh{0, 1, 2, 10};
const std::vector<std::int64_t> negative{0, -1, 2, 3};
const std::vector<std::int32_t> five{0, 1, 2, 3, 4};
const std::vector<float> noIndices{0, 1, 2, 3};
const std::vector<std::int32_t> falling{0, 5, 4};
const std::vector<std::int32_t> pastEnd{0, 4, 9};
const std::vector<std::int32_t> oneCell{0, 5};
const std::vector<std::uint8_t> tetrahedron{KiVolumeCell::TETRAHEDRON};
const std::vector<std::uint8_t> unknownShape{9};
const std::vector<std::uint8_t> twoShapes{KiVolumeCell::PYRAMID, KiVolumeCell::PYRAMID};
const std::vector<std::int32_t> foreignFace{1, 3, 0, 1, 7};
const std::vector<std::int32_t> shortFaces{2, 3, 0, 1, 2};
const std::vector<std::int32_t> longFace{1, 9, 0, 1, 2};

INSTANTIATE_TEST_SUITE_P(
    , KbTopologyExplicitBad,
    testing::Values(
        BadCells{"TooHigh", {KiVolumeCell::TETRAHEDRON, tooHigh}, "node index 10 with 10 nodes"},
        BadCells{"Negative", {KiVolumeCell::TETRAHEDRON, negative}, "node index -1 is below 0"},
        BadCells{"NoMultiple", {KiVolumeCell::TETRAHEDRON, five}, "5 node indices are no multiple of 4"},
        BadCells{"NoIndices",
                 {KiVolumeCell::TETRAHEDRON, noIndices},
                 "the node indices are no 32- or 64-bit signed integers"},
        BadCells{"UnknownShape", {12, five}, "shape 12 is unknown"},
        BadCells{"UnknownShapeOfCell", {unknownShape, five, oneCell}, "shape 9 of cell 0 is unknown"},
        BadCells{"NoOffsets", {KiVolumeCell::POLYHEDRON, five}, "cells of shape 8 need offsets"},
        BadCells{"NoOffsetsForShapes", {tetrahedron, five, {}}, "cells of several shapes need offsets"},
        BadCells{"FallingOffsets", {twoShapes, five, falling}, "offsets must grow from 0 to 5: entry 2 is 4"},
        BadCells{"OffsetsPastEnd", {twoShapes, five, pastEnd}, "offsets must grow from 0 to 5: entry 2 is 9"},
        BadCells{"ShapeCount", {twoShapes, five, oneCell}, "2 shapes for 1 cells"},
        BadCells{"WrongSize", {tetrahedron, five, oneCell}, "5 nodes in cell 0 of shape 0"},
        BadCells{"NoFaces", {KiVolumeCell::POLYHEDRON, five, oneCell}, "0 face offsets for 1 cells with polyhedra"},
        BadCells{"ForeignFace", KbCells(KiVolumeCell::POLYHEDRON, five, oneCell).setFaces(foreignFace, oneCell),
                 "the faces of polyhedron 0 use node 7, which is none of its nodes"},
        BadCells{"ShortFaces", KbCells(KiVolumeCell::POLYHEDRON, five, oneCell).setFaces(shortFaces, oneCell),
                 "the faces of polyhedron 0 end too early"},
        BadCells{"LongFace", KbCells(KiVolumeCell::POLYHEDRON, five, oneCell).setFaces(longFace, oneCell),
                 "the faces of polyhedron 0 don't fill their range: a face of 9 nodes"}),
    [](const auto& test) { return test.param.name; });

TEST(KbTopologyExplicit, BadCoordinatesAndFlags) {
  const std::vector<std::int32_t> connectivity{0, 1, 2, 6};
  const std::vector<double> ragged{0, 0, 0, 1};
  {
    const Messages messages;
    const KbVolumeMeshUnstructured mesh(ragged, {KiVolumeCell::TETRAHEDRON, connectivity});
    EXPECT_EQ(messages.only(),
              "KbVolumeMeshUnstructured::setCoordinates: 4 coordinate values instead of 3 for each of 1 nodes");
    EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
    EXPECT_TRUE(std::isnan(mesh.getGeometry().getCoord(0)[0]));
  }
  const Messages messages;
  const std::vector<std::uint8_t> dead(3, 0);
  const KbVolumeMeshUnstructured mesh(cube, {KiVolumeCell::TETRAHEDRON, connectivity}, dead);
  EXPECT_EQ(messages.only(), "KbVolumeMeshUnstructured::setDead: 3 dead flags for 1 cells");
  EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
}

} // namespace
