// SPDX-License-Identifier: BSD-3-Clause
// The arrays that meshes and sets offer say the same as their virtual operations, for every kind.
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

namespace {

using namespace meshtest;
using Arrays = KbMeshMaker::Arrays;

/// Every third cell is dead.
std::vector<std::uint8_t> someDead(std::size_t numCells) {
  std::vector<std::uint8_t> dead(numCells, 0);
  for (std::size_t c = 1; c < numCells; c += 3)
    dead[c] = 1;
  return dead;
}

bool rawDead(const KiRawArrays& topology, std::size_t cell) {
  return static_cast<const std::uint8_t*>(topology.getRawArray(KiRawArrays::DEAD).data)[cell] != 0;
}

Point rawPoint(const KiRawArrays& geometry, std::size_t node) {
  const KiRawArray c = geometry.getRawArray(KiRawArrays::COORDINATES);
  return {rawValue(c, 3 * node), rawValue(c, 3 * node + 1), rawValue(c, 3 * node + 2)};
}

int shapeOf(const KiVolumeCell& cell) { return cell.getShape(); }
int shapeOf(const KiSurfaceCell& cell) { return cell.getShape(); }
int shapeOf(const KiLineCell& cell) { return cell.getShape(); }

/// Reads the cells as an extractor does, from the arrays alone, and compares.
template <class Mesh>
void expectSame(const Mesh& mesh) {
  const auto& topology = mesh.getTopology();
  const KiRawArray nodes = topology.getRawArray(KiRawArrays::CONNECTIVITY);
  const KiRawArray offsets = topology.getRawArray(KiRawArrays::OFFSETS);
  const KiRawArray shapes = topology.getRawArray(KiRawArrays::SHAPES);
  ASSERT_GT(topology.getNumCells(), 0u);
  const std::size_t nodesPerCell = nodes.size / topology.getNumCells();
  for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
    const auto& cell = *topology.getCell(c);
    const std::size_t begin = offsets ? static_cast<std::size_t>(rawIndex(offsets, c)) : c * nodesPerCell;
    const std::size_t end = offsets ? static_cast<std::size_t>(rawIndex(offsets, c + 1)) : (c + 1) * nodesPerCell;
    ASSERT_EQ(cell.getNumNodes(), end - begin);
    for (std::size_t n = begin; n < end; ++n)
      ASSERT_EQ(cell.getNodeIndex(n - begin), static_cast<std::size_t>(rawIndex(nodes, n)));
    ASSERT_EQ(shapeOf(cell), static_cast<const std::uint8_t*>(shapes.data)[shapes.size == 1 ? 0 : c]);
    ASSERT_EQ(topology.isDead(c), rawDead(topology, c));
  }
  for (std::size_t n = 0; n < topology.getEndNodeId(); ++n)
    ASSERT_EQ(mesh.getGeometry().getCoord(n), rawPoint(mesh.getGeometry(), n));
}

// What would be gone before the first use is refused by the compiler.
static_assert(std::is_constructible_v<KbArray, const std::array<double, 3>&>);
static_assert(!std::is_constructible_v<KbArray, std::array<double, 3>>);
static_assert(!std::is_constructible_v<KbArray, std::vector<double>>);
static_assert(std::is_constructible_v<KbSpan<int>, const std::array<int, 3>&>);
static_assert(!std::is_constructible_v<KbSpan<int>, std::array<int, 3>>);
static_assert(!std::is_constructible_v<KbSpan<int>, std::vector<int>>);

TEST(KbRawArrays, UnstructuredVolumes) {
  for (const auto make : {KbMeshMaker::mixed, KbMeshMaker::tetrahedra}) {
    const Arrays arrays = make({4, 3, 5}, 0.03, KbMeshMaker::wave);
    const std::size_t numCells = arrays.offsets.empty() ? arrays.connectivity.size() / 4 : arrays.offsets.size() - 1;
    const std::vector<std::uint8_t> dead = someDead(numCells);
    expectSame(KbVolumeMeshUnstructured(arrays.coordinates, arrays.cells(), dead));
    // The same in double and 64 bits.
    const std::vector<double> coordinates(arrays.coordinates.begin(), arrays.coordinates.end());
    const std::vector<std::int64_t> connectivity(arrays.connectivity.begin(), arrays.connectivity.end());
    const std::vector<std::int64_t> offsets(arrays.offsets.begin(), arrays.offsets.end());
    const KbCells cells = arrays.shapes.size() == 1 ? KbCells(arrays.shapes[0], connectivity)
                                                    : KbCells(arrays.shapes, connectivity, offsets);
    expectSame(KbVolumeMeshUnstructured(coordinates, cells, dead));
  }
}

