// SPDX-License-Identifier: BSD-3-Clause
// Sections by planes, spheres and cylinders over every form of the contract.
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiCylinderSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

using namespace arrays;

namespace {

/// The unit cube with n cells a side, as nodes and as hexahedra.
struct Cube {
  explicit Cube(std::size_t n)
      : counts{n, n, n} {
    const auto node = [n](std::size_t i, std::size_t j, std::size_t k) { return i + (n + 1) * (j + (n + 1) * k); };
    const auto at = [n](std::size_t i) { return static_cast<double>(i) / static_cast<double>(n); };
    for (std::size_t k = 0; k <= n; ++k)
      for (std::size_t j = 0; j <= n; ++j)
        for (std::size_t i = 0; i <= n; ++i)
          xyz.insert(xyz.end(), {at(i), at(j), at(k)});
    for (std::size_t k = 0; k < n; ++k)
      for (std::size_t j = 0; j < n; ++j)
        for (std::size_t i = 0; i < n; ++i)
          for (const std::size_t id :
               {node(i, j, k), node(i + 1, j, k), node(i + 1, j + 1, k), node(i, j + 1, k), node(i, j, k + 1),
                node(i + 1, j, k + 1), node(i + 1, j + 1, k + 1), node(i, j + 1, k + 1)})
            connectivity.push_back(static_cast<std::int32_t>(id));
  }
  Counts counts;
  std::vector<double> xyz;
  std::vector<std::int32_t> connectivity;
  std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON};
};

/// Runs `check(extractor)` for the three forms of a family over all kinds of the same cube.
template <class Unstructured, class Hexahedron, class Ijk, class Check>
void forKinds(std::size_t n, const Check& check) {
  const Cube cube(n);
  CellArrays<std::int32_t> cells;
  cells.connectivity = cube.connectivity;
  cells.shapes = cube.shapes;
  cells.numCells = n * n * n;
  cells.numNodes = cube.xyz.size() / 3;
  const auto run = [&](auto* made, const char* kind) {
    SCOPED_TRACE(kind);
    const std::unique_ptr<std::remove_pointer_t<decltype(made)>> extractor(made);
    check(*extractor);
  };
  const UnstructuredMesh<Access::RAW, std::int32_t, double> raw(cube.xyz, cells);
  run(Unstructured::getNewInstance(raw, true, nullptr), "unstructured");
  const UnstructuredMesh<Access::VIRTUAL, std::int32_t, double> slow(cube.xyz, cells);
  run(Unstructured::getNewInstance(slow, true, nullptr), "unstructured, virtual");
  const HexahedronIjkMesh<Access::RAW, double> hexahedra(cube.counts, cube.xyz, cube.connectivity);
  run(Hexahedron::getNewInstance(hexahedra, false, nullptr), "hexahedron Ijk");
  const RegularMesh<Access::RAW> regular(cube.counts, {0, 0, 0}, {1, 1, 1});
  run(Ijk::getNewInstance(regular, true, nullptr), "regular");
  std::vector<double> axis;
  for (std::size_t i = 0; i <= n; ++i)
    axis.push_back(cube.xyz[3 * i]);
  const RectilinearMesh<Access::RAW> rectilinear(cube.counts, {axis, axis, axis});
  run(Ijk::getNewInstance(rectilinear, true, nullptr), "rectilinear");
  const CurvilinearMesh<Access::RAW, double> curvilinear(cube.counts, cube.xyz);
  run(Ijk::getNewInstance(curvilinear, true, nullptr), "curvilinear");
  const CornerMesh corners(cube.counts, [&](std::size_t i, std::size_t j, std::size_t k, std::size_t c) {
    const auto id = static_cast<std::size_t>(cube.connectivity[8 * (i + n * (j + n * k)) + c]);
    return KbVec3<double>(cube.xyz[3 * id], cube.xyz[3 * id + 1], cube.xyz[3 * id + 2]);
  });
  run(Ijk::getNewInstance(corners, true, nullptr), "vertex hexahedron");
}

template <class Check>
void forPlanes(std::size_t n, const Check& check) {
  forKinds<KiPlaneSliceExtractUnstructured, KiPlaneSliceExtractHexahedronIjk, KiPlaneSliceExtractIjk>(n, check);
}

