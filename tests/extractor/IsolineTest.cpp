// SPDX-License-Identifier: BSD-3-Clause
// Laws of isolines; what all line families have in common is in LineContractsTest.cpp.
#include "LineTestTools.h"

#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <random>

namespace {

using lines::Vec3;

/// A surface mesh with one scalar at each node, and its isolines.
struct Field {
  std::vector<float> coordinates;
  std::vector<std::int32_t> connectivity;
  std::vector<std::int32_t> offsets;
  std::vector<double> values;
  std::unique_ptr<KbSurfaceMeshUnstructured> mesh;
  std::unique_ptr<KbScalarSetI> set;
  std::unique_ptr<KiIsolineExtractUnstructured> extractor;

  const KeXLineMeshUnstructured& extract(double isovalue, const KiCellFilterI* filter = nullptr) {
    if (!mesh) {
      mesh = std::make_unique<KbSurfaceMeshUnstructured>(coordinates,
                                                         KbCells(KiSurfaceCell::POLYGON, connectivity, offsets));
      set = std::make_unique<KbScalarSetI>("field", DataBinding::PER_NODE, values);
      extractor.reset(KiIsolineExtractUnstructured::getNewInstance(*mesh, false));
    }
    return *extractor->extract({isovalue}, *set, filter).at(0);
  }
};

/// One polygon in the plane z = 0 from x y pairs.
Field polygon(const std::vector<std::pair<float, float>>& corners, const std::vector<double>& values) {
  Field f;
  f.offsets = {0, static_cast<std::int32_t>(corners.size())};
  for (const auto& [x, y] : corners) {
    f.connectivity.push_back(static_cast<std::int32_t>(f.connectivity.size()));
    f.coordinates.insert(f.coordinates.end(), {x, y, 0.0f});
  }
  f.values = values;
  return f;
}

TEST(Isoline, CutsATriangleWhereTheFieldHasTheValue) {
  Field f = polygon({{0, 0}, {2, 0}, {0, 2}}, {0, 2, 0});
  const KeXLineMeshUnstructured& line = f.extract(0.5);
  ASSERT_EQ(lines::numCells(line), 1u);
  EXPECT_NEAR(lines::length(line), 1.5, 1e-6);
  const auto [a, b] = lines::ends(line, 0);
  EXPECT_NEAR(a[0], 0.5, 1e-6);
  EXPECT_NEAR(b[0], 0.5, 1e-6);
}

TEST(Isoline, KeepsInsideCornersOfAnAmbiguousQuadrangleApart) {
  Field f = polygon({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, {1, 0, 1, 0});
  const KeXLineMeshUnstructured& line = f.extract(0.75);
  ASSERT_EQ(lines::numCells(line), 2u);
  for (std::size_t c = 0; c < 2; ++c) {
    const auto [a, b] = lines::ends(line, c);
    EXPECT_NEAR((a - b).length(), 0.25 * std::numbers::sqrt2, 1e-6) << "a segment cuts off one inside corner";
  }
}

TEST(Isoline, StaysInsideAConcavePolygon) {
  // A U whose arms are high: no line may cross the gap between them.
  Field f = polygon({{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}}, {0, 0, 3, 3, 1, 1, 3, 3});
  const KeXLineMeshUnstructured& line = f.extract(2.0);
  ASSERT_GE(lines::numCells(line), 2u);
  for (std::size_t c = 0; c < lines::numCells(line); ++c) {
    const auto [a, b] = lines::ends(line, c);
    const Vec3 middle = (a + b) * 0.5;
    EXPECT_TRUE(middle[0] <= 1.0 + 1e-6 || middle[0] >= 2.0 - 1e-6) << "x " << middle[0];
    EXPECT_NEAR(middle[1], 2.0, 1e-6) << "the field is y there";
  }
  EXPECT_NEAR(lines::length(line), 2.0, 1e-6);
}

TEST(Isoline, PassesOnceThroughNodesOfTheVeryValue) {
  // Two triangles share the edge from (0, 0) to (0, 1), where the field is 0.
  Field f;
  f.coordinates = {0, 0, 0, 0, 1, 0, -1, 0, 0, 1, 0, 0};
  f.connectivity = {0, 1, 2, 0, 3, 1};
  f.offsets = {0, 3, 6};
  f.values = {0, 0, -1, 1};
  const KeXLineMeshUnstructured& line = f.extract(0.0);
  ASSERT_EQ(lines::numCells(line), 1u);
  EXPECT_NEAR(lines::length(line), 1.0, 1e-6);
  EXPECT_EQ(line.getGeometry().getNumNodes(), 2u);
}

TEST(Isoline, LengthsAgreeWithBruteForceOnTriangles) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  constexpr std::size_t N = 12;
  Field f;
  for (std::size_t j = 0; j <= N; ++j)
    for (std::size_t i = 0; i <= N; ++i) {
      f.coordinates.insert(f.coordinates.end(), {static_cast<float>(i) + 0.3f * static_cast<float>(uniform(random)),
                                                 static_cast<float>(j), static_cast<float>(uniform(random))});
      f.values.push_back(uniform(random));
    }
  f.offsets = {0};
  for (std::size_t j = 0; j < N; ++j)
    for (std::size_t i = 0; i < N; ++i) {
      const auto n = static_cast<std::int32_t>(i + (N + 1) * j);
      const auto up = static_cast<std::int32_t>(N + 1);
      for (const std::int32_t id : {n, n + 1, n + up, n + 1, n + up + 1, n + up})
        f.connectivity.push_back(id);
      f.offsets.push_back(f.offsets.back() + 3);
      f.offsets.push_back(f.offsets.back() + 3);
    }
  for (const double isovalue : {0.11, 0.5, 0.93}) {
    double expected = 0.0;
    for (std::size_t t = 0; t + 1 < f.offsets.size(); ++t) {
      std::vector<Vec3> crossings;
      for (std::size_t e = 0; e < 3; ++e) {
        const auto a = static_cast<std::size_t>(f.connectivity[3 * t + e]);
        const auto b = static_cast<std::size_t>(f.connectivity[3 * t + (e + 1) % 3]);
        if ((f.values[a] < isovalue) == (f.values[b] < isovalue)) continue;
        const double w = (isovalue - f.values[a]) / (f.values[b] - f.values[a]);
        Vec3 p;
        for (std::size_t axis = 0; axis < 3; ++axis)
          p[axis] = static_cast<double>(f.coordinates[3 * a + axis]) * (1.0 - w) +
                    static_cast<double>(f.coordinates[3 * b + axis]) * w;
        crossings.push_back(p);
      }
      if (crossings.size() == 2) expected += (crossings[0] - crossings[1]).length();
    }
    EXPECT_NEAR(lines::length(f.extract(isovalue)), expected, 1e-5 * expected) << isovalue;
  }
}

TEST(Isoline, LinesAreClosedOrEndAtTheBorder) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({60, 50});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  const KbScalarSetI set("wave", DataBinding::PER_NODE, a.values);
  const std::unique_ptr<KiIsolineExtractUnstructured> extractor(
      KiIsolineExtractUnstructured::getNewInstance(mesh, true));
  for (const KeXLineMeshUnstructured* line : extractor->extract({-1.0, -0.1, 0.4, 1.2}, set, nullptr)) {
    ASSERT_GT(lines::numCells(*line), 0u);
    const auto counts = lines::degrees(*line);
    for (const auto& [degree, count] : counts)
      EXPECT_TRUE(degree == 1 || degree == 2) << count << " vertices of degree " << degree;
    std::vector<std::size_t> degree(line->getGeometry().getNumNodes(), 0);
    for (const std::int32_t i : lines::indices(*line))
      if (i >= 0) ++degree[static_cast<std::size_t>(i)];
    for (std::size_t v = 0; v < degree.size(); ++v) {
      if (degree[v] != 1) continue;
      const Vec3 p = line->getGeometry().getCoord(v);
      const bool isAtBorder = p[0] < 1e-6 || p[0] > 1.0 - 1e-6 || p[1] < 1e-6 || p[1] > 1.0 - 1e-6;
      EXPECT_TRUE(isAtBorder) << p;
    }
  }
}

