// SPDX-License-Identifier: BSD-3-Clause
// Laws of clip lines and clip points; what all line families have in common is in LineContractsTest.cpp.
#include "LineTestTools.h"

#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace {

using lines::Vec3;
using Degrees = std::map<std::size_t, std::size_t>;

/// Length as seen along z.
double shadowLength(const KeXLineMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < lines::numCells(mesh); ++c) {
    const auto [a, b] = lines::ends(mesh, c);
    sum += std::hypot(b[0] - a[0], b[1] - a[1]);
  }
  return sum;
}

/// Quadrangles over the unit square, a wavy surface, with x at the nodes.
struct Wavy {
  KbMeshMaker::Arrays arrays = KbMeshMaker::quadrangles({23, 17}, [](const Vec3& p) { return p[0]; });
  KbSurfaceMeshUnstructured mesh{arrays.coordinates, arrays.cells()};
  KbScalarSetI x{"x", DataBinding::PER_NODE, arrays.values};
  std::unique_ptr<KiClipLineExtractUnstructured> extractor{
      KiClipLineExtractUnstructured::getNewInstance(mesh, true, nullptr)};
};

TEST(ClipLine, APlaneCutsARectangleAcross) {
  const KbSurfaceMeshRegular mesh({10, 7}, {0, 0, 1}, {1, 2, 1});
  const std::unique_ptr<KiClipLineExtractIj> extractor(KiClipLineExtractIj::getNewInstance(mesh, false, nullptr));
  for (const double x : {0.33, 0.5, 0.999}) { // 0.5 runs along edges
    const KeXLineMeshUnstructured& line = extractor->extract(Vec3(2, 0, 0), x, nullptr);
    EXPECT_NEAR(lines::length(line), 2.0, 1e-6) << x;
    EXPECT_EQ(lines::degrees(line), (Degrees{{1, 2}, {2, 6}})) << x;
    for (std::size_t v = 0; v < line.getGeometry().getNumNodes(); ++v)
      EXPECT_NEAR(line.getGeometry().getCoord(v)[0], x, 1e-6);
  }
  EXPECT_EQ(lines::numCells(extractor->extract(Vec3(1, 0, 0), 1.5, nullptr)), 0u);
}

TEST(ClipLine, ACurtainEndsWithItsPolyline) {
  const KbSurfaceMeshRegular mesh({10, 10}, {0, 0, 0}, {1, 1, 0});
  const std::unique_ptr<KiClipLineExtractIj> extractor(KiClipLineExtractIj::getNewInstance(mesh, false, nullptr));
  const KeXLineMeshUnstructured& line =
      extractor->extract(Vec3(0, 0, 3), {{0.22, 0.23, 9}, {0.81, 0.23, -4}, {0.81, 0.74, 0}}, nullptr);
  EXPECT_NEAR(lines::length(line), 0.59 + 0.51, 1e-6);
  const Degrees degrees = lines::degrees(line);
  EXPECT_EQ(degrees.at(1), 2u) << "one line with two ends";
  EXPECT_EQ(degrees.size(), 2u) << "no gap and no fork at the joint";
  bool hasJoint = false;
  for (std::size_t v = 0; v < line.getGeometry().getNumNodes(); ++v)
    hasJoint |= (line.getGeometry().getCoord(v) - Vec3(0.81, 0.23, 0)).length() < 1e-6;
  EXPECT_TRUE(hasJoint);
}

TEST(ClipLine, ACurtainThroughNodesAndAlongEdgesHasNoGaps) {
  const KbSurfaceMeshRegular mesh({10, 10}, {0, 0, 0}, {10, 10, 0});
  const std::unique_ptr<KiClipLineExtractIj> extractor(KiClipLineExtractIj::getNewInstance(mesh, false, nullptr));
  // Joints on a node, on an edge and in a cell.
  const KeXLineMeshUnstructured& line =
      extractor->extract(Vec3(0, 0, 1), {{1, 1, 0}, {4, 4, 0}, {7, 4.5, 0}, {8.25, 8.75, 0}}, nullptr);
  EXPECT_NEAR(lines::length(line), std::hypot(3, 3) + std::hypot(3, 0.5) + std::hypot(1.25, 4.25), 1e-5);
}

