// SPDX-License-Identifier: BSD-3-Clause
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiOutlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractIjk.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <tbb/global_control.h>

#include <cmath>
#include <memory>

namespace {

using namespace pick;

template <class E, class Mesh>
std::unique_ptr<E> makeOutline(const Mesh& mesh, bool parallel = false) {
  return std::unique_ptr<E>(E::getNewInstance(mesh, parallel, nullptr));
}

double lengthOf(const KeXLineMeshUnstructured& mesh) {
  double length = 0.0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiLineCell* cell = mesh.getTopology().getCell(c);
    length += (mesh.getGeometry().getCoord(cell->getNodeIndex(1)) - mesh.getGeometry().getCoord(cell->getNodeIndex(0)))
                  .length();
  }
  return length;
}

template <class K, class E>
struct Row {
  using Kind = K;
  using Extractor = E;
};
template <class R>
class VolumeOutline : public testing::Test {};
using Rows =
    testing::Types<Row<Unstructured, KiOutlineExtractUnstructured>, Row<HexahedronIjk, KiOutlineExtractHexahedronIjk>,
                   Row<VertexHexahedronIjk, KiOutlineExtractIjk>, Row<Regular, KiOutlineExtractIjk>,
                   Row<Rectilinear, KiOutlineExtractIjk>, Row<Curvilinear, KiOutlineExtractIjk>>;
TYPED_TEST_SUITE(VolumeOutline, Rows);

TYPED_TEST(VolumeOutline, IsTheTwelveEdgesOfTheCube) {
  const typename TypeParam::Kind kind({8, 9, 7});
  const auto e = makeOutline<typename TypeParam::Extractor>(kind.mesh);
  const KeXLineMeshUnstructured& lines = e->extract(nullptr);
  EXPECT_EQ(lines.getTopology().getNumCells(), 4u * (8 + 9 + 7));
  EXPECT_EQ(lines.getGeometry().getNumNodes(), 4u * (7 + 8 + 6) + 8u);
  EXPECT_NEAR(lengthOf(lines), 12.0, 0.2);
}

TYPED_TEST(VolumeOutline, MapsSetsAndKnowsInputCells) {
  const typename TypeParam::Kind kind({4, 3, 5});
  const auto e = makeOutline<typename TypeParam::Extractor>(kind.mesh);
  const KeXLineMeshUnstructured& lines = e->extract(nullptr);
  const auto nodes = TypeParam::Kind::NodeForm::set("nodes", DataBinding::PER_NODE, kind.arrays.values, kind.nodes());
  const auto* values = e->extractScalarSet(nodes);
  ASSERT_NE(values, nullptr);
  ASSERT_EQ(values->getSize(), lines.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < values->getSize(); ++v)
    EXPECT_NEAR(values->get(v), linear(lines.getGeometry().getCoord(v)), 2e-6);
  const auto cells = TypeParam::Kind::CellForm::set("cells", DataBinding::PER_CELL, kind.flat, kind.counts);
  const auto* numbers = e->extractScalarSet(cells);
  ASSERT_NE(numbers, nullptr);
  ASSERT_EQ(numbers->getSize(), lines.getTopology().getNumCells());
  for (std::size_t c = 0; c < numbers->getSize(); ++c)
    EXPECT_EQ(numbers->get(c), static_cast<double>(inputCell(lines, c, kind.counts)));
}

TYPED_TEST(VolumeOutline, ParallelEqualsSerialWithHoles) {
  std::vector<std::uint8_t> dead(20 * 21 * 19, 0);
  for (std::size_t c = 0; c < dead.size(); ++c)
    dead[c] = c * 2654435761u % 5 == 0;
  const typename TypeParam::Kind kind({20, 21, 19}, dead);
  const std::string expected = bytesOf(makeOutline<typename TypeParam::Extractor>(kind.mesh)->extract(nullptr));
  EXPECT_GT(expected.size(), 1000u);
  for (const std::size_t threads : {2u, 4u}) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    EXPECT_EQ(bytesOf(makeOutline<typename TypeParam::Extractor>(kind.mesh, true)->extract(nullptr)), expected);
  }
}

