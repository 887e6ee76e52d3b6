// SPDX-License-Identifier: BSD-3-Clause
// Start and end, stamps, messages, and what becomes of bad input.
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiKerrin.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KxIToIj.h>
#include <KerrinExtractor/KxIToIjk.h>

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <set>
#include <sstream>
#include <thread>
#include <utility>

using namespace arrays;

namespace {

TEST(KiKerrin, CallsNest) {
  EXPECT_FALSE(KiKerrin::isInitialized());
  KiKerrin::init(1);
  KiKerrin::init(0);
  KiKerrin::finish();
  EXPECT_TRUE(KiKerrin::isInitialized());
  KiKerrin::finish();
  EXPECT_FALSE(KiKerrin::isInitialized());
  KiKerrin::finish();
  EXPECT_FALSE(KiKerrin::isInitialized());
}

TEST(KxTimeStamp, GrowsOverAllThreads) {
  std::vector<std::vector<std::size_t>> stamps(4);
  std::vector<std::thread> threads;
  for (std::vector<std::size_t>& own : stamps)
    threads.emplace_back([&own] {
      for (int i = 0; i < 1000; ++i)
        own.push_back(KxTimeStamp::getTimeStamp());
    });
  for (std::thread& t : threads)
    t.join();
  std::set<std::size_t> all;
  for (const std::vector<std::size_t>& own : stamps) {
    EXPECT_TRUE(std::is_sorted(own.begin(), own.end()));
    all.insert(own.begin(), own.end());
  }
  EXPECT_EQ(all.size(), 4000u);
}

TEST(KxIToIj, SplitsBothOrders) {
  std::size_t i = 0;
  std::size_t j = 0;
  KxIToIj split(4, true);
  split.getIj(4 * 2 + 3, i, j);
  EXPECT_EQ(std::pair(i, j), std::pair(std::size_t{3}, std::size_t{2}));
  split.update(5);
  split.getIj(11, i, j);
  EXPECT_EQ(std::pair(i, j), std::pair(std::size_t{1}, std::size_t{2}));
  KxIToIj(4, false).getIj(4 * 2 + 3, i, j);
  EXPECT_EQ(std::pair(i, j), std::pair(std::size_t{2}, std::size_t{3}));
  KxIToIj(0, true).getIj(7, i, j);
  EXPECT_EQ(std::pair(i, j), std::pair(std::size_t{0}, std::size_t{7})) << "a mesh without cells divides by nothing";
}

TEST(KxIToIjk, SplitsBothOrders) {
  std::size_t i = 0;
  std::size_t j = 0;
  std::size_t k = 0;
  KxIToIjk split(4, 3, true);
  split.getIjk(1 + 4 * (2 + 3 * 5), i, j, k);
  EXPECT_EQ((std::array{i, j, k}), (std::array<std::size_t, 3>{1, 2, 5}));
  split.update(2, 2);
  split.getIjk(1 + 2 * (0 + 2 * 3), i, j, k);
  EXPECT_EQ((std::array{i, j, k}), (std::array<std::size_t, 3>{1, 0, 3}));
  KxIToIjk(4, 3, false).getIjk(1 + 4 * (2 + 3 * 5), i, j, k);
  EXPECT_EQ((std::array{i, j, k}), (std::array<std::size_t, 3>{5, 2, 1}));
  KxIToIjk(0, 0, true).getIjk(9, i, j, k);
  EXPECT_EQ((std::array{i, j, k}), (std::array<std::size_t, 3>{0, 0, 9}));
}

TEST(KiTessellator, BasicOneMeasuresTheSagitta) {
  const std::unique_ptr<KiTessellator> t(KiTessellator::getNewTessellatorBasic(0.1, 2));
  EXPECT_EQ(t->getMaxDepth(), 2u);
  EXPECT_TRUE(t->isEdgeSplit({0, 0, 0}, {0.5, 0.11, 0}, {1, 0, 0}, 0));
  EXPECT_FALSE(t->isEdgeSplit({0, 0, 0}, {0.5, 0.09, 0}, {1, 0, 0}, 0));
  const std::unique_ptr<KiTessellator> relative(KiTessellator::getNewTessellatorBasic());
  EXPECT_TRUE(relative->isEdgeSplit({0, 0, 0}, {50, 1.1, 0}, {100, 0, 0}, 0));
  EXPECT_FALSE(relative->isEdgeSplit({0, 0, 0}, {50, 0.9, 0}, {100, 0, 0}, 0));
  EXPECT_FALSE(relative->isEdgeSplit({0, 0, 0}, {50, 1.1, 0}, {100, 0, 0}, 1)) << "a half of an edge of 200";
  EXPECT_TRUE(relative->isEdgeSplit({0, 0, 0}, {50, 2.1, 0}, {100, 0, 0}, 1));
}

TEST(KiTessellator, BasicOneMeasuresValuesAgainstTheirSpread) {
  const std::unique_ptr<KiTessellator> t(KiTessellator::getNewTessellatorBasic(0.0, 3, 0.1));
  EXPECT_TRUE(t->isEdgeSplitByValue(0, 2.3, 2, 10));
  EXPECT_FALSE(t->isEdgeSplitByValue(0, 1.9, 2, 10));
  EXPECT_FALSE(t->isEdgeSplitByValue(5, 5, 5, 0));
}

/// Two hexahedra in a row along x, over 12 nodes.
class BadInput : public testing::Test {
protected:
  BadInput() {
    for (int i = 0; i < 3; ++i)
      for (int c = 0; c < 4; ++c)
        xyz.insert(xyz.end(), {static_cast<float>(i), c == 1 || c == 2 ? 1.0f : 0.0f, c >= 2 ? 1.0f : 0.0f});
    for (std::int32_t cell = 0; cell < 2; ++cell)
      for (std::int32_t n = 0; n < 8; ++n)
        connectivity.push_back(4 * cell + n);
    values = {0, 0, 1, 1, 0, 0, 1, 1, 0, 0, 1, 1};
  }
  template <Access A>
  std::size_t numPolygons(double isovalue = 0.5) {
    CellArrays<std::int32_t> cells;
    cells.connectivity = connectivity;
    cells.shapes = shapes;
    cells.numCells = 2;
    cells.numNodes = 12;
    const UnstructuredMesh<A, std::int32_t, float> mesh(xyz, cells);
    const Set<A, float> set("f", DataBinding::PER_NODE, values);
    const std::unique_ptr<KiIsosurfExtractUnstructured> e(
        KiIsosurfExtractUnstructured::getNewInstance(mesh, false, nullptr));
    return e->extract(isovalue, set, nullptr).getTopology().getNumCells();
  }
  /// Both ways of reading give this many polygons and this message.
  void expectBoth(std::size_t polygons, const std::string& message, double isovalue = 0.5) {
    for (const bool isRaw : {true, false}) {
      MessageLog log;
      EXPECT_EQ(isRaw ? numPolygons<Access::RAW>(isovalue) : numPolygons<Access::VIRTUAL>(isovalue), polygons);
      ASSERT_EQ(log.lines.size(), message.empty() ? 0u : 1u);
      if (message.empty()) continue;
      EXPECT_EQ(log.lines[0], "KiIsosurfExtractUnstructured::extract: " + message);
    }
  }