TEST(ClipLine, ALongCurtainOverAWavySurfaceIsOneLine) {
  Wavy wavy;
  std::mt19937 random(11);
  std::uniform_real_distribution<double> step(0.0, 0.015);
  std::vector<Vec3> polyline;
  double length = 0.0;
  for (double x = 0.05; x < 0.95; x += 0.005 + step(random)) {
    polyline.push_back({x, 0.5 + 0.4 * std::sin(9.0 * x), step(random)});
    if (polyline.size() > 1) {
      const Vec3 d = polyline.back() - polyline[polyline.size() - 2];
      length += std::hypot(d[0], d[1]);
    }
  }
  ASSERT_GT(polyline.size(), 50u);
  const KeXLineMeshUnstructured& line = wavy.extractor->extract(Vec3(0, 0, -1), polyline, nullptr);
  EXPECT_NEAR(shadowLength(line), length, 1e-5 * length);
  const Degrees degrees = lines::degrees(line);
  EXPECT_EQ(degrees.at(1), 2u);
  EXPECT_EQ(degrees.size(), 2u);
}

TEST(ClipLine, ACurtainAcrossTheWholeMeshIsAPlane) {
  Wavy wavy;
  const double planar = lines::length(wavy.extractor->extract(Vec3(0, 1, 0), 0.41, nullptr));
  const double swept = lines::length(wavy.extractor->extract(Vec3(0, 0, 1), {{-1, 0.41, 0}, {2, 0.41, 0}}, nullptr));
  EXPECT_GT(planar, 1.0);
  EXPECT_NEAR(swept, planar, 1e-6);
}

TEST(ClipLine, ACurtainThatRunsAlongAFaceEndsAtItsPolyline) {
  // An upright rectangle, seen from above as a line; the curtain crosses it once.
  const std::vector<float> coordinates{0, 0, 0, 1, 0, 0, 1, 0, 2, 0, 0, 2};
  const std::vector<std::int32_t> connectivity{0, 1, 2, 3};
  const KbSurfaceMeshUnstructured mesh(coordinates, {KiSurfaceCell::QUADRANGLE, connectivity});
  const std::unique_ptr<KiClipLineExtractUnstructured> extractor(
      KiClipLineExtractUnstructured::getNewInstance(mesh, false, nullptr));
  EXPECT_NEAR(lines::length(extractor->extract(Vec3(0, 0, 1), {{0.5, -1, 0}, {0.5, 1, 0}}, nullptr)), 2.0, 1e-6);
  EXPECT_NEAR(lines::length(extractor->extract(Vec3(0, 0, 1), {{0.5, -1, 0}, {0.5, 0, 0}, {0.6, 1, 0}}, nullptr)), 2.0,
              1e-6)
      << "the joint on the rectangle counts once";
  EXPECT_EQ(lines::numCells(extractor->extract(Vec3(0, 0, 1), {{0.5, -2, 0}, {0.5, -1, 0}}, nullptr)), 0u);
}

TEST(ClipLine, MapsSetsOntoEdgesAndJoints) {
  Wavy wavy;
  const auto check = [&](const KeXLineMeshUnstructured& line) {
    const KeXDataSetI<double>* x = wavy.extractor->extractScalarSet(wavy.x);
    ASSERT_NE(x, nullptr);
    ASSERT_EQ(x->getSize(), line.getGeometry().getNumNodes());
    ASSERT_GT(x->getSize(), 10u);
    for (std::size_t v = 0; v < x->getSize(); ++v)
      EXPECT_NEAR(x->get(v), line.getGeometry().getCoord(v)[0], 1e-6);
  };
  check(wavy.extractor->extract(Vec3(1, 2, 0), 1.1, nullptr));
  check(wavy.extractor->extract(Vec3(0, 0, 1), {{0.1, 0.2, 0}, {0.7, 0.33, 0}, {0.4, 0.9, 0}}, nullptr));
}

