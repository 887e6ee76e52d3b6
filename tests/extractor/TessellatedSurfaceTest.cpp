// SPDX-License-Identifier: BSD-3-Clause
// Surface meshes with quadratic cells: their polygons, sides and nodes.
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedSurfaceExtract.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

using namespace pick;
using std::numbers::pi;

/// The square as a sixth of the unit sphere.
Vec3 sphereFace(const Vec3& p) { return Vec3(p[0], p[1], 1.0).normalized(); }

Vec3 flat(const Vec3& p) { return {p[0], p[1], 0.0}; }

enum Kind { QUADRANGLES, TRIANGLES, WITH_LINEAR_CELLS, NUM_KINDS };

class TessellatedSurface : public testing::TestWithParam<int> {
protected:
  static quadratic::Mesh make(std::size_t count, const quadratic::Map& map) {
    KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({count, count});
    if (GetParam() == TRIANGLES) {
      std::vector<std::int32_t> triangles;
      for (std::size_t c = 0; c < a.connectivity.size(); c += 4) {
        const std::int32_t* q = a.connectivity.data() + c;
        triangles.insert(triangles.end(), {q[0], q[1], q[2], q[0], q[2], q[3]});
      }
      a.connectivity = triangles;
      a.shapes.assign(1, KiSurfaceCell::TRIANGLE);
      a.offsets.clear();
    }
    return quadratic::surface(a, map,
                              [](std::size_t cell) { return GetParam() != WITH_LINEAR_CELLS || cell % 3 != 1; });
  }
  static std::unique_ptr<KiTessellatedSurfaceExtract> makeExtract(const KbSurfaceMeshUnstructured& mesh,
                                                                  bool parallel = false) {
    return std::unique_ptr<KiTessellatedSurfaceExtract>(KiTessellatedSurfaceExtract::getNewInstance(mesh, parallel));
  }
};

