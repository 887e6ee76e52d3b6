// SPDX-License-Identifier: BSD-3-Clause
// Clip lines of surface meshes and fences through volume meshes with quadratic cells.
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace {

using namespace pick;
using std::numbers::pi;

std::unique_ptr<KiTessellator> makeTessellator(double maxError = 1e-4, std::size_t maxDepth = 5) {
  return std::unique_ptr<KiTessellator>(KiTessellator::getNewTessellatorBasic(maxError, maxDepth));
}

double lengthOf(const KeXLineMeshUnstructured& lines) {
  double length = 0.0;
  for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c) {
    const KiLineCell& cell = *lines.getTopology().getCell(c);
    length += (lines.getGeometry().getCoord(cell.getNodeIndex(0)) - lines.getGeometry().getCoord(cell.getNodeIndex(1)))
                  .length();
  }
  return length;
}

/// Vertices at which a number of lines other than two meet.
std::size_t numEnds(const KeXLineMeshUnstructured& lines) {
  std::vector<std::size_t> degrees(lines.getGeometry().getNumNodes(), 0);
  for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c)
    for (std::size_t i = 0; i < 2; ++i)
      ++degrees[lines.getTopology().getCell(c)->getNodeIndex(i)];
  return static_cast<std::size_t>(std::count_if(degrees.begin(), degrees.end(), [](std::size_t d) { return d != 2; }));
}

/// A parabolic trough z = x^2 over the square, which quadratic cells represent exactly.
Vec3 trough(const Vec3& p) { return {p[0], p[1], p[0] * p[0]}; }

TEST(TessellatedClipLine, ACurveIsCutWhereItIs) {
  for (const bool isMixed : {false, true}) {
    const quadratic::Mesh q = quadratic::surface(KbMeshMaker::quadrangles({2, 3}), trough,
                                                 [&](std::size_t cell) { return !isMixed || cell % 2 == 0; });
    const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
    const auto field = [](const Vec3& p) { return 2.0 + p[0] * p[1] - p[1] * p[1] + p[0]; };
    const std::vector<double> values = q.values(field);
    const KbScalarSetI set("field", DataBinding::PER_NODE, values);
    const auto tessellator = makeTessellator();
    const std::unique_ptr<KiClipLineExtractUnstructured> curved(
        KiClipLineExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
    const std::unique_ptr<KiClipLineExtractUnstructured> corners(
        KiClipLineExtractUnstructured::getNewInstance(mesh, false, nullptr));
    // The arc of z = x^2 for x from -1 to 1.
    const double arc = std::sqrt(5.0) + std::asinh(2.0) / 2.0;
    const double coarse = lengthOf(corners->extract(Vec3(0, 1, 0), 0.1, nullptr));
    EXPECT_NEAR(coarse, 2.0 * std::sqrt(2.0), 1e-6);
    const KeXLineMeshUnstructured& lines = curved->extract(Vec3(0, 1, 0), 0.1, nullptr);
    EXPECT_EQ(numEnds(lines), 2u) << "one line from side to side";
    if (isMixed) continue; // linear cells have neither the trough nor the field
    EXPECT_NEAR(lengthOf(lines), arc, 2e-3);
    const KeXDataSetI<double>* mapped = curved->extractScalarSet(set);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v) {
      const Vec3 p = lines.getGeometry().getCoord(v);
      EXPECT_NEAR(mapped->get(v), field(p), 1e-5);
    }
    // A level line of the trough: two parallels.
    EXPECT_NEAR(lengthOf(curved->extract(Vec3(0, 0, 1), 0.25, nullptr)), 4.0, 1e-3);
    // A curtain with a joint on the trough.
    const KeXLineMeshUnstructured& swept =
        curved->extract(Vec3(0, 0, 1), {Vec3(-0.9, 0, 0), Vec3(0.1, 0, 0), Vec3(0.1, 0.8, 0)}, nullptr);
    const auto arcTo = [](double x) { return 0.5 * x * std::sqrt(1.0 + 4.0 * x * x) + 0.25 * std::asinh(2.0 * x); };
    EXPECT_NEAR(lengthOf(swept), arcTo(0.1) + arcTo(0.9) + 0.8, 3e-3);
    EXPECT_EQ(numEnds(swept), 2u);
    mapped = curved->extractScalarSet(set);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      EXPECT_NEAR(mapped->get(v), field(swept.getGeometry().getCoord(v)), 1e-5);
  }
}