  std::vector<float> xyz;
  std::vector<std::int32_t> connectivity;
  std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON};
  std::vector<float> values;
};

TEST_F(BadInput, GoodInputIsSilent) { expectBoth(2, ""); }

TEST_F(BadInput, NodeIdsOutOfRange) {
  connectivity[9] = 12;
  expectBoth(1, "cell 1 has a node id that is out of range; such cells are skipped");
  connectivity[9] = -1;
  expectBoth(1, "cell 1 has a node id that is out of range; such cells are skipped");
}

TEST_F(BadInput, InfiniteCoordinates) {
  xyz[3 * 11] = std::numeric_limits<float>::infinity();
  expectBoth(1, "cell 1 has a node whose coordinates are not finite; such cells are skipped");
}

TEST_F(BadInput, InfiniteValues) {
  values[11] = std::numeric_limits<float>::infinity();
  expectBoth(1, "");
}

TEST_F(BadInput, ShortSet) {
  values.pop_back();
  expectBoth(0, "the set \"f\" has fewer than the 12 values that the mesh needs");
}

TEST_F(BadInput, ShapeDoesNotFitTheNumberOfNodes) {
  shapes = {KiVolumeCell::WEDGE};
  expectBoth(0, "cell 0 cannot be read: its shape is unknown or has another number of nodes; such cells are skipped");
  shapes = {15}; // no shape has this number
  expectBoth(0, "cell 0 cannot be read: its shape is unknown or has another number of nodes; such cells are skipped");
}

