// SPDX-License-Identifier: BSD-3-Clause
// The way through structured grids against the way through the same cells given one by one: every polygon, corner by
// corner, on grids full of what needs care.
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

using namespace arrays;

namespace {

/// Refuses some cells, by either form of address.
class SomeCells final : public KiCellFilterI, public KiCellFilterIjk {
public:
  SomeCells(Counts counts, std::vector<bool> accepted)
      : m_counts(counts)
      , m_accepted(std::move(accepted)) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t cell) const override { return m_accepted[cell]; }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override {
    return m_accepted[i + m_counts[0] * (j + m_counts[1] * k)];
  }

private:
  Counts m_counts;
  std::vector<bool> m_accepted;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// One grid as a structured mesh of each kind and as hexahedra.
struct Grid {
  std::mt19937 random;
  Counts cells;
  Counts nodes;
  std::array<std::vector<double>, 3> axes;
  std::vector<double> xyz;
  std::vector<std::int32_t> connectivity;
  std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON};
  std::vector<std::uint8_t> dead;
  std::vector<bool> accepted;

  /// `warp` moves the nodes off the axes; `isRising` tells the direction of each axis.
  Grid(unsigned seed, Counts counts, double warp, std::array<bool, 3> isRising, double deadPart, double refusedPart)
      : random(seed)
      , cells(counts)
      , nodes{counts[0] + 1, counts[1] + 1, counts[2] + 1} {
    for (std::size_t a = 0; a < 3; ++a)
      for (std::size_t i = 0; i < nodes[a]; ++i)
        axes[a].push_back(0.125 * static_cast<double>(isRising[a] ? i : counts[a] - i));
    for (std::size_t k = 0; k < nodes[2]; ++k)
      for (std::size_t j = 0; j < nodes[1]; ++j)
        for (std::size_t i = 0; i < nodes[0]; ++i)
          xyz.insert(xyz.end(), {axes[0][i] + warp * std::sin(9.0 * axes[1][j]),
                                 axes[1][j] + warp * std::sin(9.0 * axes[2][k]), axes[2][k]});
    const auto node = [this](std::size_t i, std::size_t j, std::size_t k) {
      return static_cast<std::int32_t>(i + nodes[0] * (j + nodes[1] * k));
    };
    for (std::size_t k = 0; k < cells[2]; ++k)
      for (std::size_t j = 0; j < cells[1]; ++j)
        for (std::size_t i = 0; i < cells[0]; ++i)
          connectivity.insert(connectivity.end(), {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k),
                                                   node(i, j + 1, k), node(i, j, k + 1), node(i + 1, j, k + 1),
                                                   node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)});
    const std::size_t numCells = cells[0] * cells[1] * cells[2];
    std::bernoulli_distribution dies(deadPart);
    std::bernoulli_distribution refuses(refusedPart);
    if (deadPart > 0.0)
      for (std::size_t c = 0; c < numCells; ++c)
        dead.push_back(dies(random));
    if (refusedPart > 0.0)
      for (std::size_t c = 0; c < numCells; ++c)
        accepted.push_back(!refuses(random));
  }
  std::size_t numNodes() const { return nodes[0] * nodes[1] * nodes[2]; }
  CellArrays<std::int32_t> explicitCells() const {
    CellArrays<std::int32_t> list;
    list.connectivity = connectivity;
    list.shapes = shapes;
    list.numCells = connectivity.size() / 8;
    list.numNodes = numNodes();
    list.dead = dead;
    return list;
  }
};

/// Polygons by input cell and by the positions of their corners, which both ways find by the same arithmetic.
using Polygons = std::multiset<std::pair<std::size_t, std::vector<std::array<float, 3>>>>;

Polygons polygonsOf(const KeXSurfaceMeshUnstructured& mesh, const Counts& cells) {
  const Surface s(mesh);
  const KeXSurfaceTopologyExplicitI& topology = mesh.getTopology();
  Polygons result;
  std::set<std::size_t> used;
  for (std::size_t p = 0; p < s.polygons.size(); ++p) {
    std::vector<std::array<float, 3>> corners;
    for (const std::size_t v : s.polygons[p]) {
      corners.push_back({static_cast<float>(s.vertices[v][0]), static_cast<float>(s.vertices[v][1]),
                         static_cast<float>(s.vertices[v][2])});
      used.insert(v);
    }
    EXPECT_EQ(std::set<std::size_t>(s.polygons[p].begin(), s.polygons[p].end()).size(), s.polygons[p].size());
    std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end()), corners.end());
    std::size_t cell = topology.getInputCellIndexI(p);
    if (topology.hasStructuredInputCells())
      cell += cells[0] * (topology.getInputCellIndexJ(p) + cells[1] * topology.getInputCellIndexK(p));
    result.emplace(cell, std::move(corners));
  }
  EXPECT_EQ(used.size(), s.vertices.size()) << "vertices that no polygon uses";
  return result;
}