TEST(Isoline, AllKindsOfMeshesGiveTheSameLines) {
  constexpr std::size_t I = 20;
  constexpr std::size_t J = 15;
  std::vector<double> x;
  std::vector<double> y;
  for (std::size_t i = 0; i <= I; ++i)
    x.push_back(static_cast<double>(i) / I);
  for (std::size_t j = 0; j <= J; ++j)
    y.push_back(static_cast<double>(j) / J);
  std::vector<double> coordinates;
  std::vector<double> values;
  for (const double v : y)
    for (const double u : x) {
      coordinates.insert(coordinates.end(), {u, v, 2.0});
      values.push_back(std::sin(7.0 * u) * std::cos(5.0 * v));
    }
  std::vector<std::int64_t> connectivity;
  for (std::size_t j = 0; j < J; ++j)
    for (std::size_t i = 0; i < I; ++i)
      for (const std::size_t id :
           {i + (I + 1) * j, i + 1 + (I + 1) * j, i + 1 + (I + 1) * (j + 1), i + (I + 1) * (j + 1)})
        connectivity.push_back(static_cast<std::int64_t>(id));
  const KbSurfaceMeshUnstructured unstructured(coordinates, {KiSurfaceCell::QUADRANGLE, connectivity});
  const KbSurfaceMeshRegular regular({I, J}, {0, 0, 2}, {1, 1, 2});
  const KbSurfaceMeshRectilinear rectilinear(x, y, 2.0);
  const KbSurfaceMeshCurvilinear curvilinear({I, J}, coordinates);
  const KbScalarSetI set("f", DataBinding::PER_NODE, values);
  const KbScalarSetIj setIj("f", DataBinding::PER_NODE, values, {I + 1, J + 1});
  const std::vector<double> isovalues{-0.5, 0.25};

  const std::unique_ptr<KiIsolineExtractUnstructured> expected(
      KiIsolineExtractUnstructured::getNewInstance(unstructured, false));
  const auto& wanted = expected->extract(isovalues, set, nullptr);
  const std::unique_ptr<KiIsolineExtractIj> others[] = {
      std::unique_ptr<KiIsolineExtractIj>(KiIsolineExtractIj::getNewInstance(regular, false)),
      std::unique_ptr<KiIsolineExtractIj>(KiIsolineExtractIj::getNewInstance(rectilinear, false)),
      std::unique_ptr<KiIsolineExtractIj>(KiIsolineExtractIj::getNewInstance(curvilinear, false))};
  for (const auto& other : others) {
    const auto& got = other->extract(isovalues, setIj, nullptr);
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_GT(lines::numCells(*got[i]), 0u);
      EXPECT_EQ(lines::indices(*got[i]), lines::indices(*wanted[i]));
      EXPECT_EQ(lines::vertices(*got[i]), lines::vertices(*wanted[i]));
      const KeXLineTopologyExplicitI& topology = got[i]->getTopology();
      for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
        EXPECT_EQ(topology.getInputCellIndexI(c) + I * topology.getInputCellIndexJ(c),
                  wanted[i]->getTopology().getInputCellIndexI(c));
        EXPECT_EQ(topology.getInputCellIndexK(c), KeXTopologyI::UNDEFINED_INDEX);
      }
    }
  }
}

