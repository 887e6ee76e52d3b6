// SPDX-License-Identifier: BSD-3-Clause
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>

#include <limits>
#include <memory>

namespace {

using namespace pick;

TEST(LogicalSlice, LiesAtTheLowerOrUpperSideOfItsLayer) {
  const Regular kind({4, 5, 2});
  const std::unique_ptr<KiLogicalSliceExtractRegular> e(
      KiLogicalSliceExtractRegular::getNewInstance(kind.mesh, false, nullptr));
  const std::array<std::size_t, 3> faces{10, 8, 20};
  for (std::size_t axis = 0; axis < 3; ++axis)
    for (std::size_t index = 0; index < kind.counts[axis]; ++index)
      for (const bool isUpper : {false, true}) {
        const Surface s(e->extract(static_cast<KiMesh::Dimension>(axis), index, isUpper, nullptr));
        ASSERT_EQ(s.polygons.size(), faces[axis]);
        EXPECT_NEAR(s.area(), 1.0, 1e-6);
        const double position = static_cast<double>(index + isUpper) / static_cast<double>(kind.counts[axis]);
        for (const Vec3& v : s.vertices)
          EXPECT_NEAR(v[axis], position, 1e-6);
        EXPECT_NEAR(s.vectorArea(0)[axis] * static_cast<double>(faces[axis]), isUpper ? 1.0 : -1.0, 1e-5);
      }
}

TEST(LogicalSlice, PastTheEndIsEmpty) {
  const Regular kind({4, 5, 2});
  const std::unique_ptr<KiLogicalSliceExtractRegular> e(
      KiLogicalSliceExtractRegular::getNewInstance(kind.mesh, false, nullptr));
  for (const std::size_t index : {std::size_t{2}, static_cast<std::size_t>(-1)})
    EXPECT_EQ(e->extract(KiMesh::DIMENSION_K, index, false, nullptr).getTopology().getNumCells(), 0u);
}

TEST(LogicalSlice, FaultsStayOpen) {
  HexahedronIjk hexa({2, 1, 1});
  hexa.arrays.coordinates.insert(hexa.arrays.coordinates.end(), {0.5f, 0.1f, 0.1f});
  std::vector<std::int32_t> torn = hexa.arrays.connectivity;
  torn[8] = 12;
  const KbVolumeMeshHexahedronIjk mesh({2, 1, 1}, hexa.arrays.coordinates, torn);
  const std::unique_ptr<KiLogicalSliceExtractHexahedronIjk> e(
      KiLogicalSliceExtractHexahedronIjk::getNewInstance(mesh, false, nullptr));
  const Surface lower(e->extract(KiMesh::DIMENSION_K, 0, false, nullptr));
  EXPECT_EQ(lower.vertices.size(), 7u);
  const Surface upper(e->extract(KiMesh::DIMENSION_K, 0, true, nullptr));
  EXPECT_EQ(upper.vertices.size(), 6u);

  const std::unique_ptr<KiInterpolatedLogicalSliceExtractHexahedronIjk> between(
      KiInterpolatedLogicalSliceExtractHexahedronIjk::getNewInstance(mesh, false, nullptr));
  EXPECT_EQ(between->extract(KiMesh::DIMENSION_K, 0.5, nullptr).getGeometry().getNumNodes(), 7u);
  EXPECT_EQ(between->extract(KiMesh::DIMENSION_K, 1.0, nullptr).getGeometry().getNumNodes(), 6u);
}

TEST(InterpolatedLogicalSlice, LiesAtTheFractionalPosition) {
  const Regular kind({4, 5, 2});
  const std::unique_ptr<KiInterpolatedLogicalSliceExtract> e(
      KiInterpolatedLogicalSliceExtract::getNewInstance(kind.mesh, false, nullptr));
  for (const double position : {0.0, 0.3, 1.0, 1.75, 2.0}) {
    const Surface s(e->extract(KiMesh::DIMENSION_K, position, nullptr));
    ASSERT_EQ(s.polygons.size(), 20u) << position;
    EXPECT_EQ(s.vertices.size(), 30u);
    EXPECT_NEAR(s.area(), 1.0, 1e-6);
    for (const Vec3& v : s.vertices)
      EXPECT_NEAR(v[2], position / 2.0, 1e-6);
    EXPECT_GT(s.vectorArea(0)[2], 0.0);
  }
  for (const double position :
       {-0.01, 2.01, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    EXPECT_EQ(e->extract(KiMesh::DIMENSION_K, position, nullptr).getTopology().getNumCells(), 0u) << position;
}

TEST(InterpolatedLogicalSlice, BetweenLayersShowsTheFacesOfEither) {
  for (const std::size_t closedLayer : {0u, 1u}) {
    std::vector<std::uint8_t> dead(12, 0);
    for (std::size_t cell = 0; cell < 5; ++cell)
      dead[6 * closedLayer + cell] = 1;
    const Regular kind({3, 2, 2}, dead);
    const std::unique_ptr<KiInterpolatedLogicalSliceExtract> e(
        KiInterpolatedLogicalSliceExtract::getNewInstance(kind.mesh, false, nullptr));
    const KeXSurfaceMeshUnstructured& mesh = e->extract(KiMesh::DIMENSION_K, 1.0, nullptr);
    const Surface s(mesh);
    ASSERT_EQ(s.polygons.size(), 6u);
    EXPECT_EQ(s.vertices.size(), 12u);
    EXPECT_NEAR(s.area(), 1.0, 1e-6);
    for (std::size_t p = 0; p < 6; ++p) {
      EXPECT_GT(s.vectorArea(p)[2], 0.0);
      const KeXSurfaceTopologyExplicitI& cells = mesh.getTopology();
      const std::size_t column = cells.getInputCellIndexI(p) + 3 * cells.getInputCellIndexJ(p);
      EXPECT_EQ(cells.getInputCellIndexK(p), closedLayer == 1 && column < 5 ? 0u : 1u) << p;
    }
    EXPECT_EQ(e->extract(KiMesh::DIMENSION_K, closedLayer == 1 ? 1.5 : 0.5, nullptr).getTopology().getNumCells(), 1u);
    EXPECT_EQ(e->extract(KiMesh::DIMENSION_K, closedLayer == 1 ? 2.0 : 0.0, nullptr).getTopology().getNumCells(), 1u);
  }
}

} // namespace
