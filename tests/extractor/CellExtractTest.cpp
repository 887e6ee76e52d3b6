// SPDX-License-Identifier: BSD-3-Clause
// Cells shown as shapes of their own, on all kinds of meshes that have them.
#include "LineTestTools.h"
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KiCellExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCellExtractIj.h>
#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbCellListFilter.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

#include <memory>
#include <numbers>

namespace {

using lines::Vec3;

/// The volume within the polygons, positive when they turn outwards; 0 for flat shapes.
double enclosedVolume(const KeXSurfaceMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell* cell = mesh.getTopology().getCell(c);
    const auto corner = [&](std::size_t i) { return mesh.getGeometry().getCoord(cell->getNodeIndex(i)); };
    for (std::size_t i = 1; i + 1 < cell->getNumNodes(); ++i)
      sum += corner(0).dot(corner(i).cross(corner(i + 1))) / 6.0;
  }
  return sum;
}

double area(const KeXSurfaceMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell* cell = mesh.getTopology().getCell(c);
    const auto corner = [&](std::size_t i) { return mesh.getGeometry().getCoord(cell->getNodeIndex(i)); };
    Vec3 normal(0.0);
    for (std::size_t i = 1; i + 1 < cell->getNumNodes(); ++i)
      normal += (corner(i) - corner(0)).cross(corner(i + 1) - corner(0));
    sum += 0.5 * normal.length();
  }
  return sum;
}

TEST(CellExtract, EveryVolumeShapeFillsTheCubeByTheCubeOfTheFactor) {
  for (const KbMeshMaker::Arrays& a :
       {KbMeshMaker::hexahedra({4, 3, 2}), KbMeshMaker::tetrahedra({4, 3, 2}), KbMeshMaker::wedges({4, 3, 2}),
        KbMeshMaker::pyramids({4, 3, 2}), KbMeshMaker::mixed({4, 3, 2})}) {
    const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
    const std::unique_ptr<KiCellExtractUnstructured> extractor(
        KiCellExtractUnstructured::getNewInstance(mesh, true, nullptr));
    EXPECT_NEAR(enclosedVolume(extractor->extract(1.0, nullptr)), 1.0, 1e-5);
    EXPECT_NEAR(enclosedVolume(extractor->extract(0.5, nullptr)), 0.125, 1e-6);
  }
}

TEST(CellExtract, InvertedCellsTurnOutwardsToo) {
  KbMeshMaker::Arrays a = KbMeshMaker::tetrahedra({2, 2, 2});
  for (std::size_t t = 0; t < a.connectivity.size() / 4; t += 2)
    std::swap(a.connectivity[4 * t], a.connectivity[4 * t + 1]);
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  const std::unique_ptr<KiCellExtractUnstructured> extractor(
      KiCellExtractUnstructured::getNewInstance(mesh, false, nullptr));
  EXPECT_NEAR(enclosedVolume(extractor->extract(1.0, nullptr)), 1.0, 1e-5);
}

TEST(CellExtract, CollapsedFacesAreLeftOut) {
  // A hexahedron whose upper face is one edge: a lying prism.
  const std::vector<float> coordinates{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0.5f, 1, 1, 0.5f, 1};
  const std::vector<std::int32_t> connectivity{0, 1, 2, 3, 4, 5, 5, 4};
  const KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::HEXAHEDRON, connectivity});
  const std::unique_ptr<KiCellExtractUnstructured> extractor(
      KiCellExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const KeXSurfaceMeshUnstructured& shape = extractor->extract(1.0, nullptr);
  ASSERT_EQ(shape.getTopology().getNumCells(), 5u);
  std::size_t numTriangles = 0;
  for (std::size_t c = 0; c < 5; ++c)
    numTriangles += shape.getTopology().getCell(c)->getNumNodes() == 3;
  EXPECT_EQ(numTriangles, 2u);
  EXPECT_NEAR(enclosedVolume(shape), 0.5, 1e-6);
}

TEST(CellExtract, ChosenCellsOfAnUnstructuredMesh) {
  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({3, 3, 3});
  std::vector<std::uint8_t> dead(27, 0);
  dead[5] = 1;
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells(), dead);
  const KbCellListFilterI filter({{4}, {5}, {13}});
  const std::unique_ptr<KiCellExtractUnstructured> extractor(
      KiCellExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const KeXSurfaceMeshUnstructured& shape = extractor->extract({26, 13, 5, 999, 4}, 1.0, &filter);
  ASSERT_EQ(shape.getTopology().getNumCells(), 12u) << "cells 13 and 4: the others are refused, dead or unknown";
  EXPECT_EQ(shape.getTopology().getInputCellIndexI(0), 13u);
  EXPECT_EQ(shape.getTopology().getInputCellIndexI(6), 4u);
  EXPECT_EQ(extractor->extract(std::vector<std::size_t>{}, 1.0, nullptr).getTopology().getNumCells(), 0u);
  EXPECT_EQ(extractor->extract(1.0, nullptr).getTopology().getNumCells(), 6u * 26u);
}