TEST(Isoline, OnlyLinesWhoseValueChangedAreTracedAgain) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({30, 30});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  KbScalarSetI set("wave", DataBinding::PER_NODE, a.values);
  const std::unique_ptr<KiIsolineExtractUnstructured> extractor(
      KiIsolineExtractUnstructured::getNewInstance(mesh, false));
  const auto stamps = [](const std::vector<const KeXLineMeshUnstructured*>& meshes) {
    std::vector<std::size_t> result;
    for (const KeXLineMeshUnstructured* m : meshes)
      result.push_back(m->getGeometry().getTimeStamp());
    return result;
  };
  const std::vector<std::size_t> first = stamps(extractor->extract({-0.5, 0.1, 0.7}, set, nullptr));
  const std::vector<std::size_t> second = stamps(extractor->extract({-0.5, 0.2, 0.7}, set, nullptr));
  EXPECT_EQ(second[0], first[0]);
  EXPECT_GT(second[1], first[1]);
  EXPECT_EQ(second[2], first[2]);
  EXPECT_EQ(extractor->extract({-0.5}, set, nullptr).size(), 1u);
  set.touch();
  EXPECT_GT(stamps(extractor->extract({-0.5}, set, nullptr))[0], first[0]);
  EXPECT_TRUE(extractor->extract({}, set, nullptr).empty());
}

