// SPDX-License-Identifier: BSD-3-Clause
// Lines shown as they are; what all line families have in common is in LineContractsTest.cpp.
#include "LineTestTools.h"

#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KxLineExtractFactory.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshRegular.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using lines::Vec3;

/// Two arcs of parabolas from (0, 0) over (1, 0) to (2, 0).
struct Arcs {
  std::vector<double> coordinates{0, 0, 0, 1, 0, 0, 2, 0, 0, 0.5, 1, 0, 1.5, -1, 0};
  std::vector<std::int32_t> connectivity{0, 1, 3, 1, 2, 4};
  std::vector<double> x{0, 1, 2, 0.5, 1.5};
  KbLineMeshUnstructured mesh{coordinates, {KiLineCell::QUADRATIC_LINE, connectivity}};
  KbScalarSetI set{"x", DataBinding::PER_NODE, x};
};

TEST(LineExtract, NeighboursShareTheirNodes) {
  const std::vector<std::uint8_t> dead{0, 0, 1, 0, 0};
  const KbLineMeshRegular mesh({5}, {0, 0, 0}, {5, 0, 0}, dead);
  const std::unique_ptr<KiLineExtract> extractor(KiLineExtract::getNewInstance(mesh, false, nullptr));
  const KeXLineMeshUnstructured& line = extractor->extract(nullptr);
  EXPECT_EQ(lines::indices(line), (std::vector<std::int32_t>{0, 1, -1, 1, 2, -1, 3, 4, -1, 4, 5, -1}));
  EXPECT_NEAR(lines::length(line), 4.0, 1e-6);
  EXPECT_EQ(line.getTopology().getInputCellIndexI(2), 3u);
  EXPECT_FALSE(line.getTopology().hasStructuredInputCells());
}

TEST(LineExtract, ATessellatorSubdividesThreeNodeSegments) {
  Arcs arcs;
  const std::unique_ptr<KiTessellatedLineExtract> extractor(KiTessellatedLineExtract::getNewInstance(arcs.mesh, false));
  EXPECT_EQ(lines::numCells(extractor->extract(nullptr, nullptr)), 2u);
  EXPECT_EQ(extractor->getExtract().getGeometry().getNumNodes(), 3u);
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(1e-9, 3));
  const KeXLineMeshUnstructured& line = extractor->extract(tessellator.get(), nullptr);
  ASSERT_EQ(lines::numCells(line), 16u);
  EXPECT_EQ(line.getGeometry().getNumNodes(), 17u) << "the arcs share a node";
  const KeXDataSetI<double>* x = extractor->extractScalarSet(arcs.set);
  ASSERT_NE(x, nullptr);
  for (std::size_t v = 0; v < 17; ++v) {
    const Vec3 p = line.getGeometry().getCoord(v);
    const double t = p[0] <= 1.0 ? p[0] : p[0] - 1.0;
    EXPECT_NEAR(p[1], (p[0] <= 1.0 ? 4.0 : -4.0) * t * (1.0 - t), 1e-6);
    EXPECT_NEAR(x->get(v), p[0], 1e-6);
  }
  for (std::size_t c = 0; c < 16; ++c)
    EXPECT_EQ(line.getTopology().getInputCellIndexI(c), c / 8);
}

TEST(LineExtract, TheFactoryTakesExtractedLines) {
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({20, 20});
  const KbSurfaceMeshUnstructured mesh(a.coordinates, a.cells());
  const KbScalarSetI set("wave", DataBinding::PER_NODE, a.values);
  const std::unique_ptr<KiIsolineExtractUnstructured> isolines(
      KiIsolineExtractUnstructured::getNewInstance(mesh, false));
  const KeXLineMeshUnstructured& isoline = *isolines->extract({0.3}, set, nullptr)[0];
  const std::unique_ptr<KiLineExtract> extractor(KxLineExtractFactory::getNewInstance(isoline, false, nullptr));
  const KeXLineMeshUnstructured& copy = extractor->extract(nullptr);
  EXPECT_EQ(lines::numCells(copy), lines::numCells(isoline));
  EXPECT_EQ(copy.getGeometry().getNumNodes(), isoline.getGeometry().getNumNodes());
  EXPECT_NEAR(lines::length(copy), lines::length(isoline), 1e-9);
}

TEST(LineCellExtract, ShrinksChosenCellsTowardsTheirCentres) {
  const std::vector<double> coordinates{0, 0, 0, 2, 0, 0, 2, 4, 0, 2, 4, 8};
  const KbLineMeshCurvilinear mesh({3}, coordinates);
  const std::unique_ptr<KiLineCellExtractI> extractor(KiLineCellExtractI::getNewInstance(mesh, false, nullptr));
  EXPECT_NEAR(lines::length(extractor->extract(0.5, nullptr)), 7.0, 1e-6);
  EXPECT_EQ(extractor->getExtract().getGeometry().getNumNodes(), 6u) << "each cell has points of its own";
  const KeXLineMeshUnstructured& chosen = extractor->extract({2, 17, 0}, 0.25, nullptr);
  ASSERT_EQ(lines::numCells(chosen), 2u);
  EXPECT_EQ(chosen.getTopology().getInputCellIndexI(0), 2u);
  EXPECT_EQ(chosen.getTopology().getInputCellIndexI(1), 0u);
  EXPECT_NEAR(lines::ends(chosen, 1).first[0], 0.75, 1e-6);
  EXPECT_NEAR(lines::ends(chosen, 1).second[0], 1.25, 1e-6);
  EXPECT_EQ(lines::numCells(extractor->extract(std::vector<std::size_t>{}, 0.25, nullptr)), 0u);
}

TEST(LineCellExtract, RefusesAFactorThatLeavesNothing) {
  Arcs arcs;
  const std::unique_ptr<KiLineCellExtractUnstructured> extractor(
      KiLineCellExtractUnstructured::getNewInstance(arcs.mesh, false, nullptr));
  MessageLog messages;
  EXPECT_EQ(lines::numCells(extractor->extract(0.0, nullptr)), 0u);
  ASSERT_EQ(messages.lines.size(), 1u);
  EXPECT_EQ(messages.lines[0], "KiLineCellExtractUnstructured::extract: the factor 0.000000 is not greater than 0");
}

} // namespace