std::string kindName(const testing::TestParamInfo<int>& info) {
  static constexpr std::array<const char*, NUM_KINDS> NAMES{"quadrangles", "triangles", "withLinearCells"};
  return NAMES[static_cast<std::size_t>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Shapes, TessellatedSurface, testing::Range<int>(0, NUM_KINDS), kindName);

std::unique_ptr<KiTessellator> makeTessellator(double maxError = 1e-4, std::size_t maxDepth = 4) {
  return std::unique_ptr<KiTessellator>(KiTessellator::getNewTessellatorBasic(maxError, maxDepth));
}

TEST_P(TessellatedSurface, AreaConvergesAndNeighboursFit) {
  const quadratic::Mesh q = make(4, sphereFace);
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const auto e = makeExtract(mesh);
  const Surface coarse(e->extract(nullptr, nullptr));
  const auto tessellator = makeTessellator();
  const Surface fine(e->extract(tessellator.get(), nullptr));
  const double area = 4.0 * pi / 6.0;
  const double coarseError = std::abs(coarse.area() - area);
  EXPECT_LT(std::abs(fine.area() - area), (GetParam() == WITH_LINEAR_CELLS ? 0.7 : 0.05) * coarseError);
  std::map<std::pair<std::size_t, std::size_t>, int> edges;
  for (const auto& ids : fine.polygons)
    for (std::size_t c = 0; c < ids.size(); ++c)
      edges[std::minmax(ids[c], ids[(c + 1) % ids.size()])] += ids[c] < ids[(c + 1) % ids.size()] ? 1 : -1;
  for (const auto& [edge, balance] : edges) {
    if (balance == 0) continue;
    for (const std::size_t v : {edge.first, edge.second}) {
      const Vec3 p = fine.vertices[v] / fine.vertices[v][2]; // back on the square
      EXPECT_NEAR(std::max(std::abs(p[0]), std::abs(p[1])), 1.0, 1e-2) << "an open edge inside";
    }
  }
  EXPECT_GT(fine.vectorArea(0)[2], 0.0);
  for (const Vec3& p : fine.vertices)
    EXPECT_NEAR(p.length(), 1.0, GetParam() == WITH_LINEAR_CELLS ? 2e-2 : 5e-3);
}

TEST_P(TessellatedSurface, ErrorIsBelowTheBound) {
  if (GetParam() == WITH_LINEAR_CELLS) return;
  const quadratic::Mesh q = make(1, [](const Vec3& p) { return Vec3(p[0], p[1], 0.5 * p[0] * p[0]); });
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const auto e = makeExtract(mesh);
  for (const double bound : {0.2, 0.05, 0.01, 0.002}) {
    const auto tessellator = makeTessellator(bound, 10);
    const Surface s(e->extract(tessellator.get(), nullptr));
    double greatest = 0.0;
    for (const auto& ids : s.polygons)
      for (std::size_t c = 0; c < ids.size(); ++c) {
        const Vec3 middle = (s.vertices[ids[c]] + s.vertices[ids[(c + 1) % ids.size()]]) * 0.5;
        greatest = std::max(greatest, std::abs(middle[2] - 0.5 * middle[0] * middle[0]));
      }
    EXPECT_LE(greatest, 1.2 * bound) << "across the chord the error is a little smaller than upright";
    EXPECT_GT(greatest, bound / 8.0) << "no finer than needed";
  }
}

TEST_P(TessellatedSurface, LinesAreTheSidesOfTheCells) {
  const quadratic::Mesh q = make(3, flat);
  const quadratic::Mesh curved = make(3, sphereFace);
  const KbSurfaceMeshUnstructured flatMesh(q.coordinates, q.cells());
  const KbSurfaceMeshUnstructured mesh(curved.coordinates, curved.cells());
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, curved.coordinates);
  const auto tessellator = makeTessellator(1e-3, 3);
  const auto e = makeExtract(mesh);
  // Without curvature each side is a segment.
  const std::size_t numSides = GetParam() == TRIANGLES ? 24u + 9u : 24u;
  EXPECT_EQ(makeExtract(flatMesh)->extractLines(tessellator.get(), nullptr)->getTopology().getNumCells(), numSides);
  EXPECT_EQ(e->extractLines(nullptr, nullptr)->getTopology().getNumCells(), numSides);
  const KeXLineMeshUnstructured& lines = *e->extractLines(tessellator.get(), nullptr);
  const std::size_t numSegments = lines.getTopology().getNumCells();
  EXPECT_GT(numSegments, numSides);
  double length = 0.0;
  for (std::size_t c = 0; c < numSegments; ++c) {
    const KiLineCell& cell = *lines.getTopology().getCell(c);
    const Vec3 a = lines.getGeometry().getCoord(cell.getNodeIndex(0));
    const Vec3 b = lines.getGeometry().getCoord(cell.getNodeIndex(1));
    length += (b - a).length();
  }
  if (GetParam() == QUADRANGLES) {
    // Arcs of great circles: x = t for t = -1, -1/3, 1/3, 1, y from -1 to 1, and the same across.
    double arcs = 0.0;
    for (const double t : {-1.0, -1.0 / 3.0, 1.0 / 3.0, 1.0})
      arcs += 2.0 * 2.0 * std::atan(1.0 / std::sqrt(1.0 + t * t));
    EXPECT_NEAR(length, arcs, 5e-3 * arcs);
  }
  const KeXDataSetI<Vec3>* mapped = e->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  ASSERT_EQ(mapped->getSize(), lines.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_LT((mapped->get(v) - lines.getGeometry().getCoord(v)).length(), 1e-6);
}

TEST_P(TessellatedSurface, PointsAreTheNodesOfTheCells) {
  const quadratic::Mesh q = make(3, sphereFace);
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  std::vector<double> numbers;
  for (std::size_t n = 0; n < q.numNodes(); ++n)
    numbers.push_back(static_cast<double>(n));
  const KbScalarSetI set("numbers", DataBinding::PER_NODE, numbers);
  const auto e = makeExtract(mesh);
  const KeXPointMeshCurvilinear* points = e->extractPoints(nullptr);
  ASSERT_NE(points, nullptr);
  ASSERT_EQ(points->getGeometry().getNumNodes(), q.numNodes());
  const KeXDataSetI<double>* mapped = e->extractScalarSet(set);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t n = 0; n < q.numNodes(); ++n) {
    EXPECT_EQ(mapped->get(n), numbers[n]);
    EXPECT_LT((points->getGeometry().getCoord(n) - q.point(n)).length(), 1e-6);
    const KiSurfaceCell& cell = *mesh.getTopology().getCell(points->getTopology().getInputCellIndexI(n));
    bool isNode = false;
    for (std::size_t i = 0; i < cell.getNumNodes(); ++i)
      isNode |= cell.getNodeIndex(i) == n;
    EXPECT_TRUE(isNode) << n;
  }
  const std::unique_ptr<KiSurfaceExtractUnstructured> corners(
      KiSurfaceExtractUnstructured::getNewInstance(mesh, false, nullptr));
  EXPECT_EQ(corners->extractPoints(nullptr)->getGeometry().getNumNodes(), q.numCorners);
}

TEST_P(TessellatedSurface, QuadraticFieldsAreExactAtTheVertices) {
  if (GetParam() == WITH_LINEAR_CELLS) return;
  const auto field = [](const Vec3& p) { return 1.0 + p[0] * p[1] - 2.0 * p[1] * p[1] + 3.0 * p[0]; };
  const quadratic::Mesh q = make(2, [](const Vec3& p) { return Vec3(p[0], p[1], p[0] * p[0] - p[0] * p[1]); });
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const std::vector<double> values = q.values(field);
  const KbScalarSetI set("field", DataBinding::PER_NODE, values);
  std::vector<double> numbers;
  for (std::size_t c = 0; c < q.numCells(); ++c)
    numbers.push_back(static_cast<double>(c));
  const KbScalarSetI cells("cells", DataBinding::PER_CELL, numbers);
  const auto tessellator = makeTessellator(1e-3, 3);
  const auto e = makeExtract(mesh);
  const KeXSurfaceMeshUnstructured& out = e->extract(tessellator.get(), nullptr);
  const Surface s(out);
  const KeXDataSetI<double>* mapped = e->extractScalarSet(set);
  ASSERT_NE(mapped, nullptr);
  ASSERT_GT(s.vertices.size(), 40u);
  for (std::size_t v = 0; v < s.vertices.size(); ++v)
    EXPECT_NEAR(mapped->get(v), field(s.vertices[v]), 1e-5);
  const KeXDataSetI<double>* perCell = e->extractScalarSet(cells);
  ASSERT_NE(perCell, nullptr);
  for (std::size_t p = 0; p < s.polygons.size(); ++p)
    EXPECT_EQ(perCell->get(p), static_cast<double>(out.getTopology().getInputCellIndexI(p)));
}