TEST(KbRawArrays, UnstructuredSurfacesAndLines) {
  const Arrays arrays = KbMeshMaker::quadrangles({5, 4});
  const std::vector<std::uint8_t> dead = someDead(20);
  expectSame(KbSurfaceMeshUnstructured(arrays.coordinates, arrays.cells(), dead));
  const std::vector<std::uint8_t> deadLines = someDead(40);
  expectSame(KbLineMeshUnstructured(arrays.coordinates, {KiLineCell::LINE, arrays.connectivity}, deadLines));
}

TEST(KbRawArrays, StructuredGeometriesCountIFastest) {
  const Arrays arrays = KbMeshMaker::lattice({3, 4, 5}, 0.03);
  const std::vector<std::uint8_t> dead = someDead(60);
  const KbVolumeMeshCurvilinear volume({3, 4, 5}, arrays.coordinates, dead);
  for (std::size_t k = 0; k <= 5; ++k) {
    for (std::size_t j = 0; j <= 4; ++j) {
      for (std::size_t i = 0; i <= 3; ++i)
        EXPECT_EQ(volume.getGeometry().getCoord(i, j, k), rawPoint(volume.getGeometry(), i + 4 * (j + 5 * k)));
    }
  }
  const KbVolumeMeshRegular regular({3, 4, 5}, {0, 0, 0}, {1, 1, 1}, dead);
  for (std::size_t c = 0; c < 60; ++c) {
    EXPECT_EQ(volume.getTopology().isDead(c % 3, c / 3 % 4, c / 12), rawDead(volume.getTopology(), c));
    EXPECT_EQ(regular.getTopology().isDead(c % 3, c / 3 % 4, c / 12), rawDead(regular.getTopology(), c));
  }
  const Arrays flat = KbMeshMaker::surfaceLattice({6, 3});
  const KbSurfaceMeshCurvilinear surface({6, 3}, flat.coordinates);
  const KbLineMeshCurvilinear line({27}, flat.coordinates);
  for (std::size_t n = 0; n < 28; ++n) {
    EXPECT_EQ(surface.getGeometry().getCoord(n % 7, n / 7), rawPoint(surface.getGeometry(), n));
    EXPECT_EQ(line.getGeometry().getCoord(n), rawPoint(line.getGeometry(), n));
  }
}

TEST(KbRawArrays, HexahedronIjk) {
  const Arrays arrays = KbMeshMaker::hexahedra({3, 2, 4}, 0.03);
  const std::vector<std::uint8_t> dead = someDead(24);
  const KbVolumeMeshHexahedronIjk mesh({3, 2, 4}, arrays.coordinates, arrays.connectivity, dead);
  const KiRawArray nodes = mesh.getTopology().getRawArray(KiRawArrays::CONNECTIVITY);
  for (std::size_t c = 0; c < 24; ++c) {
    std::size_t ids[8];
    mesh.getTopology().getCellNodeIds(c % 3, c / 3 % 2, c / 6, ids);
    for (std::size_t n = 0; n < 8; ++n)
      EXPECT_EQ(ids[n], static_cast<std::size_t>(rawIndex(nodes, 8 * c + n)));
    EXPECT_EQ(mesh.getTopology().isDead(c % 3, c / 3 % 2, c / 6), rawDead(mesh.getTopology(), c));
  }
}

TEST(KbRawArrays, DataSets) {
  const Arrays arrays = KbMeshMaker::lattice({3, 4, 5});
  const KbScalarSetIjk solid("a", DataBinding::PER_NODE, arrays.values, {4, 5, 6});
  const KbVec3SetIj flat("b", DataBinding::PER_NODE, arrays.coordinates, {20, 6});
  const KbVec3SetI row("c", DataBinding::PER_NODE, arrays.coordinates);
  for (std::size_t n = 0; n < 120; ++n) {
    EXPECT_EQ(solid.get(n % 4, n / 4 % 5, n / 20), rawValue(solid.getRawArray(KiRawArrays::VALUES), n));
    for (std::size_t c = 0; c < 3; ++c) {
      EXPECT_EQ(flat.get(n % 20, n / 20)[c], rawValue(flat.getRawArray(KiRawArrays::VALUES), 3 * n + c));
      EXPECT_EQ(row.get(n)[c], rawValue(row.getRawArray(KiRawArrays::VALUES), 3 * n + c));
    }
  }
}

} // namespace