TEST(CellExtract, StructuredVolumesAgreeWithEachOther) {
  const KbIndex<3> counts{3, 4, 5};
  const KbMeshMaker::Arrays a = KbMeshMaker::lattice(counts);
  std::vector<double> axes[3];
  for (std::size_t axis = 0; axis < 3; ++axis)
    for (std::size_t i = 0; i <= counts[axis]; ++i)
      axes[axis].push_back(static_cast<double>(i) / static_cast<double>(counts[axis]));
  const KbVolumeMeshRegular regular(counts, {0, 0, 0}, {1, 1, 1});
  const KbVolumeMeshRectilinear rectilinear(axes[0], axes[1], axes[2]);
  const KbVolumeMeshCurvilinear curvilinear(counts, a.coordinates);
  const std::unique_ptr<KiCellExtractIjk> extractors[] = {
      std::unique_ptr<KiCellExtractIjk>(KiCellExtractIjk::getNewInstance(regular, false, nullptr)),
      std::unique_ptr<KiCellExtractIjk>(KiCellExtractIjk::getNewInstance(rectilinear, false, nullptr)),
      std::unique_ptr<KiCellExtractIjk>(KiCellExtractIjk::getNewInstance(curvilinear, true, nullptr))};
  const KbScalarSetIjk wave("wave", DataBinding::PER_NODE, a.values, {4, 5, 6});
  for (const auto& extractor : extractors) {
    EXPECT_NEAR(enclosedVolume(extractor->extract(0.5, nullptr)), 0.125, 1e-6);
    const KeXSurfaceMeshUnstructured& shape = extractor->extract({{1, 2, 3}, {3, 0, 0}, {0, 4, 0}}, 1.0, nullptr);
    ASSERT_EQ(shape.getTopology().getNumCells(), 6u) << "indices out of range along an axis name no other cell";
    EXPECT_EQ(shape.getTopology().getInputCellIndexI(0), 1u);
    EXPECT_EQ(shape.getTopology().getInputCellIndexJ(0), 2u);
    EXPECT_EQ(shape.getTopology().getInputCellIndexK(0), 3u);
    EXPECT_NEAR(enclosedVolume(shape), 1.0 / 60.0, 1e-6);
    const KeXDataSetI<double>* mapped = extractor->extractScalarSet(wave);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      EXPECT_NEAR(mapped->get(v), KbMeshMaker::wave(shape.getGeometry().getCoord(v)), 1e-5);
  }
}

TEST(CellExtract, HexahedraTakeNodeSetsByNodeAndCellSetsByIndices) {
  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({2, 3, 4});
  const KbVolumeMeshHexahedronIjk mesh({2, 3, 4}, a.coordinates, a.connectivity);
  const std::unique_ptr<KiCellExtractHexahedronIjk> extractor(
      KiCellExtractHexahedronIjk::getNewInstance(mesh, false, nullptr));
  const KeXSurfaceMeshUnstructured& shape = extractor->extract({{1, 2, 3}}, 1.0, nullptr);
  ASSERT_EQ(shape.getTopology().getNumCells(), 6u);
  std::vector<double> numbers(24);
  for (std::size_t c = 0; c < 24; ++c)
    numbers[c] = static_cast<double>(c);
  const KbScalarSetIjk perCell("number", DataBinding::PER_CELL, numbers, {2, 3, 4});
  const KeXDataSetI<double>* number = extractor->extractScalarSet(perCell);
  ASSERT_NE(number, nullptr);
  ASSERT_EQ(number->getSize(), 6u);
  EXPECT_EQ(number->get(0), 23.0);
  const KbScalarSetI perNode("wave", DataBinding::PER_NODE, a.values);
  const KeXDataSetI<double>* wave = extractor->extractScalarSet(perNode);
  ASSERT_NE(wave, nullptr);
  EXPECT_EQ(wave->getSize(), 8u);
}

TEST(CellExtract, SurfacesShrinkByTheSquareOfTheFactor) {
  const std::vector<double> x{0, 0.25, 1};
  const std::vector<double> y{0, 0.5, 0.75, 1};
  std::vector<double> coordinates;
  for (const double v : y)
    for (const double u : x)
      coordinates.insert(coordinates.end(), {u, v, 0.0});
  const KbSurfaceMeshRegular regular({2, 3}, {0, 0, 0}, {1, 1, 0});
  const KbSurfaceMeshRectilinear rectilinear(x, y);
  const KbSurfaceMeshCurvilinear curvilinear({2, 3}, coordinates);
  const std::unique_ptr<KiCellExtractIj> extractors[] = {
      std::unique_ptr<KiCellExtractIj>(KiCellExtractIj::getNewInstance(regular, false, nullptr)),
      std::unique_ptr<KiCellExtractIj>(KiCellExtractIj::getNewInstance(rectilinear, false, nullptr)),
      std::unique_ptr<KiCellExtractIj>(KiCellExtractIj::getNewInstance(curvilinear, true, nullptr))};
  for (const auto& extractor : extractors) {
    EXPECT_NEAR(area(extractor->extract(0.5, nullptr)), 0.25, 1e-6);
    const KeXSurfaceMeshUnstructured& one = extractor->extract({{1, 2}, {2, 0}}, 1.0, nullptr);
    ASSERT_EQ(one.getTopology().getNumCells(), 1u);
    EXPECT_EQ(one.getTopology().getInputCellIndexI(0), 1u);
    EXPECT_EQ(one.getTopology().getInputCellIndexJ(0), 2u);
    EXPECT_EQ(one.getTopology().getInputCellIndexK(0), KeXTopologyI::UNDEFINED_INDEX);
  }
  const KbMeshMaker::Arrays a = KbMeshMaker::quadrangles({5, 6});
  const KbSurfaceMeshUnstructured unstructured(a.coordinates, a.cells());
  const std::unique_ptr<KiCellExtractUnstructured> extractor(
      KiCellExtractUnstructured::getNewInstance(unstructured, false, nullptr));
  const double whole = area(extractor->extract(1.0, nullptr));
  EXPECT_GT(whole, 1.0);
  EXPECT_NEAR(area(extractor->extract(0.5, nullptr)), 0.25 * whole, 1e-5);
}

