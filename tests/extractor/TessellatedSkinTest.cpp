// SPDX-License-Identifier: BSD-3-Clause
// Skins and outlines of volume meshes with quadratic cells.
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <set>

namespace {

using namespace pick;
using std::numbers::pi;

std::unique_ptr<KiTessellator> makeTessellator(double maxError = 1e-4, std::size_t maxDepth = 4) {
  return std::unique_ptr<KiTessellator>(KiTessellator::getNewTessellatorBasic(maxError, maxDepth));
}

std::unique_ptr<KiSkinExtractUnstructured> makeSkin(const KbVolumeMeshUnstructured& mesh, KiTessellator* tessellator,
                                                    bool parallel = false) {
  return std::unique_ptr<KiSkinExtractUnstructured>(
      KiSkinExtractUnstructured::getNewInstance(mesh, parallel, tessellator));
}

/// One mesh of each shape; in the last one linear cells lie among the quadratic ones.
class TessellatedSkin : public testing::TestWithParam<std::size_t> {
protected:
  static quadratic::Mesh make(const KbIndex<3>& counts, const quadratic::Map& map) {
    const quadratic::Maker& maker = quadratic::MAKERS[std::min(GetParam(), quadratic::MAKERS.size() - 1)];
    return quadratic::volume(maker.make(counts, 0.0, KbMeshMaker::wave), map,
                             [](std::size_t cell) { return !isMixed() || cell % 3 != 0; });
  }
  static bool isMixed() { return GetParam() == quadratic::MAKERS.size(); }
};

std::string nameOf(const testing::TestParamInfo<std::size_t>& info) {
  return info.param < quadratic::MAKERS.size() ? quadratic::MAKERS[info.param].name : "withLinearCells";
}

INSTANTIATE_TEST_SUITE_P(Shapes, TessellatedSkin, testing::Range<std::size_t>(0, 6), nameOf);

TEST_P(TessellatedSkin, ABallIsRoundAndClosed) {
  const quadratic::Mesh q = make({4, 4, 4}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const auto tessellator = makeTessellator();
  const Surface coarse(makeSkin(mesh, nullptr)->extract(nullptr));
  const Surface fine(makeSkin(mesh, tessellator.get())->extract(nullptr));
  EXPECT_EQ(coarse.numOpenEdges(), 0u);
  EXPECT_EQ(fine.numOpenEdges(), 0u);
  const double factor = isMixed() ? 0.7 : 0.05;
  EXPECT_LT(std::abs(fine.area() - 4.0 * pi), factor * std::abs(coarse.area() - 4.0 * pi));
  EXPECT_LT(std::abs(fine.volume() - 4.0 * pi / 3.0), factor * std::abs(coarse.volume() - 4.0 * pi / 3.0));
  EXPECT_GT(fine.volume(), 0.0) << "normals point outwards";
}

TEST_P(TessellatedSkin, LinesAndPointsAreThoseOfTheFaces) {
  const quadratic::Mesh q = make({2, 2, 2}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
  const auto tessellator = makeTessellator(1e-3, 3);
  const auto skin = makeSkin(mesh, tessellator.get());

  const KeXPointMeshCurvilinear* points = skin->extractPoints(nullptr);
  ASSERT_NE(points, nullptr);
  std::size_t numOnSphere = 0;
  for (std::size_t n = 0; n < q.numNodes(); ++n)
    numOnSphere += q.point(n).length() > 1.0 - 1e-9;
  // Among linear cells a middle on the sphere may belong to a cell that has no face there.
  EXPECT_EQ(points->getGeometry().getNumNodes(), numOnSphere - (isMixed() ? 1 : 0));
  const KeXDataSetI<Vec3>* mapped = skin->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t n = 0; n < mapped->getSize(); ++n)
    EXPECT_LT((mapped->get(n) - points->getGeometry().getCoord(n)).length(), 1e-6);

  const KeXLineMeshUnstructured* lines = skin->extractLines(nullptr);
  ASSERT_NE(lines, nullptr);
  mapped = skin->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  ASSERT_EQ(mapped->getSize(), lines->getGeometry().getNumNodes());
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_LT((mapped->get(v) - lines->getGeometry().getCoord(v)).length(), 1e-6);
  // Each side of the faces appears once, and none of the subdivision's own edges: as many ends as sides have, and every
  // other vertex is in the middle of a curve.
  std::map<std::size_t, std::size_t> degree;
  for (std::size_t c = 0; c < lines->getTopology().getNumCells(); ++c)
    for (std::size_t i = 0; i < 2; ++i)
      ++degree[lines->getTopology().getCell(c)->getNodeIndex(i)];
  const Surface corners(makeSkin(mesh, nullptr)->extract(nullptr));
  std::set<std::pair<std::size_t, std::size_t>> sides;
  for (const auto& ids : corners.polygons)
    for (std::size_t c = 0; c < ids.size(); ++c)
      sides.insert(std::minmax(ids[c], ids[(c + 1) % ids.size()]));
  std::size_t numInner = 0;
  for (const auto& [vertex, count] : degree)
    numInner += count == 2;
  EXPECT_EQ(lines->getTopology().getNumCells() - numInner, sides.size());
  EXPECT_GT(numInner, 0u);
  const Surface fine(skin->extract(nullptr));
  EXPECT_EQ(skin->extractVec3Set(positions)->getSize(), fine.vertices.size());
}

TEST_P(TessellatedSkin, CellRangesFiltersAndDeadCells) {
  const quadratic::Mesh q = make({3, 3, 3}, quadratic::ball);
  std::vector<std::uint8_t> dead(q.numCells());
  std::vector<KbIndex<1>> kept;
  for (std::size_t c = 0; c < dead.size(); ++c) {
    dead[c] = c % 5 == 0;
    if (c % 7 != 0) kept.push_back({c});
  }
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells(), dead);
  const KbCellListFilterI filter(kept);
  const auto tessellator = makeTessellator(1e-3, 3);
  const auto serial = makeSkin(mesh, tessellator.get());
  const auto parallel = makeSkin(mesh, tessellator.get(), true);
  for (const auto* skin : {serial.get(), parallel.get()})
    const_cast<KiSkinExtractUnstructured*>(skin)->addCellRange(2, q.numCells() - 3);
  const KeXSurfaceMeshUnstructured& out = serial->extract(&filter);
  EXPECT_EQ(Surface(out).numOpenEdges(), 0u);
  ASSERT_GT(out.getTopology().getNumCells(), 0u);
  for (std::size_t p = 0; p < out.getTopology().getNumCells(); ++p) {
    const std::size_t cell = out.getTopology().getInputCellIndexI(p);
    EXPECT_TRUE(cell % 5 != 0 && cell % 7 != 0 && cell >= 2 && cell < q.numCells() - 3) << cell;
  }
  EXPECT_EQ(bytesOf(out), bytesOf(parallel->extract(&filter)));
  EXPECT_EQ(bytesOf(*serial->extractLines(&filter)), bytesOf(*parallel->extractLines(&filter)));
  serial->clearCellRanges();
  EXPECT_NE(bytesOf(serial->extract(&filter)), bytesOf(parallel->extract(&filter)));
}

TEST_P(TessellatedSkin, OutlinesFollowCurvedEdgesAndLeaveSmoothOnesOut) {
  // A quarter of a tube: the cube's x becomes the radius, its y the angle.
  const auto tube = [](const Vec3& p) {
    const double radius = 2.0 + 0.5 * p[0];
    const double angle = (p[1] + 1.0) * pi / 4.0;
    return Vec3(radius * std::cos(angle), radius * std::sin(angle), p[2]);
  };
  const quadratic::Mesh q = make({2, 2, 2}, tube);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
  const auto tessellator = makeTessellator(1e-4, 5);
  const std::unique_ptr<KiOutlineExtractUnstructured> corners(
      KiOutlineExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const std::unique_ptr<KiOutlineExtractUnstructured> curved(
      KiOutlineExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const auto lengthOf = [](const KeXLineMeshUnstructured& lines) {
    double length = 0.0;
    for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c) {
      const KiLineCell& cell = *lines.getTopology().getCell(c);
      length +=
          (lines.getGeometry().getCoord(cell.getNodeIndex(0)) - lines.getGeometry().getCoord(cell.getNodeIndex(1)))
              .length();
    }
    return length;
  };
  // Eight straight edges and four arcs; by corners the smooth sides have an edge of 45 degrees in the middle.
  const double arcs = 2.0 * (1.5 + 2.5) * pi / 2.0;
  const double straight = 4.0 * 1.0 + 4.0 * 2.0;
  const KeXLineMeshUnstructured& lines = curved->extract(nullptr);
  EXPECT_NEAR(lengthOf(lines), straight + arcs, isMixed() ? 3.0 : 0.01);
  EXPECT_GT(lengthOf(corners->extract(nullptr)), straight + 0.97 * arcs + (isMixed() ? 0.0 : 3.0));
  const KeXDataSetI<Vec3>* mapped = curved->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_LT((mapped->get(v) - lines.getGeometry().getCoord(v)).length(), 1e-6);
}

TEST(TessellatedSkinState, WithoutSubdivisionThereAreNoLinesAndPoints) {
  const quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({2, 2, 2}), quadratic::ball);
  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({2, 2, 2});
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVolumeMeshUnstructured linearMesh(a.coordinates, a.cells());
  const auto tessellator = makeTessellator();
  EXPECT_EQ(makeSkin(mesh, nullptr)->extractLines(nullptr), nullptr);
  EXPECT_EQ(makeSkin(mesh, nullptr)->extractPoints(nullptr), nullptr);
  EXPECT_EQ(makeSkin(linearMesh, tessellator.get())->extractLines(nullptr), nullptr);
  EXPECT_EQ(makeSkin(linearMesh, tessellator.get())->extractPoints(nullptr), nullptr);
  EXPECT_EQ(bytesOf(makeSkin(linearMesh, tessellator.get())->extract(nullptr)),
            bytesOf(makeSkin(linearMesh, nullptr)->extract(nullptr)));
}

} // namespace
