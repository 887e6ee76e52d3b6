// SPDX-License-Identifier: BSD-3-Clause
// Isosurfaces and slices of volume meshes with quadratic cells.
#include "extractor/ArrayMeshes.h"
#include "extractor/PickTestTools.h"
#include "extractor/QuadraticMeshes.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <cmath>
#include <memory>
#include <numbers>

namespace {

using namespace pick;
using std::numbers::pi;

template <class Extract>
std::unique_ptr<Extract> makeCut(const KbVolumeMeshUnstructured& mesh, KiTessellator* tessellator,
                                 bool parallel = false) {
  return std::unique_ptr<Extract>(Extract::getNewInstance(mesh, parallel, tessellator));
}

std::unique_ptr<KiTessellator> makeTessellator(double maxError = 0.0, std::size_t maxDepth = 3) {
  return std::unique_ptr<KiTessellator>(KiTessellator::getNewTessellatorBasic(maxError, maxDepth));
}

double squaredLength(const Vec3& p) { return p.squaredLength(); }

/// One mesh of each shape; in the last one linear cells lie among the quadratic ones.
class TessellatedCut : public testing::TestWithParam<std::size_t> {
protected:
  static constexpr std::size_t NUM_KINDS = quadratic::MAKERS.size() + 1;
  static quadratic::Mesh make(const KbIndex<3>& counts, const quadratic::Map& map) {
    const std::size_t kind = GetParam();
    const quadratic::Maker& maker = quadratic::MAKERS[std::min(kind, quadratic::MAKERS.size() - 1)];
    return quadratic::volume(maker.make(counts, 0.0, KbMeshMaker::wave), map,
                             [&](std::size_t cell) { return kind < quadratic::MAKERS.size() || cell % 3 != 0; });
  }
  static bool isMixed() { return GetParam() == quadratic::MAKERS.size(); }
};

std::string nameOf(const testing::TestParamInfo<std::size_t>& info) {
  return info.param < quadratic::MAKERS.size() ? quadratic::MAKERS[info.param].name : "withLinearCells";
}

INSTANTIATE_TEST_SUITE_P(Shapes, TessellatedCut, testing::Range<std::size_t>(0, 6), nameOf);

TEST_P(TessellatedCut, IsosurfaceOfAQuadraticFieldIsExactAtItsVertices) {
  const quadratic::Mesh q = make({4, 4, 4}, quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const std::vector<double> values = q.values(squaredLength);
  const KbScalarSetI set("r2", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const auto corners = makeCut<KiIsosurfExtractUnstructured>(mesh, nullptr);
  const auto curved = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get());
  constexpr double R = 0.7;
  const Surface coarse(corners->extract(R * R, set, nullptr));
  const Surface fine(curved->extract(R * R, set, nullptr));
  EXPECT_EQ(fine.numOpenEdges(), 0u);
  EXPECT_EQ(coarse.numOpenEdges(), 0u);
  const double area = 4.0 * pi * R * R;
  const double coarseError = std::abs(coarse.area() - area);
  EXPECT_LT(std::abs(fine.area() - area), (isMixed() ? 0.6 : 0.25) * coarseError) << coarseError;
  if (isMixed()) return; // linear cells have not the quadratic field
  for (const Vec3& p : fine.vertices)
    EXPECT_NEAR(p.length(), R, 1e-6);
  EXPECT_LT(fine.volume(), 0.0) << "the inside is where values are greater";
}

TEST_P(TessellatedCut, PlaneSlicesOfABallAreDiscs) {
  const quadratic::Mesh q = make({4, 4, 4}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const auto tessellator = makeTessellator(1e-4, 4);
  const auto corners = makeCut<KiPlaneSliceExtractUnstructured>(mesh, nullptr);
  const auto curved = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
  const Vec3 normal = Vec3(1, 2, 3).normalized();
  constexpr double D = 0.21;
  const double area = pi * (1.0 - D * D);
  const Surface coarse(corners->extract(normal, D, nullptr));
  const Surface fine(curved->extract(normal, D, nullptr));
  const double coarseError = std::abs(coarse.area() - area);
  EXPECT_LT(std::abs(fine.area() - area), (isMixed() ? 0.7 : 0.1) * coarseError) << coarseError;
  for (const Vec3& p : fine.vertices)
    EXPECT_NEAR(normal.dot(p), D, 1e-6);
  // The only open edges are those on the sphere.
  const KeXLineMeshUnstructured* lines = curved->extractLines(normal, D, nullptr);
  ASSERT_NE(lines, nullptr);
  const Surface again(curved->extract(normal, D, nullptr));
  std::map<std::pair<std::size_t, std::size_t>, int> edges;
  for (const auto& ids : again.polygons)
    for (std::size_t c = 0; c < ids.size(); ++c)
      ++edges[std::minmax(ids[c], ids[(c + 1) % ids.size()])];
  std::size_t numInside = 0;
  for (const auto& [edge, count] : edges) {
    EXPECT_LE(count, 2);
    if (count == 1 && again.vertices[edge.first].length() < 0.9) ++numInside;
  }
  EXPECT_EQ(numInside, 0u);
}

TEST_P(TessellatedCut, QuadraticFieldsAreMappedExactly) {
  if (isMixed()) return; // linear cells have not the quadratic field
  const auto field = [](const Vec3& p) { return 1.0 + p[0] * p[1] - 2.0 * p[2] * p[2] + p[1] * p[2] + 3.0 * p[0]; };
  const quadratic::Mesh q = make({2, 2, 2}, quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const std::vector<double> values = q.values(field);
  std::vector<double> vectors;
  for (const double v : values)
    vectors.insert(vectors.end(), {v, 2.0 * v, -v});
  const KbScalarSetI set("field", DataBinding::PER_NODE, values);
  const KbVec3SetI vectorSet("vectors", DataBinding::PER_NODE, vectors);
  const auto tessellator = makeTessellator();
  const auto slice = makeCut<KiSphereSliceExtractUnstructured>(mesh, tessellator.get());
  const Surface s(slice->extract(Vec3(0.1, 0.0, 0.05), 0.6, nullptr));
  const KeXDataSetI<double>* mapped = slice->extractScalarSet(set);
  const KeXDataSetI<Vec3>* mappedVectors = slice->extractVec3Set(vectorSet);
  ASSERT_NE(mapped, nullptr);
  ASSERT_NE(mappedVectors, nullptr);
  ASSERT_EQ(mapped->getSize(), s.vertices.size());
  ASSERT_GT(s.vertices.size(), 12u);
  for (std::size_t v = 0; v < s.vertices.size(); ++v) {
    EXPECT_NEAR(mapped->get(v), field(s.vertices[v]), 2e-6);
    EXPECT_NEAR(mappedVectors->get(v)[1], 2.0 * field(s.vertices[v]), 4e-6);
  }
  EXPECT_EQ(slice->extractScalarSet(set), mapped) << "the same set is mapped once";
}

TEST_P(TessellatedCut, VerticesOfACurvedMeshLieOnTheCut) {
  // Positions mapped as a set are the positions, whatever the map.
  const quadratic::Mesh q = make({2, 2, 2}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
  const auto tessellator = makeTessellator();
  const auto slice = makeCut<KiCylinderSliceExtractUnstructured>(mesh, tessellator.get());
  const Surface s(slice->extract(Vec3(0.0), 0.5, Vec3(0, 0, 1), nullptr));
  ASSERT_GT(s.vertices.size(), 20u);
  const KeXDataSetI<Vec3>* mapped = slice->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t v = 0; v < s.vertices.size(); ++v) {
    EXPECT_NEAR(std::hypot(s.vertices[v][0], s.vertices[v][1]), 0.5, 1e-6);
    EXPECT_LT((mapped->get(v) - s.vertices[v]).length(), 1e-6);
  }
}

TEST_P(TessellatedCut, OutputCellsNameTheCellsTheyAreIn) {
  const quadratic::Mesh q = make({3, 3, 3}, quadratic::identity);
  std::vector<double> cellValues;
  for (std::size_t c = 0; c < q.numCells(); ++c)
    cellValues.push_back(static_cast<double>(c));
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbScalarSetI cells("cells", DataBinding::PER_CELL, cellValues);
  const auto tessellator = makeTessellator(1e-9, 2);
  const auto slice = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
  const KeXSurfaceMeshUnstructured& out = slice->extract(Vec3(1, 1, 1), 0.31, nullptr);
  const Surface s(out);
  const KeXDataSetI<double>* mapped = slice->extractScalarSet(cells);
  ASSERT_NE(mapped, nullptr);
  ASSERT_EQ(mapped->getSize(), s.polygons.size());
  for (std::size_t p = 0; p < s.polygons.size(); ++p) {
    const std::size_t cell = out.getTopology().getInputCellIndexI(p);
    EXPECT_EQ(mapped->get(p), static_cast<double>(cell));
    Vec3 centre;
    for (const std::size_t v : s.polygons[p])
      centre += s.vertices[v] / static_cast<double>(s.polygons[p].size());
    std::vector<double> weights;
    EXPECT_TRUE(mesh.getTopology().getCell(cell)->isPointInsideCell(mesh.getGeometry(), centre, weights)) << p;
  }
}

TEST_P(TessellatedCut, LeavesOutDeadAndRefusedCells) {
  const quadratic::Mesh q = make({3, 3, 3}, quadratic::ball);
  std::vector<std::uint8_t> dead(q.numCells());
  std::vector<KbIndex<1>> kept;
  for (std::size_t c = 0; c < dead.size(); ++c) {
    dead[c] = c % 4 == 0;
    if (c % 3 != 0) kept.push_back({c});
  }
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells(), dead);
  const KbCellListFilterI filter(kept);
  const auto tessellator = makeTessellator();
  const auto slice = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
  const auto isoslice = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get());
  const std::vector<double> z = q.values([](const Vec3& p) { return p[2]; });
  const KbScalarSetI set("z", DataBinding::PER_NODE, z);
  const KeXSurfaceMeshUnstructured& all = slice->extract(Vec3(0, 0, 1), 0.1, nullptr);
  const std::size_t numAll = all.getTopology().getNumCells();
  for (std::size_t p = 0; p < numAll; ++p)
    EXPECT_NE(all.getTopology().getInputCellIndexI(p) % 4, 0u);
  for (const KeXSurfaceMeshUnstructured* out :
       {&slice->extract(Vec3(0, 0, 1), 0.1, &filter), &isoslice->extract(0.1, set, &filter)}) {
    EXPECT_GT(out->getTopology().getNumCells(), 0u);
    for (std::size_t p = 0; p < out->getTopology().getNumCells(); ++p) {
      EXPECT_NE(out->getTopology().getInputCellIndexI(p) % 4, 0u);
      EXPECT_NE(out->getTopology().getInputCellIndexI(p) % 3, 0u);
    }
  }
  EXPECT_EQ(slice->extract(Vec3(0, 0, 1), 0.1, nullptr).getTopology().getNumCells(), numAll);
}

TEST_P(TessellatedCut, ParallelEqualsSerialAndEqualCallsDoNothing) {
  const quadratic::Mesh q = make({6, 6, 6}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const std::vector<double> values = q.values([](const Vec3& p) { return KbMeshMaker::wave(p * 0.2); });
  const KbScalarSetI set("wave", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const auto serial = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get());
  const auto parallel = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get(), true);
  EXPECT_GT(serial->extract(0.3, set, nullptr).getTopology().getNumCells(), 500u);
  EXPECT_EQ(bytesOf(serial->getExtract()), bytesOf(parallel->extract(0.3, set, nullptr)));
  EXPECT_EQ(bytesOf(*serial->extractLines(0.3, set, nullptr)), bytesOf(*parallel->extractLines(0.3, set, nullptr)));
  Recorder recorder;
  serial->setExtractorCallback(recorder);
  const std::size_t stamp = serial->getExtract().getGeometry().getTimeStamp();
  serial->extract(0.3, set, nullptr);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(recorder.changes, (std::array<bool, 3>{false, false, false}));
  EXPECT_EQ(serial->getExtract().getGeometry().getTimeStamp(), stamp);
}

TEST_P(TessellatedCut, LinesLieBetweenCells) {
  const quadratic::Mesh q = make({2, 2, 2}, quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, q.coordinates);
  const auto tessellator = makeTessellator();
  const auto slice = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
  const KeXLineMeshUnstructured* lines = slice->extractLines(Vec3(1, 1, 2), 0.2, nullptr);
  ASSERT_NE(lines, nullptr);
  const std::size_t numLines = lines->getTopology().getNumCells();
  ASSERT_GT(numLines, 10u);
  const KeXDataSetI<Vec3>* mapped = slice->extractVec3Set(positions);
  ASSERT_NE(mapped, nullptr);
  ASSERT_EQ(mapped->getSize(), lines->getGeometry().getNumNodes()) << "sets are mapped onto the lines now";
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_LT((mapped->get(v) - lines->getGeometry().getCoord(v)).length(), 1e-6);
  const Surface s(slice->extract(Vec3(1, 1, 2), 0.2, nullptr));
  ASSERT_EQ(slice->extractVec3Set(positions)->getSize(), s.vertices.size()) << "and onto the surface again";
  std::map<std::pair<std::size_t, std::size_t>, std::vector<std::size_t>> cellsOfEdge;
  for (std::size_t p = 0; p < s.polygons.size(); ++p)
    for (std::size_t c = 0; c < s.polygons[p].size(); ++c)
      cellsOfEdge[std::minmax(s.polygons[p][c], s.polygons[p][(c + 1) % s.polygons[p].size()])].push_back(
          slice->getExtract().getTopology().getInputCellIndexI(p));
  std::size_t numBetween = 0;
  for (const auto& [edge, cells] : cellsOfEdge)
    numBetween += cells.size() == 1 || cells[0] != cells[1];
  EXPECT_EQ(numLines, numBetween);
  EXPECT_LT(numBetween, cellsOfEdge.size()) << "the subdivision's own edges are left out";
}

TEST(TessellatedCutState, WithoutATessellatorThereAreCornersAndNoLines) {
  const quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({3, 3, 3}), quadratic::ball);
  const quadratic::Mesh l =
      quadratic::volume(KbMeshMaker::hexahedra({3, 3, 3}), quadratic::ball, [](std::size_t) { return false; });
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const KbVolumeMeshUnstructured linearMesh(l.coordinates, l.cells());
  const auto corners = makeCut<KiPlaneSliceExtractUnstructured>(mesh, nullptr);
  const auto tessellator = makeTessellator();
  const auto passed = makeCut<KiPlaneSliceExtractUnstructured>(linearMesh, tessellator.get());
  const Vec3 normal(0.2, 0.3, 1.0);
  EXPECT_EQ(bytesOf(corners->extract(normal, 0.1, nullptr)), bytesOf(passed->extract(normal, 0.1, nullptr)));
  EXPECT_EQ(corners->extractLines(normal, 0.1, nullptr), nullptr);
  EXPECT_EQ(passed->extractLines(normal, 0.1, nullptr), nullptr) << "no cell to subdivide";
}

/// Halves every edge as often as it is told.
class UniformTessellator final : public KiTessellator {
public:
  std::size_t getTimeStamp() const override { return m_stamp; }
  std::size_t getMaxDepth() const override { return m_depth; }
  bool isEdgeSplit(const KbVec3<double>&, const KbVec3<double>&, const KbVec3<double>&, std::size_t) const override {
    return true;
  }
  void setDepth(std::size_t depth) {
    m_depth = depth;
    m_stamp = KxTimeStamp::getTimeStamp();
  }

private:
  std::size_t m_depth = 0;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

TEST_P(TessellatedCut, ATessellatorThatChangesCutsAgain) {
  const quadratic::Mesh q = make({1, 1, 1}, quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  UniformTessellator tessellator;
  const auto slice = makeCut<KiPlaneSliceExtractUnstructured>(mesh, &tessellator);
  std::size_t last = 0;
  for (std::size_t depth = 0; depth < 4; ++depth) {
    tessellator.setDepth(depth);
    const Surface s(slice->extract(Vec3(0.1, 0.2, 1), 0.01, nullptr));
    EXPECT_GT(s.polygons.size(), 2 * last);
    EXPECT_NEAR(s.area(), 4.0 * std::sqrt(1.05), 1e-5);
    last = s.polygons.size();
  }
  EXPECT_LT(last, 64u * 6 * 8 * 3);
}

TEST_P(TessellatedCut, UniformSubdivisionStaysClosed) {
  // Every edge is split, straight ones of linear cells too, and every tie of lengths has to come out the same.
  const quadratic::Mesh q = make({2, 2, 2}, quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  UniformTessellator tessellator;
  tessellator.setDepth(3);
  const auto slice = makeCut<KiSphereSliceExtractUnstructured>(mesh, &tessellator);
  const Surface s(slice->extract(Vec3(0.01, 0.02, 0.0), 0.8, nullptr));
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.area(), 4.0 * pi * 0.64, 0.03);
}

/// The cells of a quadratic mesh over plain memory.
arrays::CellArrays<std::int32_t> arraysOf(const quadratic::Mesh& q) {
  arrays::CellArrays<std::int32_t> cells;
  cells.connectivity = q.connectivity;
  cells.offsets = q.offsets;
  cells.shapes = q.shapes;
  cells.numCells = q.numCells();
  cells.numNodes = q.numNodes();
  return cells;
}

template <arrays::Access A>
using PlainMesh = arrays::UnstructuredMesh<A, std::int32_t, double>;

TEST_P(TessellatedCut, VirtualOperationsGiveTheSameAsArrays) {
  const quadratic::Mesh q = make({3, 3, 3}, quadratic::ball);
  const PlainMesh<arrays::Access::RAW> raw(q.coordinates, arraysOf(q));
  const PlainMesh<arrays::Access::VIRTUAL> plain(q.coordinates, arraysOf(q));
  const auto tessellator = makeTessellator();
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> fromArrays(
      KiPlaneSliceExtractUnstructured::getNewInstance(raw, false, tessellator.get()));
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> fromVirtual(
      KiPlaneSliceExtractUnstructured::getNewInstance(plain, false, tessellator.get()));
  EXPECT_EQ(bytesOf(fromArrays->extract(Vec3(0, 1, 1), 0.2, nullptr)),
            bytesOf(fromVirtual->extract(Vec3(0, 1, 1), 0.2, nullptr)));
}

TEST(TessellatedCutState, CellsWithBadNodesOrValuesYieldNothing) {
  quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({3, 1, 1}), quadratic::identity);
  std::vector<double> values = q.values([](const Vec3& p) { return p[2]; });
  values[static_cast<std::size_t>(q.connectivity[11])] = std::nan(""); // a middle of the first cell alone
  q.connectivity[2 * 20 + 15] = 9999;                                  // a middle of the last cell
  const PlainMesh<arrays::Access::RAW> mesh(q.coordinates, arraysOf(q));
  const KbScalarSetI set("z", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const std::unique_ptr<KiIsosurfExtractUnstructured> cut(
      KiIsosurfExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const MessageLog log;
  const KeXSurfaceMeshUnstructured& out = cut->extract(0.1, set, nullptr);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0], "KiIsosurfExtractUnstructured::extract: cell 2 has a node id that is out of range; such "
                          "cells are skipped");
  ASSERT_GT(out.getTopology().getNumCells(), 0u);
  for (std::size_t p = 0; p < out.getTopology().getNumCells(); ++p)
    EXPECT_EQ(out.getTopology().getInputCellIndexI(p), 1u);
}

/// A quadratic hexahedron, and a cube beside it as a polyhedron.
quadratic::Mesh hexahedronAndPolyhedron() {
  quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({2, 1, 1}), quadratic::identity,
                                        [](std::size_t cell) { return cell == 0; });
  q.shapes[1] = KiVolumeCell::POLYHEDRON;
  return q;
}
arrays::CellArrays<std::int32_t> withFacets(const quadratic::Mesh& q) {
  arrays::CellArrays<std::int32_t> cells = arraysOf(q);
  cells.facets = {{}, {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}};
  return cells;
}

TEST(TessellatedCutState, APolyhedronAloneIsCut) {
  const quadratic::Mesh q = hexahedronAndPolyhedron();
  const PlainMesh<arrays::Access::RAW> mesh(q.coordinates, withFacets(q));
  std::vector<double> values = q.values([](const Vec3& p) { return p[2]; });
  values[static_cast<std::size_t>(q.connectivity[11])] = std::nan(""); // the hexahedron yields nothing
  const KbScalarSetI set("z", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const std::unique_ptr<KiIsosurfExtractUnstructured> cut(
      KiIsosurfExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const Surface s(cut->extract(0.1, set, nullptr));
  EXPECT_NEAR(s.area(), 2.0, 1e-6);
  EXPECT_EQ(cut->getExtract().getTopology().getInputCellIndexI(0), 1u);
}

TEST(TessellatedCutState, PolyhedraStayWhatTheyAre) {
  const quadratic::Mesh q = hexahedronAndPolyhedron();
  const PlainMesh<arrays::Access::RAW> mesh(q.coordinates, withFacets(q));
  const std::vector<double> values = q.values([](const Vec3& p) { return p[0] + p[1]; });
  const KbScalarSetI set("x+y", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> cut(
      KiPlaneSliceExtractUnstructured::getNewInstance(mesh, false, tessellator.get()));
  const Surface s(cut->extract(Vec3(0, 0, 1), 0.25, nullptr));
  EXPECT_NEAR(s.area(), 4.0, 1e-6);
  const KeXDataSetI<double>* mapped = cut->extractScalarSet(set);
  ASSERT_NE(mapped, nullptr);
  for (std::size_t v = 0; v < s.vertices.size(); ++v)
    EXPECT_NEAR(mapped->get(v), s.vertices[v][0] + s.vertices[v][1], 1e-6);
  EXPECT_EQ(cut->getExtract().getTopology().getInputCellIndexI(s.polygons.size() - 1), 1u);
}

TEST(TessellatedCutState, SetsPerCellAreAveraged) {
  const quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({4, 4, 4}), quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  std::vector<double> values;
  for (std::size_t c = 0; c < 64; ++c)
    values.push_back(static_cast<double>(c / 16));
  const KbScalarSetI set("layer", DataBinding::PER_CELL, values);
  const auto tessellator = makeTessellator();
  const auto cut = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get());
  const Surface s(cut->extract(1.5, set, nullptr));
  EXPECT_NEAR(s.area(), 4.0, 1e-6);
  for (const Vec3& p : s.vertices)
    EXPECT_NEAR(p[2], 0.0, 1e-6);
}

TEST(TessellatedCutState, CancellationInEachPhaseLeavesAnExtractorThatWorks) {
  const quadratic::Mesh q = quadratic::volume(KbMeshMaker::mixed({3, 3, 3}), quadratic::ball);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const auto tessellator = makeTessellator();
  const auto reference = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
  const std::string bytes = bytesOf(reference->extract(Vec3(1, 0, 0), 0.1, nullptr));
  std::size_t numStops = 0;
  for (std::size_t question = 0;; ++question) {
    const auto cut = makeCut<KiPlaneSliceExtractUnstructured>(mesh, tessellator.get());
    Recorder recorder;
    recorder.stopAt = question;
    cut->setExtractorCallback(recorder);
    try {
      cut->extract(Vec3(1, 0, 0), 0.1, nullptr);
      break;
    } catch (const KiCancellationException&) {
      ++numStops;
    }
    EXPECT_EQ(cut->getExtract().getTopology().getNumCells(), 0u);
    recorder.stopAt = static_cast<std::size_t>(-1);
    EXPECT_EQ(bytesOf(cut->extract(Vec3(1, 0, 0), 0.1, nullptr)), bytes);
  }
  EXPECT_GT(numStops, 10u);
}

TEST(TessellatedCutState, ASetThatDoesNotSuitGivesItsMessage) {
  const quadratic::Mesh q = quadratic::volume(KbMeshMaker::hexahedra({2, 2, 2}), quadratic::identity);
  const KbVolumeMeshUnstructured mesh(q.coordinates, q.cells());
  const std::vector<double> values{1, 2, 3};
  const KbScalarSetI set("short", DataBinding::PER_NODE, values);
  const auto tessellator = makeTessellator();
  const auto cut = makeCut<KiIsosurfExtractUnstructured>(mesh, tessellator.get());
  const MessageLog log;
  EXPECT_EQ(cut->extract(0.0, set, nullptr).getTopology().getNumCells(), 0u);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_NE(log.lines[0].find("\"short\" has fewer"), std::string::npos);
}

} // namespace