TEST(PlaneSlice, AreaIsExactAndNormalsAreThePlanes) {
  forPlanes(12, [](auto& extractor) {
    // The cube's section through its centre across a diagonal is a hexagon of side sqrt(1/2).
    const KbVec3<double> normal(2.0, 2.0, 2.0);
    const Surface s(extractor.extract(normal, std::sqrt(3.0) / 2.0, nullptr));
    EXPECT_NEAR(s.area(), 0.75 * std::sqrt(3.0), 1e-6);
    for (std::size_t p = 0; p < s.polygons.size(); ++p) {
      if (s.normal(p).length() <= 1e-9) continue; // at nodes that miss the plane by a rounding
      EXPECT_GT(s.normal(p).dot(normal), 0.0);
    }
    // On a living extractor: another position, then far away, then back.
    EXPECT_NEAR(Surface(extractor.extract({0, 0, 1}, 0.31, nullptr)).area(), 1.0, 1e-6);
    EXPECT_EQ(extractor.extract({0, 0, 1}, 1.5, nullptr).getTopology().getNumCells(), 0u);
    EXPECT_NEAR(Surface(extractor.extract({0, 1, 0}, 0.77, nullptr)).area(), 1.0, 1e-6);
  });
}

TEST(PlaneSlice, OnALayerOfFacesTheAreaComesOnce) {
  forPlanes(8, [](auto& extractor) {
    const Surface s(extractor.extract({0, 0, 1}, 0.5, nullptr));
    EXPECT_NEAR(s.area(), 1.0, 1e-6);
    EXPECT_EQ(s.polygons.size(), 64u);
    EXPECT_EQ(s.vertices.size(), 81u);
  });
}

TEST(PlaneSlice, FacesOfTheHullShowWhereTheNormalPointsIntoTheCells) {
  forPlanes(4, [](auto& extractor) {
    EXPECT_NEAR(Surface(extractor.extract({0, 0, 1}, 0.0, nullptr)).area(), 1.0, 1e-6);
    EXPECT_EQ(extractor.extract({0, 0, -1}, 0.0, nullptr).getTopology().getNumCells(), 0u);
    EXPECT_EQ(extractor.extract({0, 0, 1}, 1.0, nullptr).getTopology().getNumCells(), 0u);
    EXPECT_NEAR(Surface(extractor.extract({0, 0, -1}, -1.0, nullptr)).area(), 1.0, 1e-6);
  });
}

TEST(PlaneSlice, NothingIsDoneTwice) {
  forPlanes(4, [](auto& extractor) {
    const std::size_t stamp = extractor.extract({1, 2, 3}, 0.9, nullptr).getTopology().getTimeStamp();
    EXPECT_EQ(extractor.extract({1, 2, 3}, 0.9, nullptr).getTopology().getTimeStamp(), stamp);
    EXPECT_GT(extractor.extract({1, 2, 3}, 0.8, nullptr).getTopology().getTimeStamp(), stamp);
  });
}

TEST(PlaneSlice, BadParametersAreTold) {
  forPlanes(2, [](auto& extractor) {
    MessageLog log;
    EXPECT_EQ(extractor.extract({0, 0, 0}, 0.5, nullptr).getTopology().getNumCells(), 0u);
    EXPECT_EQ(extractor.extract({0, 0, 1}, std::nan(""), nullptr).getTopology().getNumCells(), 0u);
    ASSERT_EQ(log.lines.size(), 2u);
    EXPECT_NE(log.lines[0].find("::extract: the plane's normal has no length"), std::string::npos);
    EXPECT_NE(log.lines[1].find("::extract: the plane's normal or distance is not finite"), std::string::npos);
    EXPECT_GT(extractor.extract({0, 0, 1}, 0.4, nullptr).getTopology().getNumCells(), 0u);
  });
}

TEST(SphereSlice, IsClosedAndTurnedOutwards) {
  forKinds<KiSphereSliceExtractUnstructured, KiSphereSliceExtractHexahedronIjk, KiSphereSliceExtractIjk>(
      20, [](auto& extractor) {
        const KbVec3<double> centre(0.5, 0.49, 0.51);
        const Surface s(extractor.extract(centre, 0.4, nullptr));
        EXPECT_EQ(s.numOpenEdges(), 0u);
        EXPECT_EQ(s.eulerNumber(), 2);
        EXPECT_NEAR(s.area(), 4.0 * std::numbers::pi * 0.16, 0.02); // inscribed, 8 cells a radius
        for (std::size_t p = 0; p < s.polygons.size(); ++p) {
          if (s.normal(p).length() <= 1e-7) continue;
          EXPECT_GT(s.normal(p).dot(s.centre(p) - centre), 0.0);
        }
        MessageLog log;
        EXPECT_EQ(extractor.extract(centre, -1.0, nullptr).getTopology().getNumCells(), 0u);
        EXPECT_EQ(log.lines.size(), 1u);
      });
}

