// SPDX-License-Identifier: BSD-3-Clause
// Surface meshes as polygons, and raised surfaces.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KxSurfaceExtractFactory.h>
#include <KerrinMesh/KbIndexRangeFilter.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <limits>
#include <memory>

namespace {

using namespace pick;

template <class Mesh>
std::unique_ptr<KiSurfaceExtractIj> makeSurface(const Mesh& mesh, bool parallel = false) {
  return std::unique_ptr<KiSurfaceExtractIj>(KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr));
}

TEST(SurfaceExtractIj, GivesEveryKindAsPolygons) {
  const KbSurfaceMeshRegular regular({5, 4}, {0, 0, 2}, {1, 1, 2});
  const std::vector<float> x{0, 0.1f, 0.5f, 1};
  const KbSurfaceMeshRectilinear rectilinear(x, x, 3.0);
  const KbMeshMaker::Arrays a = KbMeshMaker::surfaceLattice({20, 10});
  const KbSurfaceMeshCurvilinear curvilinear({20, 10}, a.coordinates);
  const Surface r(makeSurface(regular)->extract(nullptr));
  EXPECT_EQ(r.polygons.size(), 20u);
  EXPECT_EQ(r.vertices.size(), 30u);
  EXPECT_NEAR(r.area(), 1.0, 1e-6);
  EXPECT_GT(r.vectorArea(0)[2], 0.0);
  EXPECT_EQ(r.vertices[0][2], 2.0);
  const Surface l(makeSurface(rectilinear)->extract(nullptr));
  EXPECT_EQ(l.polygons.size(), 9u);
  EXPECT_NEAR(l.area(), 1.0, 1e-6);
  EXPECT_EQ(l.vertices[0][2], 3.0);
  const Surface c(makeSurface(curvilinear)->extract(nullptr));
  EXPECT_EQ(c.polygons.size(), 200u);
  EXPECT_EQ(c.vertices.size(), 231u);
}

TEST(SurfaceExtractIj, RegularSurfacesLieAcrossAnyAxis) {
  for (std::size_t across = 0; across < 3; ++across) {
    Vec3 high(2.0, 3.0, 4.0);
    Vec3 low(1.0);
    low[across] = high[across] = 7.0;
    const KbSurfaceMeshRegular mesh({5, 4}, low, high);
    const Surface s(makeSurface(mesh)->extract(nullptr));
    ASSERT_EQ(s.polygons.size(), 20u);
    ASSERT_EQ(s.vertices.size(), 30u);
    EXPECT_NEAR(s.area(), across == 0 ? 6.0 : across == 1 ? 3.0 : 2.0, 1e-5);
    const std::size_t alongI = across == 0 ? 1 : 0;
    const Vec3 second = s.vertices[static_cast<std::size_t>(s.polygons[0][1])];
    EXPECT_NEAR(second[alongI] - low[alongI], (high[alongI] - low[alongI]) / 5.0, 1e-6); // the first cell's way along i
    for (const Vec3& v : s.vertices)
      EXPECT_EQ(v[across], 7.0);
  }
}