TEST(TessellatedClipLine, CellsFiltersAndStamps) {
  const quadratic::Mesh q = quadratic::surface(KbMeshMaker::quadrangles({8, 8}), trough);
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const auto tessellator = makeTessellator();
  const std::unique_ptr<KiClipLineExtractUnstructured> serial(
      KiClipLineExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const std::unique_ptr<KiClipLineExtractUnstructured> parallel(
      KiClipLineExtractUnstructured::getNewInstance(mesh, true, tessellator.get()));
  const KbCellListFilterI filter({{0}, {9}, {18}, {27}, {36}});
  const KeXLineMeshUnstructured& lines = serial->extract(Vec3(1, -1, 0), 0.001, &filter);
  ASSERT_GT(lines.getTopology().getNumCells(), 5u);
  for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c)
    EXPECT_EQ(lines.getTopology().getInputCellIndexI(c) % 9, 0u);
  EXPECT_EQ(bytesOf(lines), bytesOf(parallel->extract(Vec3(1, -1, 0), 0.001, &filter)));
  Recorder recorder;
  serial->setExtractorCallback(recorder);
  serial->extract(Vec3(1, -1, 0), 0.001, &filter);
  EXPECT_EQ(recorder.calls, "Be");
}

TEST(TessellatedFence, CutsCurvedCellsWithoutGaps) {
  for (const quadratic::Maker& maker : quadratic::MAKERS) {
    SCOPED_TRACE(maker.name);
    const quadratic::Mesh q = quadratic::volume(maker.make({4, 4, 4}, 0.0, KbMeshMaker::wave), quadratic::ball);
    const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
    const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
    const auto tessellator = makeTessellator(1e-4, 4);
    const std::unique_ptr<KiFenceSliceExtractUnstructured> curved(
        KiFenceSliceExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
    const std::unique_ptr<KiFenceSliceExtractUnstructured> corners(
        KiFenceSliceExtractUnstructured::getNewInstance(mesh, false, nullptr));
    const std::unique_ptr<KiFenceSliceExtractUnstructured> parallel(
        KiFenceSliceExtractUnstructured::getNewInstance(mesh, true, tessellator.get()));
    // Two half discs that meet at a right angle in the middle of the ball.
    const std::vector<Vec3> polyline{Vec3(2, 0.01, 0), Vec3(0.013, 0.01, 0), Vec3(0.013, 2, 0)};
    const KeXSurfaceMeshUnstructured& out = curved->extract(Vec3(0, 0, 1), polyline, nullptr);
    const Surface fine(out);
    const auto halfDisc = [](double distance, double from) { // of the unit ball at a distance, right of `from`
      const double r = std::sqrt(1.0 - distance * distance);
      return r * r * std::acos(from / r) - from * std::sqrt(r * r - from * from);
    };
    const double area = halfDisc(0.01, 0.013) + halfDisc(0.013, 0.01);
    EXPECT_NEAR(fine.area(), area, 2e-3 * area);
    EXPECT_GT(std::abs(Surface(corners->extract(Vec3(0, 0, 1), polyline, nullptr)).area() - area),
              4.0 * std::abs(fine.area() - area));
    EXPECT_EQ(bytesOf(out), bytesOf(parallel->extract(Vec3(0, 0, 1), polyline, nullptr)));
    const KeXDataSetI<Vec3>* mapped = curved->extractVec3Set(positions);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      EXPECT_LT((mapped->get(v) - fine.vertices[v]).length(), 2e-6);
    for (std::size_t p = 0; p < out.getTopology().getNumCells(); ++p)
      EXPECT_LT(out.getTopology().getInputCellIndexI(p), q.numCells());
    Recorder recorder;
    curved->setExtractorCallback(recorder);
    curved->extract(Vec3(0, 0, 1), polyline, nullptr);
    EXPECT_EQ(recorder.calls, "Be");
  }
}

} // namespace