TEST(Isoline, TheIndexFindsTheSameLinesAsAFreshExtractor) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({40, 70});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  const KbScalarSetI set("wave", DataBinding::PER_NODE, a.values);
  const std::unique_ptr<KiIsolineExtractUnstructured> living(KiIsolineExtractUnstructured::getNewInstance(mesh, true));
  living->extract({0.0}, set, nullptr);
  for (double isovalue = -1.5; isovalue < 1.5; isovalue += 0.07) {
    const std::unique_ptr<KiIsolineExtractUnstructured> fresh(
        KiIsolineExtractUnstructured::getNewInstance(mesh, false));
    const KeXLineMeshUnstructured& wanted = *fresh->extract({isovalue}, set, nullptr)[0];
    const KeXLineMeshUnstructured& got = *living->extract({isovalue}, set, nullptr)[0];
    EXPECT_EQ(lines::indices(got), lines::indices(wanted)) << isovalue;
    EXPECT_EQ(lines::vertices(got), lines::vertices(wanted)) << isovalue;
  }
}

TEST(Isoline, CellsWithNaNYieldNothing) {
  Field f = polygon({{0, 0}, {1, 0}, {1, 1}, {0, 1}}, {0, 1, std::numeric_limits<double>::quiet_NaN(), 0});
  EXPECT_EQ(lines::numCells(f.extract(0.5)), 0u);
}

TEST(Isoline, AreTracedAgainAfterACallThatYieldedNothing) {
  Field f = polygon({{0, 0}, {2, 0}, {0, 2}}, {0, 2, 0});
  f.extract(0.5);
  const std::vector<double> values{1.0};
  const KbScalarSetI perCell("rock", DataBinding::PER_CELL, values);
  EXPECT_EQ(lines::numCells(*f.extractor->extract({0.5}, perCell, nullptr).at(0)), 0u);
  EXPECT_EQ(lines::numCells(f.extract(0.5)), 1u);
}

TEST(Isoline, RefusesWhatItCannotUse) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({4, 4});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  const std::vector<double> values(16, 0.0);
  const KbScalarSetI perCell("rock", DataBinding::PER_CELL, values);
  const KbScalarSetI isShort("short", DataBinding::PER_NODE, values);
  const std::unique_ptr<KiIsolineExtractUnstructured> extractor(
      KiIsolineExtractUnstructured::getNewInstance(mesh, false));
  MessageLog messages;
  for (const KbScalarSetI* set : {&perCell, &isShort}) {
    const auto& meshes = extractor->extract({0.5, 1.0}, *set, nullptr);
    ASSERT_EQ(meshes.size(), 2u);
    EXPECT_EQ(lines::numCells(*meshes[0]) + lines::numCells(*meshes[1]), 0u);
  }
  const KbScalarSetI good("wave", DataBinding::PER_NODE, a.values);
  extractor->extract({std::numeric_limits<double>::quiet_NaN(), 0.1}, good, nullptr);
  ASSERT_EQ(messages.lines.size(), 3u);
  EXPECT_EQ(messages.lines[0], "KiIsolineExtractUnstructured::extract: the set \"rock\" is not bound to the nodes");
  EXPECT_NE(messages.lines[1].find("\"short\" has fewer than the 25 values"), std::string::npos) << messages.lines[1];
  EXPECT_NE(messages.lines[2].find("the isovalue nan is not finite"), std::string::npos) << messages.lines[2];
}

} // namespace