TEST(CellExtract, RefusesAFactorThatLeavesNothing) {
  const KbSurfaceMeshRegular mesh({2, 2}, {0, 0, 0}, {1, 1, 0});
  const std::unique_ptr<KiCellExtractIj> extractor(KiCellExtractIj::getNewInstance(mesh, false, nullptr));
  MessageLog messages;
  EXPECT_EQ(extractor->extract(-1.0, nullptr).getTopology().getNumCells(), 0u);
  ASSERT_EQ(messages.lines.size(), 1u);
  EXPECT_EQ(messages.lines[0], "KiCellExtractIj::extract: the factor -1.000000 is not greater than 0");
}

TEST(CellExtract, CurvedCellsFillABallByTheCubeOfTheFactor) {
  constexpr double FACTOR = 0.6;
  const double volume = FACTOR * FACTOR * FACTOR * 4.0 * std::numbers::pi / 3.0;
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(1e-4, 4));
  for (const quadratic::Maker& maker : quadratic::MAKERS) {
    SCOPED_TRACE(maker.name);
    const quadratic::Mesh q = quadratic::volume(maker.make({4, 4, 4}, 0.0, KbMeshMaker::wave), quadratic::ball);
    const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
    const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
    const auto make = [&](KiTessellator* t, bool parallel) {
      return std::unique_ptr<KiCellExtractUnstructured>(KiCellExtractUnstructured::getNewInstance(mesh, parallel, t));
    };
    const auto curved = make(tessellator.get(), false);
    const pick::Surface fine(curved->extract(FACTOR, nullptr));
    const double coarseError =
        std::abs(pick::Surface(make(nullptr, false)->extract(FACTOR, nullptr)).volume() - volume);
    EXPECT_LT(std::abs(fine.volume() - volume), 0.05 * coarseError);
    EXPECT_EQ(fine.numOpenEdges(), 0u) << "each cell is closed by itself";
    EXPECT_EQ(pick::bytesOf(curved->getExtract()),
              pick::bytesOf(make(tessellator.get(), true)->extract(FACTOR, nullptr)));

    // Unshrunken, the positions of the nodes are mapped to the vertices themselves.
    const KeXSurfaceMeshUnstructured& whole = curved->extract({3, 99999, 1, 3}, 1.0, nullptr);
    const KeXDataSetI<KbVec3<double>>* mapped = curved->extractVec3Set(positions);
    ASSERT_NE(mapped, nullptr);
    ASSERT_EQ(mapped->getSize(), whole.getGeometry().getNumNodes());
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      EXPECT_LT((mapped->get(v) - whole.getGeometry().getCoord(v)).length(), 1e-6);
    std::vector<std::size_t> cells;
    for (std::size_t p = 0; p < whole.getTopology().getNumCells(); ++p)
      if (const std::size_t c = whole.getTopology().getInputCellIndexI(p); cells.empty() || cells.back() != c)
        cells.push_back(c);
    EXPECT_EQ(cells, (std::vector<std::size_t>{3, 1, 3}));
  }
}

TEST(CellExtract, CurvedSurfaceCellsShrinkToo) {
  const auto cap = [](const KbVec3<double>& p) { return KbVec3<double>(p[0], p[1], 1.0).normalized(); };
  const quadratic::Mesh q = quadratic::surface(KbMeshMaker::quadrangles({3, 3}), cap);
  const KbSurfaceMeshUnstructured mesh(q.coordinates, q.cells());
  const std::unique_ptr<KiTessellator> tessellator(KiTessellator::getNewTessellatorBasic(1e-4, 4));
  const std::unique_ptr<KiCellExtractUnstructured> curved(
      KiCellExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const std::unique_ptr<KiCellExtractUnstructured> corners(
      KiCellExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const double area = 0.25 * 4.0 * std::numbers::pi / 6.0;
  EXPECT_NEAR(pick::Surface(curved->extract(0.5, nullptr)).area(), area, 4e-3 * area);
  EXPECT_LT(pick::Surface(corners->extract(0.5, nullptr)).area(), 0.99 * area);
}

} // namespace