TEST_F(BadInput, IsovalueIsNotANumber) {
  expectBoth(0, "the isovalue nan is not finite", std::numeric_limits<double>::quiet_NaN());
}

TEST_F(BadInput, CoordinatesAreTooFew) {
  xyz.resize(30);
  MessageLog log;
  EXPECT_EQ(numPolygons<Access::RAW>(), 0u);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0],
            "KiIsosurfExtractUnstructured::extract: the geometry has 10 nodes, the topology uses node ids "
            "up to 11");
}

TEST_F(BadInput, RepeatedNodesCollapseTheCell) {
  connectivity[8 + 4] = connectivity[8 + 5] = 8; // the second cell loses an edge
  for (const bool isRaw : {true, false}) {
    MessageLog log;
    EXPECT_EQ(isRaw ? numPolygons<Access::RAW>() : numPolygons<Access::VIRTUAL>(), 2u);
    EXPECT_TRUE(log.lines.empty());
  }
}

TEST(IsosurfaceKinds, SetsOfTheWrongFormAreRefused) {
  const std::vector<float> values(27, 1.0f);
  const RegularMesh<Access::RAW> mesh({2, 2, 2}, {0, 0, 0}, {1, 1, 1});
  const Set<Access::RAW, float> nodes("nodes", DataBinding::PER_NODE, values, {3, 3, 3});
  const Set<Access::RAW, float> open("open", DataBinding::AUTO, values, {3, 3, 3});
  const std::unique_ptr<KiIsosurfExtractIjk> e(KiIsosurfExtractIjk::getNewInstance(mesh, false, nullptr));
  MessageLog log;
  e->extract(0.5, nodes, nullptr);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(e->extractScalarSet(open), nullptr);
  e->extract(0.5, open, nullptr);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0],
            "KiIsosurfExtractIjk::extract: the set \"open\" has a binding or a form of addressing that does "
            "not suit the mesh");
}

TEST(IsosurfaceKinds, TornCornersKeepTheSurfaceApart) {
  // Two cells along i, the second one lifted by 0.25: a fault. Values depend on k alone.
  const std::vector<float> values{0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1};
  for (const double throwOfFault : {0.0, 0.25}) {
    const CornerMesh mesh({2, 1, 1}, [&](std::size_t i, std::size_t, std::size_t, std::size_t c) {
      const double x = static_cast<double>(i) + (c == 1 || c == 2 || c == 5 || c == 6 ? 1.0 : 0.0);
      const double y = c == 2 || c == 3 || c == 6 || c == 7 ? 1.0 : 0.0;
      return KbVec3<double>(x, y, (c >= 4 ? 1.0 : 0.0) + (i == 1 ? throwOfFault : 0.0));
    });
    const Set<Access::RAW, float> set("f", DataBinding::PER_NODE, values, {3, 2, 2});
    const std::unique_ptr<KiIsosurfExtractIjk> e(KiIsosurfExtractIjk::getNewInstance(mesh, false, nullptr));
    const Surface s(e->extract(0.5, set, nullptr));
    EXPECT_EQ(s.polygons.size(), 2u);
    EXPECT_EQ(s.vertices.size(), throwOfFault > 0.0 ? 8u : 6u);
    EXPECT_NEAR(s.area(), 2.0, 1e-6);
    EXPECT_NEAR(s.centre(1)[2], 0.5 + throwOfFault, 1e-6);
  }
}

TEST(IsosurfaceKinds, MeshesPrintThemselves) {
  const RegularMesh<Access::RAW> mesh({2, 3, 4}, {0, 0, 0}, {1, 1, 1});
  std::ostringstream text;
  text << mesh;
  EXPECT_NE(text.str().find("regular volume mesh, 2 x 3 x 4 cells"), std::string::npos);
}

} // namespace
