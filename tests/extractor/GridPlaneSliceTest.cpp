// SPDX-License-Identifier: BSD-3-Clause
// Plane sections sampled on a square grid, against counts over the same grid.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>

#include <cmath>
#include <memory>
#include <random>
#include <set>

namespace {

using namespace pick;

template <class Family>
class GridPlaneSlice : public testing::Test {
protected:
  using Kind = typename Family::Kind;
  static std::unique_ptr<typename Family::Extractor> make(const Kind& kind) {
    return std::unique_ptr<typename Family::Extractor>(Family::Extractor::getNewInstance(kind.mesh, true, nullptr));
  }
};
using Kinds =
    testing::Types<KindOf<Unstructured, KiGridPlaneSliceExtractUnstructured>,
                   KindOf<HexahedronIjk, KiGridPlaneSliceExtractHexahedronIjk>,
                   KindOf<Regular, KiGridPlaneSliceExtractIjk>, KindOf<Rectilinear, KiGridPlaneSliceExtractIjk>,
                   KindOf<Curvilinear, KiGridPlaneSliceExtractIjk>>;
TYPED_TEST_SUITE(GridPlaneSlice, Kinds);

TYPED_TEST(GridPlaneSlice, QuadsLieOnTheGridAndFaceTheNormal) {
  const typename TypeParam::Kind kind({6, 5, 4});
  const auto slice = this->make(kind);
  const Vec3 normal(1.0, 2.0, -3.0);
  const Vec3 unit = normal.normalized();
  const double distance = -0.1;
  const double step = 0.061;
  const Surface s(slice->extract(normal, distance, step, nullptr));
  ASSERT_GT(s.polygons.size(), 50u);
  // The greatest component is along z, so that the first axis is x laid into the plane.
  const Vec3 first = (Vec3(1, 0, 0) - unit * unit[0]).normalized();
  const Vec3 second = unit.cross(first);
  std::set<std::size_t> used;
  for (std::size_t p = 0; p < s.polygons.size(); ++p) {
    ASSERT_EQ(s.polygons[p].size(), 4u);
    EXPECT_LT((s.vectorArea(p) - unit * (step * step)).length(), 1e-7);
    used.insert(s.polygons[p].begin(), s.polygons[p].end());
  }
  EXPECT_EQ(used.size(), s.vertices.size());
  for (const Vec3& v : s.vertices) {
    EXPECT_NEAR(unit.dot(v), distance, 1e-6);
    for (const Vec3& axis : {first, second})
      EXPECT_NEAR(axis.dot(v) / step, std::round(axis.dot(v) / step), 1e-4);
  }
  std::map<std::pair<std::size_t, std::size_t>, int> sides;
  for (const auto& ids : s.polygons)
    for (std::size_t c = 0; c < 4; ++c)
      ++sides[std::minmax(ids[c], ids[(c + 1) % 4])];
  for (const auto& [side, count] : sides) {
    EXPECT_NEAR((s.vertices[side.first] - s.vertices[side.second]).length(), step, 1e-6);
    EXPECT_LE(count, 2);
  }
}

TYPED_TEST(GridPlaneSlice, HasEveryQuadWithinTheMesh) {
  // Where the planes z = d cut the warped lattice, its sides are x = sin, y = sin; grids well inside are whole.
  const typename TypeParam::Kind kind({4, 4, 4});
  const auto slice = this->make(kind);
  const Surface s(slice->extract({0, 0, 5.0}, 0.4375, 0.0625, nullptr));
  std::set<std::pair<long, long>> quads;
  for (const auto& polygon : s.polygons) {
    const Vec3& corner = s.vertices[polygon[0]];
    quads.emplace(std::lround(corner[0] / 0.0625), std::lround(corner[1] / 0.0625));
  }
  EXPECT_EQ(quads.size(), s.polygons.size());
  for (long i = 1; i < 15; ++i)
    for (long j = 1; j < 15; ++j)
      EXPECT_TRUE(quads.count({i, j})) << i << " " << j;
}

TYPED_TEST(GridPlaneSlice, BadParametersAreToldOnce) {
  const typename TypeParam::Kind kind({3, 3, 3});
  const auto slice = this->make(kind);
  struct Row {
    Vec3 normal;
    double distance;
    double step;
    const char* text;
  };
  const double nan = std::nan("");
  const double infinite = std::numeric_limits<double>::infinity();
  const std::vector<Row> rows{
      {{0, 0, 0}, 0.5, 0.1, "the plane's normal has no length"},
      {{nan, 0, 0}, 0.5, 0.1, "the plane's normal or distance is not finite"},
      {{0, 0, 1}, infinite, 0.1, "the plane's normal or distance is not finite"},
      {{0, 0, 1}, 0.5, 0.0, "the step 0 is not a positive number"},
      {{0, 0, 1}, 0.5, -2.0, "the step -2 is not a positive number"},
      {{0, 0, 1}, 0.5, nan, "is not a positive number"},
      {{0, 0, 1}, 0.5, infinite, "the step inf is not a positive number"},
      {{0, 0, 1}, 0.5, 1e-6, "the step 1e-06 asks for 1"},
      {{0, 0, 1}, 0.5, 1e-300, "the step 1e-300 is too small for a mesh of this size and place"},
  };
  for (const Row& row : rows) {
    MessageLog log;
    const auto& mesh = slice->extract(row.normal, row.distance, row.step, nullptr);
    EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
    EXPECT_EQ(mesh.getGeometry().getNumNodes(), 0u);
    ASSERT_EQ(log.lines.size(), 1u) << row.text;
    EXPECT_NE(log.lines[0].find("::extract: "), std::string::npos);
    EXPECT_NE(log.lines[0].find(row.text), std::string::npos) << log.lines[0];
    EXPECT_GT(slice->extract({0, 0, 1}, 0.5, 0.1, nullptr).getTopology().getNumCells(), 10u);
  }
  MessageLog log;
  EXPECT_EQ(slice->extract({0, 0, 1}, 0.5, 100.0, nullptr).getTopology().getNumCells(), 0u); // not one whole square
  EXPECT_EQ(slice->extract({0, 0, 1}, 50.0, 0.1, nullptr).getTopology().getNumCells(), 0u);  // beside the mesh
  EXPECT_TRUE(log.lines.empty());
}

TEST(GridPlaneSliceLaws, AGridThatFitsHasItsBorder) {
  const Regular kind({10, 10, 10});
  const std::unique_ptr<KiGridPlaneSliceExtractIjk> slice(
      KiGridPlaneSliceExtractIjk::getNewInstance(kind.mesh, false, nullptr));
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Vec3 normal(0.0);
    normal[axis] = 1.0;
    const Surface s(slice->extract(normal, 0.35, 0.1, nullptr));
    EXPECT_EQ(s.polygons.size(), 100u);
    EXPECT_EQ(s.vertices.size(), 121u);
    // The first side of a square runs along the axis that follows, the second along the one after it.
    const auto& q = s.polygons[42];
    EXPECT_NEAR((s.vertices[q[1]] - s.vertices[q[0]])[(axis + 1) % 3], 0.1, 1e-6);
    EXPECT_NEAR((s.vertices[q[2]] - s.vertices[q[1]])[(axis + 2) % 3], 0.1, 1e-6);
  }
}