TEST(SurfaceExtractIj, LeavesOutDeadAndRefusedCellsAndMapsSets) {
  const std::vector<std::uint8_t> dead{0, 1, 0, 0, 0, 0};
  const KbSurfaceMeshRegular mesh({3, 2}, {0, 0, 0}, {3, 2, 0}, dead);
  const auto e = makeSurface(mesh);
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 5u);
  const KbIndexRangeFilterIj filter({0, 0}, {2, 2});
  const KeXSurfaceMeshUnstructured& s = e->extract(&filter);
  ASSERT_EQ(s.getTopology().getNumCells(), 3u);
  EXPECT_EQ(s.getTopology().getInputCellIndexI(2), 1u);
  EXPECT_EQ(s.getTopology().getInputCellIndexJ(2), 1u);
  EXPECT_EQ(s.getTopology().getInputCellIndexK(2), KeXTopologyI::UNDEFINED_INDEX);
  const std::vector<float> cellValues{0, 1, 2, 3, 4, 5};
  const KbScalarSetIj cells("cells", DataBinding::PER_CELL, cellValues, {3, 2});
  const auto* mapped = e->extractScalarSet(cells);
  ASSERT_NE(mapped, nullptr);
  const std::unique_ptr<KeXDataSet<double>> copy(static_cast<const KeXDataSet<double>*>(mapped)->getNewClone());
  EXPECT_EQ(copy->getTimeStamp(), mapped->getTimeStamp());
  EXPECT_EQ(copy->getMean(), mapped->getMean());
  EXPECT_EQ(mapped->get(0), 0.0);
  EXPECT_EQ(mapped->get(1), 3.0);
  EXPECT_EQ(mapped->get(2), 4.0);
  std::vector<float> nodeValues;
  for (int n = 0; n < 12; ++n)
    nodeValues.push_back(static_cast<float>(10 * (n % 4) + n / 4));
  const KbScalarSetIj nodes("nodes", DataBinding::PER_NODE, nodeValues, {4, 3});
  const auto* atNodes = e->extractScalarSet(nodes);
  ASSERT_NE(atNodes, nullptr);
  for (std::size_t v = 0; v < atNodes->getSize(); ++v) {
    const Vec3 p = s.getGeometry().getCoord(v);
    EXPECT_NEAR(atNodes->get(v), 10.0 * p[0] + p[1], 1e-5);
  }
}

TEST(SurfaceExtractIj, ParallelEqualsSerialAndEqualCallsDoNothing) {
  const KbMeshMaker::Arrays a = KbMeshMaker::surfaceLattice({120, 90});
  std::vector<std::uint8_t> dead(120 * 90);
  for (std::size_t c = 0; c < dead.size(); ++c)
    dead[c] = c * 2654435761u % 6 == 0;
  const KbSurfaceMeshCurvilinear mesh({120, 90}, a.coordinates, dead);
  const auto serial = makeSurface(mesh);
  const auto parallel = makeSurface(mesh, true);
  EXPECT_EQ(bytesOf(serial->extract(nullptr)), bytesOf(parallel->extract(nullptr)));
  Recorder recorder;
  serial->setExtractorCallback(recorder);
  const std::size_t stamp = serial->getExtract().getGeometry().getTimeStamp();
  serial->extract(nullptr);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(serial->getExtract().getGeometry().getTimeStamp(), stamp);
}

TEST(SurfaceExtractUnstructured, GivesPolygonsEdgesAndPoints) {
  // A quadrangle, a pentagon, a quadratic triangle, a quadrangle with a doubled corner and one without an area.
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0, 3, 0.5f, 0, 2, 1, 0, 1.5f, -0.1f, 0};
  const std::vector<std::int32_t> nodes{0, 1, 2, 3, 1, 4, 5, 6, 2, 1, 4, 6, 7, 7, 7, 0, 0, 2, 3, 0, 1, 0, 1};
  const std::vector<std::int32_t> offsets{0, 4, 9, 15, 19, 23};
  const std::vector<std::uint8_t> shapes{KiSurfaceCell::QUADRANGLE, KiSurfaceCell::POLYGON,
                                         KiSurfaceCell::QUADRATIC_TRIANGLE, KiSurfaceCell::QUADRANGLE,
                                         KiSurfaceCell::QUADRANGLE};
  const KbSurfaceMeshUnstructured mesh(xyz, KbCells(shapes, nodes, offsets));
  ASSERT_EQ(mesh.getTopology().getNumCells(), 5u);
  const std::unique_ptr<KiSurfaceExtractUnstructured> e(
      KiSurfaceExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const KeXSurfaceMeshUnstructured& mesh2 = e->extract(nullptr);
  const Surface s(mesh2);
  std::vector<std::size_t> corners;
  for (const auto& p : s.polygons)
    corners.push_back(p.size());
  EXPECT_EQ(corners, (std::vector<std::size_t>{4, 5, 3, 3}));
  EXPECT_EQ(s.vertices.size(), 7u); // without the mid-edge node
  EXPECT_NEAR(s.area(), 1.0 + 1.5 + 0.5 + 0.5, 1e-6);
  const KeXLineMeshUnstructured* lines = e->extractLines(nullptr, nullptr);
  ASSERT_NE(lines, nullptr);
  EXPECT_EQ(lines->getTopology().getNumCells(), 11u); // 4 + 4 + 2 + 1 that no cell before has
  const KeXPointMeshCurvilinear* points = e->extractPoints(nullptr);
  ASSERT_NE(points, nullptr);
  EXPECT_EQ(points->getGeometry().getNumNodes(), 7u);
  EXPECT_EQ(points->getTopology().getInputCellIndexI(1), 0u);
  EXPECT_EQ(points->getTopology().getInputCellIndexI(4), 1u);

  const std::unique_ptr<KiSurfaceExtractUnstructured> again(
      KxSurfaceExtractFactory::getNewInstance(mesh2, false, nullptr));
  EXPECT_NEAR(Surface(again->extract(nullptr)).area(), s.area(), 1e-6);
}