TYPED_TEST(VolumeOutline, EqualCallsDoNothingAndCancellationLeavesItUsable) {
  const typename TypeParam::Kind kind({3, 3, 3});
  Recorder recorder;
  const auto e = makeOutline<typename TypeParam::Extractor>(kind.mesh);
  e->setExtractorCallback(recorder);
  recorder.stopAt = 3;
  EXPECT_THROW(e->extract(nullptr), KiCancellationException);
  recorder.stopAt = static_cast<std::size_t>(-1);
  recorder.reset();
  const KeXLineMeshUnstructured& lines = e->extract(nullptr);
  EXPECT_EQ(lines.getTopology().getNumCells(), 36u);
  std::string nested = "B";
  for (std::size_t p = 0; p < recorder.numPhases; ++p)
    nested += "Pp";
  EXPECT_EQ(recorder.withoutSteps(), nested + "e");
  const std::size_t stamp = lines.getGeometry().getTimeStamp();
  recorder.reset();
  e->extract(nullptr);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(lines.getGeometry().getTimeStamp(), stamp);
}

TYPED_TEST(VolumeOutline, OfNothingIsEmpty) {
  const typename TypeParam::Kind kind({2, 2, 2}, std::vector<std::uint8_t>(8, 1));
  const auto e = makeOutline<typename TypeParam::Extractor>(kind.mesh);
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 0u);
}

TEST(Outline, KeepsTheIndexBoxOfARoundedGrid) {
  // A grid whose upper side bends smoothly into the next one: only the index box tells its edge.
  Curvilinear kind({1, 1, 1});
  kind.arrays.coordinates = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1.2f, 1.2f, 0.1f};
  kind.mesh.setCoordinates(kind.arrays.coordinates);
  EXPECT_EQ(makeOutline<KiOutlineExtractIjk>(kind.mesh)->extract(nullptr).getTopology().getNumCells(), 12u);
}

TEST(Outline, ThirtyDegreesDecide) {
  for (const double degrees : {29.0, 31.0}) {
    const auto c = static_cast<float>(std::cos(degrees * 3.14159265358979 / 180.0));
    const auto s = static_cast<float>(std::sin(degrees * 3.14159265358979 / 180.0));
    const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1 + c, 0, s, 1 + c, 1, s};
    for (const bool isFlipped : {false, true}) {
      std::vector<std::int32_t> nodes{0, 1, 2, 3, 1, 4, 5, 2};
      if (isFlipped) std::swap(nodes[4], nodes[7]), std::swap(nodes[5], nodes[6]);
      const KbSurfaceMeshUnstructured mesh(xyz, KbCells(KiSurfaceCell::QUADRANGLE, nodes));
      EXPECT_EQ(makeOutline<KiOutlineExtractUnstructured>(mesh)->extract(nullptr).getTopology().getNumCells(),
                degrees > 30.0 ? 7u : 6u);
    }
  }
}

TEST(Outline, NonManifoldEdgesAreFeatures) {
  const std::vector<float> xyz{0, 0, 0, 0, 1, 0, 1, 0, 0, -1, 0, 0, -1, 0, 0.1f};
  const std::vector<std::int32_t> nodes{0, 1, 2, 1, 0, 3, 1, 0, 4};
  const KbSurfaceMeshUnstructured mesh(xyz, KbCells(KiSurfaceCell::TRIANGLE, nodes));
  EXPECT_EQ(makeOutline<KiOutlineExtractUnstructured>(mesh)->extract(nullptr).getTopology().getNumCells(), 7u);
}

TEST(Outline, OfStructuredSurfacesIsTheirRim) {
  const KbSurfaceMeshRegular regular({5, 4}, {0, 0, 0}, {1, 1, 0});
  const std::vector<float> x{0, 0.1f, 0.5f, 1};
  const KbSurfaceMeshRectilinear rectilinear(x, x);
  const KbMeshMaker::Arrays a = KbMeshMaker::surfaceLattice({20, 10});
  const KbSurfaceMeshCurvilinear curvilinear({20, 10}, a.coordinates);
  EXPECT_EQ(makeOutline<KiOutlineExtractIj>(regular)->extract(nullptr).getTopology().getNumCells(), 18u);
  EXPECT_EQ(makeOutline<KiOutlineExtractIj>(rectilinear)->extract(nullptr).getTopology().getNumCells(), 12u);
  const auto e = makeOutline<KiOutlineExtractIj>(curvilinear);
  const KeXLineMeshUnstructured& lines = e->extract(nullptr);
  EXPECT_EQ(lines.getTopology().getNumCells(), 60u);
  EXPECT_EQ(lines.getTopology().getInputCellIndexK(0), KeXTopologyI::UNDEFINED_INDEX);
  const KbScalarSetIj heights("heights", DataBinding::PER_NODE, a.values, {21, 11});
  ASSERT_NE(e->extractScalarSet(heights), nullptr);
  EXPECT_EQ(e->extractScalarSet(heights)->getSize(), 60u);
  const KbCellListFilterIj one({{3, 3}});
  EXPECT_EQ(e->extract(&one).getTopology().getNumCells(), 4u);
}

} // namespace