enum class Field { SMOOTH, TIES, HOLES };

std::vector<float> valuesOf(Grid& grid, Field field) {
  std::vector<float> values;
  std::uniform_real_distribution<float> any(-1.5f, 1.5f);
  std::bernoulli_distribution isHole(0.03);
  for (std::size_t n = 0; n < grid.numNodes(); ++n) {
    const float v = any(grid.random);
    values.push_back(field == Field::TIES ? std::round(v) : v);
    if (field == Field::HOLES && isHole(grid.random))
      values.back() = n % 2 == 0 ? std::numeric_limits<float>::quiet_NaN() : std::numeric_limits<float>::infinity();
  }
  return values;
}

TEST(GridCut, IsosurfacesHaveThePolygonsOfTheSameHexahedra) {
  unsigned seed = 0;
  for (const Counts& counts :
       {Counts{1, 1, 1}, Counts{5, 4, 3}, Counts{31, 3, 4}, Counts{32, 2, 3}, Counts{71, 4, 2}, Counts{3, 40, 2}}) {
    for (const Field field : {Field::SMOOTH, Field::TIES, Field::HOLES}) {
      for (const auto& [deadPart, refusedPart] :
           {std::pair{0.0, 0.0}, {0.1, 0.0}, {0.6, 0.0}, {0.0, 0.3}, {0.1, 0.1}}) {
        SCOPED_TRACE(++seed);
        Grid grid(seed, counts, 0.02, {true, true, true}, deadPart, refusedPart);
        const std::vector<float> values = valuesOf(grid, field);
        const SomeCells filter(counts, grid.accepted);
        const SomeCells* used = refusedPart > 0.0 ? &filter : nullptr;
        const UnstructuredMesh<Access::RAW, std::int32_t, double> hexahedra(grid.xyz, grid.explicitCells());
        const CurvilinearMesh<Access::RAW, double> raw(counts, grid.xyz, grid.dead);
        const CurvilinearMesh<Access::VIRTUAL, double> plain(counts, grid.xyz, grid.dead);
        const Set<Access::RAW, float> set("f", DataBinding::PER_NODE, values, grid.nodes);
        const Set<Access::VIRTUAL, float> plainSet("f", DataBinding::PER_NODE, values, grid.nodes);
        const std::unique_ptr<KiIsosurfExtractUnstructured> one(
            KiIsosurfExtractUnstructured::getNewInstance(hexahedra, false, nullptr));
        const std::unique_ptr<KiIsosurfExtractIjk> rows(KiIsosurfExtractIjk::getNewInstance(raw, true, nullptr));
        const std::unique_ptr<KiIsosurfExtractIjk> plainRows(
            KiIsosurfExtractIjk::getNewInstance(plain, false, nullptr));
        for (const double isovalue : {0.0, 0.25, 1.0, -1.0, 0.0}) {
          const Polygons expected = polygonsOf(one->extract(isovalue, set, used), counts);
          EXPECT_EQ(polygonsOf(rows->extract(isovalue, set, used), counts), expected) << isovalue;
          EXPECT_EQ(polygonsOf(plainRows->extract(isovalue, plainSet, used), counts), expected) << isovalue;
        }
      }
    }
  }
}