TEST(SurfaceExtractUnstructured, BadCellsAreToldAndSkipped) {
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, std::numeric_limits<float>::infinity(), 1, 0};
  std::vector<std::int32_t> nodes{0, 1, 2, 0, 2, 3, 0, 1, 2};
  const KbSurfaceMeshUnstructured mesh(xyz, KbCells(KiSurfaceCell::TRIANGLE, nodes));
  nodes[8] = 77;
  const std::unique_ptr<KiSurfaceExtractUnstructured> e(
      KiSurfaceExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const MessageLog log;
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 1u);
  EXPECT_EQ(log.lines.size(), 2u);
}

TEST(ElevatedSurface, RaisesAPlaneAlongItsNormal) {
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0, 2, 1, 0};
  const std::vector<std::int32_t> quads{0, 1, 2, 3, 1, 4, 5, 2};
  const KbSurfaceMeshUnstructured mesh(xyz, KbCells(KiSurfaceCell::QUADRANGLE, quads));
  const std::vector<float> h{0, 1, 2, 3, 4, std::numeric_limits<float>::quiet_NaN()};
  const KbScalarSetI heights("heights", DataBinding::PER_NODE, h);
  KxElevatedSurfaceExtractUnstructured e(mesh, false, 1);
  const KeXSurfaceMeshUnstructured& s = e.extract(0.5, &heights, nullptr);
  ASSERT_EQ(s.getGeometry().getNumNodes(), 6u);
  for (std::size_t v = 0; v < 5; ++v)
    EXPECT_NEAR(s.getGeometry().getCoord(v)[2], 0.5 * static_cast<double>(v), 1e-6);
  EXPECT_EQ(s.getGeometry().getCoord(5)[2], 0.0);

  const std::vector<float> perCell{1, 3};
  const KbScalarSetI steps("steps", DataBinding::PER_CELL, perCell);
  e.extract(1.0, &steps, nullptr);
  EXPECT_NEAR(s.getGeometry().getCoord(0)[2], 1.0, 1e-6);
  EXPECT_NEAR(s.getGeometry().getCoord(1)[2], 2.0, 1e-6);
  EXPECT_NEAR(s.getGeometry().getCoord(4)[2], 3.0, 1e-6);
  const auto* mapped = e.extractScalarSet(steps);
  ASSERT_NE(mapped, nullptr);
  EXPECT_EQ(mapped->get(1), 3.0);
  e.extract(1.0, nullptr, nullptr);
  EXPECT_EQ(s.getGeometry().getCoord(4)[2], 0.0);
}

TEST(ElevatedSurface, FollowsChangesOnly) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({4, 4});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  const KbScalarSetI heights("heights", DataBinding::PER_NODE, a.values);
  KxElevatedSurfaceExtractUnstructured e(mesh, true);
  Recorder recorder;
  e.setExtractorCallback(&recorder);
  e.extract(1.0, &heights, nullptr);
  const std::size_t stamp = e.getExtract().getGeometry().getTimeStamp();
  recorder.reset();
  e.extract(1.0, &heights, nullptr);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(e.getExtract().getGeometry().getTimeStamp(), stamp);
  e.extract(2.0, &heights, nullptr);
  EXPECT_GT(e.getExtract().getGeometry().getTimeStamp(), stamp);
}

} // namespace
