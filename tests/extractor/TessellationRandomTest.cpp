// SPDX-License-Identifier: BSD-3-Clause
// Random meshes with quadratic cells: what must be closed is closed, and broken meshes do no harm.
#include "extractor/ArrayMeshes.h"
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

namespace {

using namespace pick;

/// A smooth map of the cube that bends everything, and a random part of the cells quadratic.
quadratic::Mesh makeRandom(std::mt19937& random) {
  std::uniform_real_distribution<double> amount(-0.12, 0.12);
  std::array<std::array<double, 6>, 3> waves;
  for (auto& wave : waves)
    for (double& w : wave)
      w = amount(random);
  const auto bend = [waves](const Vec3& p) {
    Vec3 q = p;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double u = p[(axis + 1) % 3];
      const double v = p[(axis + 2) % 3];
      const auto& w = waves[axis];
      q[axis] += w[0] * std::sin(3.0 * u) + w[1] * std::cos(2.0 * v) + w[2] * u * v + w[3] * std::sin(2.0 * u + v) +
                 w[4] * u * u + w[5] * v * v;
    }
    return q;
  };
  const quadratic::Maker& maker = quadratic::MAKERS[random() % quadratic::MAKERS.size()];
  std::vector<bool> chosen(2000);
  const std::size_t share = random() % 4; // of four cells, how many stay linear
  for (std::size_t c = 0; c < chosen.size(); ++c)
    chosen[c] = random() % 4 >= share;
  return quadratic::volume(maker.make({2 + random() % 3, 2 + random() % 3, 2 + random() % 2}, 0.0, KbMeshMaker::wave),
                           bend, [&](std::size_t cell) { return chosen[cell % chosen.size()]; });
}

TEST(TessellationRandom, ClosedSurfacesAreClosed) {
  std::size_t numCut = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const quadratic::Mesh q = makeRandom(random);
    const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
    const std::unique_ptr<KiTessellator> tessellator(
        KiTessellator::getNewTessellatorBasic(0.0, 1 + random() % 4, 0.002 * static_cast<double>(1 + random() % 20)));
    const std::unique_ptr<KiSkinExtractUnstructured> skin(
        KiSkinExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
    const Surface s(skin->extract(nullptr));
    EXPECT_EQ(s.numOpenEdges(), 0u);
    EXPECT_GT(s.volume(), 0.0);
    // Random values around the middle, and one value, less than the isovalue, at the border.
    if (std::any_of(s.vertices.begin(), s.vertices.end(), [](const Vec3& p) { return p.length() < 0.75; })) continue;
    ++numCut;
    std::uniform_real_distribution<double> dent(-0.5, 0.5);
    std::vector<double> values;
    for (std::size_t n = 0; n < q.numNodes(); ++n)
      values.push_back(q.point(n).length() < 0.7 ? 1.0 + dent(random) : -1.0);
    const KbScalarSetI set("dents", DataBinding::PER_NODE, values);
    const std::unique_ptr<KiIsosurfExtractUnstructured> iso(
        KiIsosurfExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
    const Surface cut(iso->extract(0.3, set, nullptr));
    // Each edge has an even number of polygons. Which way they go round says nothing where a bent cell is folded.
    std::map<std::pair<std::size_t, std::size_t>, int> uses;
    for (const auto& ids : cut.polygons)
      for (std::size_t c = 0; c < ids.size(); ++c)
        ++uses[std::minmax(ids[c], ids[(c + 1) % ids.size()])];
    const auto numOpen = std::count_if(uses.begin(), uses.end(), [](const auto& use) { return use.second % 2 != 0; });
    EXPECT_EQ(numOpen, 0);
    EXPECT_GT(cut.polygons.size(), 0u);
  }
  EXPECT_GT(numCut, 10u);
}

/// All indices name vertices, all input cells exist.
template <class Mesh>
void expectConsistent(const Mesh& mesh, std::size_t numCells) {
  const KiBuffer& buffer = *mesh.getTopology().getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(buffer.getData());
  const auto numVertices = static_cast<std::int32_t>(mesh.getGeometry().getNumNodes());
  for (std::size_t i = 0; i < buffer.getByteSize() / sizeof(std::int32_t); ++i)
    ASSERT_TRUE(index[i] >= -1 && index[i] < numVertices) << index[i];
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c)
    ASSERT_LT(mesh.getTopology().getInputCellIndexI(c), numCells);
}

TEST(TessellationRandom, BrokenMeshesDoNoHarm) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    quadratic::Mesh q = makeRandom(random);
    for (std::size_t n = 0; n < 6; ++n) { // repeated nodes, and some that are out of range
      std::int32_t& node = q.connectivity[random() % q.connectivity.size()];
      node = random() % 4 == 0 ? static_cast<std::int32_t>(q.numNodes() + random() % 100)
                               : q.connectivity[random() % q.connectivity.size()];
    }
    for (std::size_t n = 0; n < 3; ++n)
      q.coordinates[random() % q.coordinates.size()] =
          n == 0 ? std::nan("") : std::numeric_limits<double>::infinity() * (n == 1 ? 1.0 : -1.0);
    if (random() % 2 == 0) q.shapes[random() % q.shapes.size()] = static_cast<std::uint8_t>(random() % 12);
    std::vector<double> values = q.values([](const Vec3& p) { return p[0] + 0.3 * p[1] * p[1]; });
    values[random() % values.size()] = std::nan("");
    arrays::CellArrays<std::int32_t> cells;
    cells.connectivity = q.connectivity;
    cells.offsets = q.offsets;
    cells.shapes = q.shapes;
    cells.numCells = q.numCells();
    cells.numNodes = q.numNodes();
    const arrays::UnstructuredMesh<arrays::Access::RAW, std::int32_t, double> mesh(q.coordinates, cells);
    const KbScalarSetI set("values", DataBinding::PER_NODE, values);
    const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(0.0, 2));
    KiTessellator* t = tessellator.get();
    const MessageLog log;
    const std::unique_ptr<KiIsosurfExtractUnstructured> iso(
        KiIsosurfExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(iso->extract(0.1, set, nullptr), q.numCells());
    expectConsistent(*iso->extractLines(0.1, set, nullptr), q.numCells());
    const std::unique_ptr<KiPlaneSliceExtractUnstructured> slice(
        KiPlaneSliceExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(slice->extract(Vec3(1, 2, 3), 0.1, nullptr), q.numCells());
    EXPECT_NE(slice->extractScalarSet(set), nullptr);
    const std::unique_ptr<KiSkinExtractUnstructured> skin(KiSkinExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(skin->extract(nullptr), q.numCells());
    expectConsistent(*skin->extractLines(nullptr), q.numCells());
    ASSERT_NE(skin->extractPoints(nullptr), nullptr);
    const std::unique_ptr<KiOutlineExtractUnstructured> outline(
        KiOutlineExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(outline->extract(nullptr), q.numCells());
    const std::unique_ptr<KiCellExtractUnstructured> chosen(KiCellExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(chosen->extract(0.7, nullptr), q.numCells());
    const std::unique_ptr<KiFenceSliceExtractUnstructured> fence(
        KiFenceSliceExtractUnstructured::getNewInstance(mesh, false, t));
    expectConsistent(fence->extract(Vec3(0, 0, 1), {Vec3(-1, 0.1, 0), Vec3(0.2, 0, 0), Vec3(0.3, 1, 0)}, nullptr),
                     q.numCells());
    EXPECT_FALSE(log.lines.empty());
  }
}

} // namespace