TEST(GridPlaneSliceLaws, SquaresNeedFourLiveCorners) {
  std::mt19937 random(5);
  for (unsigned round = 0; round < 20; ++round) {
    std::vector<std::uint8_t> dead(4 * 3 * 2);
    for (std::uint8_t& d : dead)
      d = random() % 4 == 0;
    const Regular kind({4, 3, 2}, dead);
    const std::unique_ptr<KiGridPlaneSliceExtractIjk> slice(
        KiGridPlaneSliceExtractIjk::getNewInstance(kind.mesh, true, nullptr));
    const Vec3 normal(0.3, 0.2, 1.0);
    const Vec3 unit = normal.normalized();
    const double step = 0.0237 + 0.01 * round;
    const double distance = 0.61;
    const Vec3 first = (Vec3(1, 0, 0) - unit * unit[0]).normalized();
    const Vec3 second = unit.cross(first);
    const auto cellAt = [&](double i, double j) -> long {
      const Vec3 p = unit * distance + first * (i * step) + second * (j * step);
      std::size_t cell = 0;
      for (std::size_t axis = 3; axis-- > 0;) {
        if (p[axis] < 0.0 || p[axis] > 1.0) return -1;
        cell = cell * kind.counts[axis] + static_cast<std::size_t>(p[axis] * static_cast<double>(kind.counts[axis]));
      }
      return dead[cell] ? -1 : static_cast<long>(cell);
    };
    std::vector<long> expected; // the cell of each square, row by row
    for (double j = -80.0; j <= 80.0; j += 1.0)
      for (double i = -80.0; i <= 80.0; i += 1.0) {
        if (cellAt(i, j) < 0 || cellAt(i + 1, j) < 0 || cellAt(i, j + 1) < 0 || cellAt(i + 1, j + 1) < 0) continue;
        const long centre = cellAt(i + 0.5, j + 0.5);
        expected.push_back(centre >= 0 ? centre : cellAt(i, j));
      }
    const auto& mesh = slice->extract(normal, distance, step, nullptr);
    ASSERT_EQ(mesh.getTopology().getNumCells(), expected.size()) << round;
    for (std::size_t q = 0; q < expected.size(); ++q)
      EXPECT_EQ(static_cast<long>(inputCell(mesh, q, kind.counts)), expected[q]) << round;
  }
}