TEST(GridCut, CellValuesAreAveragedOverTheOpenCells) {
  for (const auto& [deadPart, refusedPart] : {std::pair{0.0, 0.0}, {0.3, 0.0}, {0.2, 0.2}}) {
    const Counts counts{37, 6, 5};
    Grid grid(7, counts, 0.01, {true, true, true}, deadPart, refusedPart);
    const std::size_t numCells = counts[0] * counts[1] * counts[2];
    std::vector<float> values;
    for (std::size_t c = 0; c < numCells; ++c)
      values.push_back(std::uniform_real_distribution<float>(-1.0f, 1.0f)(grid.random));
    // By hand: every cell gives its value to its corners.
    std::vector<double> sums(grid.numNodes(), 0.0);
    std::vector<double> numbers(grid.numNodes(), 0.0);
    for (std::size_t c = 0; c < numCells; ++c) {
      if ((!grid.dead.empty() && grid.dead[c] != 0) || (!grid.accepted.empty() && !grid.accepted[c])) continue;
      for (std::size_t corner = 8 * c; corner < 8 * c + 8; ++corner) {
        sums[static_cast<std::size_t>(grid.connectivity[corner])] += static_cast<double>(values[c]);
        numbers[static_cast<std::size_t>(grid.connectivity[corner])] += 1.0;
      }
    }
    std::vector<double> averages;
    for (std::size_t n = 0; n < sums.size(); ++n)
      averages.push_back(sums[n] / numbers[n]);

    const SomeCells filter(counts, grid.accepted);
    const SomeCells* used = refusedPart > 0.0 ? &filter : nullptr;
    const Set<Access::RAW, double> nodeSet("by hand", DataBinding::PER_NODE, averages, grid.nodes);
    const Set<Access::RAW, float> rawSet("f", DataBinding::PER_CELL, values, counts);
    const Set<Access::VIRTUAL, float> plainSet("f", DataBinding::PER_CELL, values, counts);
    const auto compare = [&](auto& extractor, const auto& set, const auto& byHand) {
      for (const double isovalue : {0.0, 0.1}) {
        const Surface expected(extractor.extract(isovalue, byHand, used));
        const Surface averaged(extractor.extract(isovalue, set, used));
        EXPECT_GT(expected.polygons.size(), 100u);
        EXPECT_EQ(averaged.polygons, expected.polygons);
        ASSERT_EQ(averaged.vertices.size(), expected.vertices.size());
        for (std::size_t v = 0; v < expected.vertices.size(); ++v)
          EXPECT_NEAR((averaged.vertices[v] - expected.vertices[v]).length(), 0.0, 1e-6) << v;
      }
    };
    const CurvilinearMesh<Access::RAW, double> mesh(counts, grid.xyz, grid.dead);
    const std::unique_ptr<KiIsosurfExtractIjk> rows(KiIsosurfExtractIjk::getNewInstance(mesh, true, nullptr));
    compare(*rows, static_cast<const KiDataSetIjk<double>&>(rawSet), nodeSet);
    compare(*rows, static_cast<const KiDataSetIjk<double>&>(plainSet), nodeSet);
    const UnstructuredMesh<Access::RAW, std::int32_t, double> hexahedra(grid.xyz, grid.explicitCells());
    const std::unique_ptr<KiIsosurfExtractUnstructured> one(
        KiIsosurfExtractUnstructured::getNewInstance(hexahedra, true, nullptr));
    compare(*one, static_cast<const KiDataSetI<double>&>(rawSet), nodeSet);
  }
}

TEST(GridCut, TheAverageOfEqualValuesIsTheirValue) {
  // A plateau at 0.7, which no sum of some 0.7 divided by their number need be, stays inside at that isovalue.
  const Counts counts{9, 9, 9};
  Grid grid(3, counts, 0.0, {true, true, true}, 0.3, 0.0);
  std::vector<double> values(9 * 9 * 9, 0.7);
  const CurvilinearMesh<Access::RAW, double> mesh(counts, grid.xyz, grid.dead);
  const Set<Access::RAW, double> set("f", DataBinding::PER_CELL, values, counts);
  const std::unique_ptr<KiIsosurfExtractIjk> rows(KiIsosurfExtractIjk::getNewInstance(mesh, false, nullptr));
  EXPECT_EQ(rows->extract(0.7, set, nullptr).getTopology().getNumCells(), 0u);
  values[4 + 9 * (4 + 9 * 4)] = 0.1;
  grid.dead[4 + 9 * (4 + 9 * 4)] = 0;
  const std::unique_ptr<KiIsosurfExtractIjk> again(KiIsosurfExtractIjk::getNewInstance(mesh, false, nullptr));
  EXPECT_GT(again->extract(0.7, set, nullptr).getTopology().getNumCells(), 0u);
}

/// Runs `extract(extractor, turn)` over the structured kinds of a grid and over its hexahedra. Counts are powers of
/// two, so that all kinds have the very same nodes.
template <class Ijk, class Unstructured, class Extract>
void compareSlices(unsigned seed, const Counts& counts, std::array<bool, 3> isRising, const Extract& extract) {
  constexpr int TURNS = 3;
  for (const double warp : {0.0, 0.01}) {
    for (const double deadPart : {0.0, 0.2}) {
      Grid grid(seed, counts, warp, isRising, deadPart, 0.0);
      SCOPED_TRACE(testing::Message() << "seed " << seed << " warp " << warp << " dead " << deadPart);
      const UnstructuredMesh<Access::RAW, std::int32_t, double> hexahedra(grid.xyz, grid.explicitCells());
      const std::unique_ptr<Unstructured> one(Unstructured::getNewInstance(hexahedra, false, nullptr));
      std::vector<Polygons> expected;
      for (int turn = 0; turn < TURNS; ++turn)
        expected.push_back(polygonsOf(extract(*one, turn), counts));
      const auto compare = [&](const auto& mesh, const char* kind) {
        SCOPED_TRACE(kind);
        const std::unique_ptr<Ijk> rows(Ijk::getNewInstance(mesh, true, nullptr));
        for (int turn = 0; turn < TURNS; ++turn)
          EXPECT_EQ(polygonsOf(extract(*rows, turn), counts), expected[static_cast<std::size_t>(turn)]) << turn;
      };
      compare(CurvilinearMesh<Access::RAW, double>(counts, grid.xyz, grid.dead), "curvilinear");
      compare(CurvilinearMesh<Access::VIRTUAL, double>(counts, grid.xyz, grid.dead), "curvilinear, virtual");
      if (warp != 0.0) continue;
      compare(RectilinearMesh<Access::RAW>(counts, grid.axes, grid.dead), "rectilinear");
      compare(RegularMesh<Access::RAW>(counts, {grid.axes[0].front(), grid.axes[1].front(), grid.axes[2].front()},
                                       {grid.axes[0].back(), grid.axes[1].back(), grid.axes[2].back()}, grid.dead),
              "regular");
    }
  }
}