TEST_P(TessellatedSurface, BothClassesAgreeAndNullTakesCorners) {
  const quadratic::Mesh q = make(5, sphereFace);
  std::vector<std::uint8_t> dead(q.numCells());
  for (std::size_t c = 0; c < dead.size(); ++c)
    dead[c] = c % 5 == 2;
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells(), dead);
  const KbCellListFilterI filter({{0}, {1}, {2}, {3}, {6}, {7}, {8}});
  const auto tessellator = makeTessellator();
  const auto e = makeExtract(mesh);
  const std::unique_ptr<KiSurfaceExtractUnstructured> withOne(
      KiSurfaceExtractUnstructured::getNewInstance(mesh, true, tessellator.get()));
  const std::unique_ptr<KiSurfaceExtractUnstructured> without(
      KiSurfaceExtractUnstructured::getNewInstance(mesh, false, nullptr));
  for (const KiCellFilterI* f :
       {static_cast<const KiCellFilterI*>(nullptr), static_cast<const KiCellFilterI*>(&filter)}) {
    const KeXSurfaceMeshUnstructured& curved = e->extract(tessellator.get(), f);
    for (std::size_t p = 0; p < curved.getTopology().getNumCells(); ++p) {
      const std::size_t cell = curved.getTopology().getInputCellIndexI(p);
      EXPECT_NE(cell % 5, 2u);
      EXPECT_TRUE(!f || f->acceptCell(cell));
    }
    EXPECT_EQ(bytesOf(withOne->extract(f)), bytesOf(curved)) << "parallel equals serial";
    EXPECT_EQ(bytesOf(without->extract(tessellator.get(), f)), bytesOf(curved));
    EXPECT_EQ(bytesOf(without->extract(f)), bytesOf(e->extract(nullptr, f)));
    EXPECT_NE(bytesOf(without->extract(f)), bytesOf(withOne->extract(f)));
  }
}

TEST(TessellatedSurfaceState, FollowsTheTessellatorAndNothingElse) {
  const quadratic::Mesh q = quadratic::surface(KbMeshMaker::quadrangles({3, 3}), sphereFace);
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const std::unique_ptr<KiTessellatedSurfaceExtract> e(KiTessellatedSurfaceExtract::getNewInstance(mesh, false));
  const auto rough = makeTessellator(1e-2);
  const auto fine = makeTessellator(1e-4);
  const std::size_t numRough = e->extract(rough.get(), nullptr).getTopology().getNumCells();
  Recorder recorder;
  e->setExtractorCallback(recorder);
  const std::size_t stamp = e->getExtract().getGeometry().getTimeStamp();
  e->extract(rough.get(), nullptr);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(e->getExtract().getGeometry().getTimeStamp(), stamp);
  recorder.reset();
  EXPECT_GT(e->extract(fine.get(), nullptr).getTopology().getNumCells(), numRough);
  EXPECT_EQ(recorder.withoutSteps(), "BPpPpPpPpe");
  EXPECT_EQ(recorder.numPhases, 4u);
}

TEST(TessellatedSurfaceState, APolygonGetsThePointsOfItsNeighboursSides) {
  // A quadratic triangle whose side 1 2 bulges, and a pentagon at that side.
  const std::vector<double> xyz{0, 0, 0,   1, 0, 0, 0, 1, 0, 0.5, 0, 0, 0.7, 0.7,
                                0, 0, 0.5, 0, 2, 0, 0, 2, 2, 0,   0, 2, 0};
  const std::vector<std::int32_t> nodes{0, 1, 2, 3, 4, 5, 1, 6, 7, 8, 2};
  const std::vector<std::int32_t> offsets{0, 6, 11};
  const std::vector<std::uint8_t> shapes{KiSurfaceCell::QUADRATIC_TRIANGLE, KiSurfaceCell::POLYGON};
  const KbSurfaceMeshUnstructured mesh(xyz, KbCells(shapes, nodes, offsets));
  const std::unique_ptr<KiTessellatedSurfaceExtract> e(KiTessellatedSurfaceExtract::getNewInstance(mesh, false));
  const auto tessellator = makeTessellator(1e-3, 3);
  const KeXSurfaceMeshUnstructured& out = e->extract(tessellator.get(), nullptr);
  const Surface s(out);
  EXPECT_EQ(s.polygons.back().size(), 5u + 7u);
  EXPECT_NEAR(s.area(), 4.0, 1e-6) << "what the triangle gains the pentagon loses";
  EXPECT_EQ(out.getTopology().getInputCellIndexI(s.polygons.size() - 1), 1u);
}

} // namespace