TEST(GridPlaneSliceLaws, EveryShapeOfCellHoldsItsSamples) {
  const Counts n{4, 4, 4};
  for (const KbMeshMaker::Arrays& arrays :
       {KbMeshMaker::tetrahedra(n, 0.0, linear), KbMeshMaker::wedges(n, 0.0, linear),
        KbMeshMaker::pyramids(n, 0.0, linear), KbMeshMaker::mixed(n, 0.0, linear)}) {
    const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
    const std::unique_ptr<KiGridPlaneSliceExtractUnstructured> slice(
        KiGridPlaneSliceExtractUnstructured::getNewInstance(mesh, true, nullptr));
    const Surface s(slice->extract({0, 1, 0}, 0.3, 0.05, nullptr));
    EXPECT_EQ(s.polygons.size(), 400u);
    const KbScalarSetI set("linear", DataBinding::PER_NODE, arrays.values);
    const KeXDataSetI<double>* mapped = slice->extractScalarSet(set);
    ASSERT_TRUE(mapped);
    ASSERT_EQ(mapped->getSize(), 441u);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      EXPECT_NEAR(mapped->get(v), linear(s.vertices[v]), 1e-6);
  }
}

TEST(GridPlaneSliceLaws, ANodeWithoutValueSpoilsItsCellsOnly) {
  Regular kind({4, 4, 4});
  const std::unique_ptr<KiGridPlaneSliceExtractIjk> slice(
      KiGridPlaneSliceExtractIjk::getNewInstance(kind.mesh, false, nullptr));
  std::vector<float> values = kind.arrays.values;
  values[1 + 5 * (1 + 5 * 1)] = std::numeric_limits<float>::quiet_NaN();
  const Surface s(slice->extract({0, 0, 1}, 0.25, 0.25, nullptr)); // through the lattice's nodes
  const KbScalarSetIjk set("holed", DataBinding::PER_NODE, values, kind.nodes());
  const KeXDataSetI<double>* mapped = slice->extractScalarSet(set);
  ASSERT_TRUE(mapped);
  ASSERT_EQ(mapped->getSize(), 25u);
  for (std::size_t v = 0; v < 25; ++v) // other nodes take their own value alone
    EXPECT_EQ(std::isnan(mapped->get(v)), v == 6) << v;
}

} // namespace