TEST(CylinderSlice, HasTheAreaOfItsMantle) {
  forKinds<KiCylinderSliceExtractUnstructured, KiCylinderSliceExtractHexahedronIjk, KiCylinderSliceExtractIjk>(
      20, [](auto& extractor) {
        const Surface s(extractor.extract({0.5, 0.5, 7.0}, 0.3, {0, 0, -2}, nullptr));
        EXPECT_NEAR(s.area(), 2.0 * std::numbers::pi * 0.3, 0.01);
        const auto isAtAnEnd = [](const KbVec3<double>& p) { return p[2] < 1e-6 || p[2] > 1.0 - 1e-6; };
        EXPECT_EQ(s.numOpenEdges(isAtAnEnd), 0u);
        EXPECT_GT(s.numOpenEdges(), 0u);
      });
}

/// A shaken cube of several chunks of cells in no order, somewhere and of some size, with a node that is no position.
struct ShakenCube {
  ShakenCube(double place, double size)
      : cube(34) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> shake(-0.006, 0.006);
    for (double& x : cube.xyz)
      x = place + size * (x + shake(random));
    cube.xyz[3 * 20000] = std::nan("");
    const auto numCells = cube.connectivity.size() / 8;
    std::vector<std::size_t> order(numCells);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin() + static_cast<std::ptrdiff_t>(numCells / 2), order.end(), random);
    for (const std::size_t cell : order)
      for (std::size_t i = 0; i < 8; ++i)
        connectivity.push_back(cube.connectivity[8 * cell + i]);
    cells.connectivity = connectivity;
    cells.shapes = cube.shapes;
    cells.numCells = numCells;
    cells.numNodes = cube.xyz.size() / 3;
  }
  Cube cube;
  std::vector<std::int32_t> connectivity;
  CellArrays<std::int32_t> cells;
};

/// Every cut of a living extractor, with and without what it keeps, is that of a fresh one, also where squares are no
/// longer floats.
template <class Extractor, class Extract>
void expectLivingAsFresh(const Extract& extract) {
  for (const auto& [place, size] : {std::pair(0.0, 1.0), std::pair(-4e5, 3.0), std::pair(7e-9, 1e-8),
                                    std::pair(0.0, 3e22), std::pair(0.0, 1e-24)}) {
    const ShakenCube shaken(place, size);
    const UnstructuredMesh<Access::RAW, std::int32_t, double> mesh(shaken.cube.xyz, shaken.cells);
    const std::unique_ptr<Extractor> living(Extractor::getNewInstance(mesh, true, nullptr));
    const MessageLog log;
    for (std::size_t step = 0; step < 6; ++step) {
      const std::unique_ptr<Extractor> fresh(Extractor::getNewInstance(mesh, true, nullptr));
      const double t = 0.15 + 0.13 * static_cast<double>(step);
      const KeXSurfaceMeshUnstructured& wanted = extract(*fresh, place, size, t);
      EXPECT_EQ(bytesOf(extract(*living, place, size, t)), bytesOf(wanted)) << "at " << place << ", step " << step;
      EXPECT_GT(wanted.getTopology().getNumCells(), 50u);
    }
  }
}

TEST(PlaneSlice, LivingExtractorEqualsFreshOne) {
  expectLivingAsFresh<KiPlaneSliceExtractUnstructured>(
      [](auto& extractor, double place, double size, double t) -> decltype(auto) {
        const KbVec3<double> normal = KbVec3<double>(1.0, t, -0.4).normalized();
        const KbVec3<double> point(place + t * size, place + 0.5 * size, place + 0.5 * size);
        return extractor.extract(normal, normal.dot(point), nullptr);
      });
}

TEST(SphereSlice, LivingExtractorEqualsFreshOne) {
  expectLivingAsFresh<KiSphereSliceExtractUnstructured>(
      [](auto& extractor, double place, double size, double t) -> decltype(auto) {
        return extractor.extract(KbVec3<double>(place + 0.5 * size), t * size, nullptr);
      });
}

TEST(CylinderSlice, LivingExtractorEqualsFreshOne) {
  expectLivingAsFresh<KiCylinderSliceExtractUnstructured>(
      [](auto& extractor, double place, double size, double t) -> decltype(auto) {
        return extractor.extract(KbVec3<double>(place + 0.5 * size), t * size, {0.3, 1.0, t}, nullptr);
      });
}

} // namespace