TEST(ClipLine, RefusesPlanesAndCurtainsWithoutDirection) {
  Wavy wavy;
  MessageLog messages;
  EXPECT_EQ(lines::numCells(wavy.extractor->extract(Vec3(0, 0, 0), 0.5, nullptr)), 0u);
  EXPECT_EQ(lines::numCells(wavy.extractor->extract(Vec3(0, 0, 0), {{0, 0, 0}, {1, 1, 0}}, nullptr)), 0u);
  EXPECT_EQ(lines::numCells(wavy.extractor->extract(Vec3(0, 0, 1), {{0.5, 0.5, 0}, {0.5, 0.5, 1}}, nullptr)), 0u);
  EXPECT_EQ(lines::numCells(wavy.extractor->extract(Vec3(0, 0, 1), {{0.5, NAN, 0}, {0.5, 0.5, 1}}, nullptr)), 0u);
  ASSERT_EQ(messages.lines.size(), 4u);
  EXPECT_EQ(messages.lines[1],
            "KiClipLineExtractUnstructured::extract: the direction of the curtain has no finite length");
  EXPECT_EQ(lines::numCells(wavy.extractor->extract(Vec3(1, 0, 0), std::vector<Vec3>{}, nullptr)), 0u);
  EXPECT_EQ(messages.lines.size(), 4u) << "an empty polyline is no fault";
}

TEST(ClipPoint, FindsEveryCrossingOfARandomPath) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::vector<double> coordinates;
  std::vector<double> z;
  for (std::size_t n = 0; n <= 200; ++n) {
    coordinates.insert(coordinates.end(), {uniform(random), uniform(random), uniform(random)});
    z.push_back(coordinates.back());
  }
  const KbLineMeshCurvilinear mesh({200}, coordinates);
  const KbScalarSetI set("z", DataBinding::PER_NODE, z);
  const std::unique_ptr<KiClipPointExtract> extractor(KiClipPointExtract::getNewInstance(mesh, false, nullptr));
  const KeXPointMeshCurvilinear& points = extractor->extract(Vec3(0, 1, 0), 0.25, nullptr);
  std::size_t expected = 0;
  for (std::size_t c = 0; c < 200; ++c)
    expected += (coordinates[3 * c + 1] > 0.25) != (coordinates[3 * c + 4] > 0.25);
  ASSERT_GT(expected, 20u);
  ASSERT_EQ(points.getTopology().getNumCells(), expected);
  ASSERT_EQ(points.getGeometry().getNumNodes(), expected);
  const KeXDataSetI<double>* mapped = extractor->extractScalarSet(set);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t p = 0; p < expected; ++p) {
    EXPECT_NEAR(points.getGeometry().getCoord(p)[1], 0.25, 1e-6);
    EXPECT_NEAR(points.getGeometry().getCoord(p)[2], mapped->get(p), 1e-6);
    const std::size_t cell = points.getTopology().getInputCellIndexI(p);
    EXPECT_NE(coordinates[3 * cell + 1] > 0.25, coordinates[3 * cell + 4] > 0.25);
  }
}

TEST(ClipPoint, ANodeInThePlaneIsOnePoint) {
  const std::vector<double> coordinates{-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 1, 0};
  const std::vector<std::int32_t> connectivity{0, 1, 1, 2, 1, 3}; // two lines leave the node on the plane
  const KbLineMeshUnstructured mesh(coordinates, {KiLineCell::LINE, connectivity});
  const std::unique_ptr<KiClipPointExtract> extractor(KiClipPointExtract::getNewInstance(mesh, false, nullptr));
  for (const double sign : {1.0, -1.0})
    EXPECT_EQ(extractor->extract(Vec3(sign, 0, 0), 0.0, nullptr).getTopology().getNumCells(), 1u) << sign;
}

TEST(ClipPoint, ACurvedLineIsCutWhereItsPiecesAre) {
  // The parabola y = 4 x (1 - x), given by three nodes.
  const std::vector<double> coordinates{0, 0, 0, 1, 0, 0, 0.5, 1, 0};
  const std::vector<std::int32_t> connectivity{0, 1, 2};
  const KbLineMeshUnstructured mesh(coordinates, {KiLineCell::QUADRATIC_LINE, connectivity});
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(1e-9, 6));
  const std::unique_ptr<KiClipPointExtract> curved(KiClipPointExtract::getNewInstance(mesh, false, tessellator.get()));
  const KeXPointMeshCurvilinear& points = curved->extract(Vec3(0, 1, 0), 0.5, nullptr);
  ASSERT_EQ(points.getTopology().getNumCells(), 2u);
  EXPECT_NEAR(points.getGeometry().getCoord(0)[0], 0.5 - std::sqrt(0.125), 1e-3);
  const std::unique_ptr<KiClipPointExtract> straight(KiClipPointExtract::getNewInstance(mesh, false, nullptr));
  EXPECT_EQ(straight->extract(Vec3(0, 1, 0), 0.5, nullptr).getTopology().getNumCells(), 0u);
}

} // namespace
