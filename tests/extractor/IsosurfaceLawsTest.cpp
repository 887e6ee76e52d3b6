// SPDX-License-Identifier: BSD-3-Clause
// Laws of isosurfaces: areas, closedness, topology, orientation.
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace {

class IsosurfaceLaws : public testing::TestWithParam<SubjectKind> {};

const KbVec3<double> CENTRE(0.5, 0.5, 0.5);

double sphere(const KbVec3<double>& p) { return -(KbVec3<double>(std::abs(p[0]), p[1], p[2]) - CENTRE).length(); }

TEST_P(IsosurfaceLaws, SphereIsClosedRoundAndTurnedOutwards) {
  for (const bool leftHanded : {false, true}) {
    SubjectOptions options;
    options.counts = {24, 24, 24};
    options.field = sphere;
    options.leftHanded = leftHanded;
    const auto subject = GetParam().make(options);
    const Surface s(subject->extract(-0.35));
    EXPECT_EQ(s.numOpenEdges(), 0u);
    EXPECT_EQ(s.eulerNumber(), 2);
    EXPECT_NEAR(s.area(), 4.0 * std::numbers::pi * 0.35 * 0.35, 0.015);
    const KbVec3<double> centre(leftHanded ? -0.5 : 0.5, 0.5, 0.5);
    for (std::size_t p = 0; p < s.polygons.size(); ++p) {
      // Slivers have no direction to speak of.
      if (s.normal(p).length() <= 1e-7) continue;
      EXPECT_GT(s.normal(p).dot(s.centre(p) - centre), 0.0) << p;
    }
  }
}

TEST_P(IsosurfaceLaws, PlaneIsExact) {
  SubjectOptions options;
  options.field = [](const KbVec3<double>& p) { return p[0] + 2.0 * p[1] - p[2]; };
  const auto subject = GetParam().make(options);
  const Surface s(subject->extract(0.93));
  ASSERT_GT(s.vertices.size(), 0u);
  for (const KbVec3<double>& v : s.vertices)
    EXPECT_NEAR(options.field(v), 0.93, 2e-6);
  double projected = 0.0;
  for (std::size_t p = 0; p < s.polygons.size(); ++p)
    projected += 0.5 * s.normal(p).length();
  EXPECT_NEAR(projected, s.area(), 1e-5); // no folds
}

TEST_P(IsosurfaceLaws, RandomValuesLeaveNoHoleInside) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    auto random = std::make_shared<std::mt19937>(seed);
    const bool hasTies = seed % 2 == 0; // values that meet the isovalue, in every way possible
    SubjectOptions options;
    options.counts = {7, 6, 5};
    options.field = [random, hasTies](const KbVec3<double>& p) {
      if (std::abs(p[0]) < 0.05 || std::abs(p[0]) > 0.95 || p[1] < 0.05 || p[1] > 0.95 || p[2] < 0.05 || p[2] > 0.95)
        return -1.0;
      const double v = std::uniform_real_distribution<double>(-1.0, 1.0)(*random);
      return hasTies ? std::round(v) : v;
    };
    const auto subject = GetParam().make(options);
    const Surface s(subject->extract(0.0));
    ASSERT_GT(s.polygons.size(), 20u);
    EXPECT_EQ(s.numOpenEdges(), 0u) << seed;
    for (const std::vector<std::size_t>& p : s.polygons)
      EXPECT_GE(p.size(), 3u);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, IsosurfaceLaws, testing::ValuesIn(subjectKinds()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(IsosurfaceKinds, ArraysAndVirtualOperationsGiveTheSameBytes) {
  SubjectOptions options;
  options.counts = {9, 8, 7};
  options.field = [](const KbVec3<double>& p) { return std::sin(9.0 * p[0]) + std::cos(7.0 * p[1] * p[2]); };
  const auto bytes = [&](const char* name) {
    for (const SubjectKind& kind : subjectKinds())
      if (std::string(kind.name) == name) return bytesOf(kind.make(options)->extract(0.2));
    return std::string();
  };
  for (const auto& [raw, virtualOnly] : {std::pair{"HexahedraRaw32", "HexahedraVirtual"},
                                         {"HexahedraRaw32", "HexahedraRaw64"},
                                         {"TetrahedraRaw", "TetrahedraVirtual"},
                                         {"MixedRaw", "MixedVirtual"},
                                         {"HexahedronIjkRaw", "HexahedronIjkVirtual"},
                                         {"RegularRaw", "RegularVirtual"},
                                         {"RectilinearRaw", "RectilinearVirtual"},
                                         {"CurvilinearRaw", "CurvilinearVirtual"}}) {
    EXPECT_FALSE(bytes(raw).empty()) << raw;
    EXPECT_EQ(bytes(raw), bytes(virtualOnly)) << raw;
  }
}

TEST(IsosurfaceKinds, GridsAgreeWithTheSameCellsUnstructured) {
  // The way by rows against the way by edges.
  SubjectOptions options;
  options.counts = {40, 9, 7};
  options.field = [](const KbVec3<double>& p) { return std::sin(9.0 * p[0]) + std::cos(7.0 * p[1] * p[2]); };
  const auto surface = [&](const char* name) {
    for (const SubjectKind& kind : subjectKinds())
      if (std::string(kind.name) == name) return Surface(kind.make(options)->extract(0.2));
    throw std::logic_error(name);
  };
  const Surface rows = surface("CurvilinearRaw");
  const Surface edges = surface("HexahedraRaw32");
  EXPECT_EQ(rows.polygons.size(), edges.polygons.size());
  EXPECT_EQ(rows.vertices.size(), edges.vertices.size());
  EXPECT_NEAR(rows.area(), edges.area(), 1e-6);
  EXPECT_EQ(rows.eulerNumber(), edges.eulerNumber());
}

/// Hexahedra in a row that share no nodes, whose ids begin far from 0.
class LoneHexahedra final : public KiVolumeMeshUnstructured, KiVolumeTopologyExplicitI, KiGeometryI {
public:
  LoneHexahedra(std::size_t numCells, std::size_t firstId)
      : m_numCells(numCells)
      , m_firstId(firstId) {}
  const KiVolumeTopologyExplicitI& getTopology() const override { return *this; }
  const KiGeometryI& getGeometry() const override { return *this; }
  std::size_t getTimeStamp() const override { return 1; }
  std::size_t getNumCells() const override { return m_numCells; }
  std::size_t getBeginNodeId() const override { return m_firstId; }
  std::size_t getEndNodeId() const override { return m_firstId + 8 * m_numCells; }
  const KiVolumeCell* getCell(std::size_t c) const override {
    thread_local std::array<std::size_t, 8> nodes;
    thread_local arrays::CellOf<std::size_t> cell;
    for (std::size_t i = 0; i < 8; ++i)
      nodes[i] = m_firstId + 8 * c + i;
    cell.numNodes = 8;
    cell.nodes = nodes.data();
    return &cell;
  }
  KbVec3<double> getCoord(std::size_t id) const override {
    const std::size_t corner = (id - m_firstId) % 8;
    const auto cell = static_cast<double>((id - m_firstId) / 8);
    return {2.0 * cell + (corner % 4 == 1 || corner % 4 == 2 ? 1.0 : 0.0), corner % 4 >= 2 ? 1.0 : 0.0,
            corner >= 4 ? 1.0 : 0.0};
  }

private:
  std::size_t m_numCells;
  std::size_t m_firstId;
};

/// 1 and -1 in turn along every edge of a cell, so that each edge is cut.
class Alternating final : public KiDataSetI<double> {
public:
  explicit Alternating(std::size_t size)
      : m_size(size) {}
  std::size_t getTimeStamp() const override { return 1; }
  std::string getName() const override { return "alternating"; }
  DataBinding getBinding() const override { return DataBinding::PER_NODE; }
  double getMin() const override { return -1.0; }
  double getMax() const override { return 1.0; }
  std::size_t getSize() const override { return m_size; }
  double get(std::size_t id) const override {
    const std::size_t corner = id % 8;
    return (corner % 4 + corner / 4) % 2 == 0 ? 1.0 : -1.0;
  }

private:
  std::size_t m_size;
};

void expectFourTrianglesEach(std::size_t numCells, std::size_t firstId) {
  const LoneHexahedra mesh(numCells, firstId);
  const Alternating set(mesh.getEndNodeId());
  for (const bool parallel : {false, true}) {
    const std::unique_ptr<KiIsosurfExtractUnstructured> extractor(
        KiIsosurfExtractUnstructured::getNewInstance(mesh, parallel, nullptr));
    const KeXSurfaceMeshUnstructured& output = extractor->extract(0.0, set, nullptr);
    const Surface s(output);
    ASSERT_EQ(s.polygons.size(), 4 * numCells);
    ASSERT_EQ(s.vertices.size(), 12 * numCells);
    const double triangle = std::sqrt(3.0) / 4.0 * 0.5; // its sides are the diagonals of squares of 0.5
    EXPECT_NEAR(s.area(), 4.0 * triangle * static_cast<double>(numCells), 1e-3);
    for (std::size_t p = 0; p < s.polygons.size(); p += 997) {
      EXPECT_EQ(output.getTopology().getInputCellIndexI(p), p / 4);
      EXPECT_NEAR(s.centre(p)[0], 2.0 * static_cast<double>(p / 4) + 0.5, 0.5);
    }
  }
}

TEST(IsosurfaceSizes, MoreEdgesThan16BitsNumberInOneChunk) { expectFourTrianglesEach(20000, 0); }

TEST(IsosurfaceSizes, NodeIdsBeyond32Bits) { expectFourTrianglesEach(20, std::size_t{5} << 32); }

} // namespace