/// Small multiples of a node spacing half the time, so that planes and spheres meet nodes.
KbVec3<double> somePoint(std::mt19937& random, const Counts& counts, bool isOnNode) {
  KbVec3<double> p;
  for (std::size_t a = 0; a < 3; ++a) {
    p[a] = std::uniform_real_distribution<double>(0.0, static_cast<double>(counts[a]))(random);
    p[a] = 0.125 * (isOnNode ? std::round(p[a]) : p[a]);
  }
  return p;
}

TEST(GridCut, SlicesHaveThePolygonsOfTheSameHexahedra) {
  for (unsigned seed = 1; seed <= 24; ++seed) {
    std::mt19937 random(seed);
    const Counts counts = seed % 3 == 0 ? Counts{64, 8, 4} : seed % 3 == 1 ? Counts{16, 8, 8} : Counts{32, 16, 4};
    const std::array<bool, 3> isRising{seed % 2 == 0, seed % 5 != 0, seed % 7 != 0};
    std::vector<KbVec3<double>> normals;
    std::vector<KbVec3<double>> points;
    std::vector<double> radii;
    for (int turn = 0; turn < 3; ++turn) {
      const bool isOnNode = (seed + static_cast<unsigned>(turn)) % 2 == 0;
      KbVec3<double> n;
      for (std::size_t a = 0; a < 3; ++a)
        n[a] = static_cast<double>(std::uniform_int_distribution<int>(-2, 2)(random));
      if (n.length() == 0.0) n = {0.0, 1.0, 0.0};
      normals.push_back(n);
      points.push_back(somePoint(random, counts, isOnNode));
      const double r = std::uniform_real_distribution<double>(0.1, 1.5)(random);
      radii.push_back(isOnNode ? 0.125 * std::round(8.0 * r) : r);
    }
    const auto at = [](int turn) { return static_cast<std::size_t>(turn); };
    compareSlices<KiPlaneSliceExtractIjk, KiPlaneSliceExtractUnstructured>(
        seed, counts, isRising, [&](auto& extractor, int turn) -> const KeXSurfaceMeshUnstructured& {
          const KbVec3<double> n = normals[at(turn)].normalized();
          return extractor.extract(n, n.dot(points[at(turn)]), nullptr);
        });
    compareSlices<KiSphereSliceExtractIjk, KiSphereSliceExtractUnstructured>(
        seed, counts, isRising, [&](auto& extractor, int turn) -> const KeXSurfaceMeshUnstructured& {
          return extractor.extract(points[at(turn)], radii[at(turn)], nullptr);
        });
    compareSlices<KiCylinderSliceExtractIjk, KiCylinderSliceExtractUnstructured>(
        seed, counts, isRising, [&](auto& extractor, int turn) -> const KeXSurfaceMeshUnstructured& {
          return extractor.extract(points[at(turn)], radii[at(turn)], normals[at(turn)], nullptr);
        });
  }
}

TEST(GridCut, AxesThatTurnBackAreReadAsTheyAre) {
  // Not a mesh to be proud of, yet every cell is cut where the plane crosses it.
  const Counts counts{6, 3, 3};
  std::array<std::vector<double>, 3> axes{{{0.0, 1.0, 2.0, 1.5, 2.5, 3.0, 4.0}, {0, 1, 2, 3}, {0, 1, 2, 3}}};
  const RectilinearMesh<Access::RAW> mesh(counts, axes);
  const std::unique_ptr<KiPlaneSliceExtractIjk> extractor(KiPlaneSliceExtractIjk::getNewInstance(mesh, false, nullptr));
  EXPECT_EQ(extractor->extract({1, 0, 0}, 1.75, nullptr).getTopology().getNumCells(), 3u * 9u);
  EXPECT_EQ(extractor->extract({1, 0, 0}, 2.75, nullptr).getTopology().getNumCells(), 9u);
}

} // namespace
