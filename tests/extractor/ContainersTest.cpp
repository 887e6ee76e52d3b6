// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KeCell.h>
#include <KerrinExtractor/KeGeometryISet.h>
#include <KerrinExtractor/KeXLineCell.h>
#include <KerrinExtractor/KxEdgeLengthStat.h>
#include <KerrinExtractor/KxLineCellExtract.h>
#include <KerrinExtractor/KxSingleton.h>
#include <KerrinExtractor/KxSurfaceTopologyExplicitIFromIj.h>
#include <KerrinExtractor/KxTriplet.h>
#include <KerrinExtractor/KxVolumeTopologyExplicitIFromHexaIjk.h>
#include <KerrinExtractor/KxVolumeTopologyExplicitIFromIjk.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace {

using Vec3 = KbVec3<double>;

std::string textOf(const KxTuple& tuple) {
  std::ostringstream stream;
  stream << tuple;
  return stream.str();
}

std::vector<std::size_t> nodesOf(const KiCell* cell) {
  std::vector<std::size_t> nodes;
  for (std::size_t i = 0; i < cell->getNumNodes(); ++i)
    nodes.push_back(cell->getNodeIndex(i));
  return nodes;
}

TEST(KxTuple, ComparesByIndexAcrossForms) {
  EXPECT_EQ(KxDoublet(2, 3), KxDoublet(2, 3));
  EXPECT_NE(static_cast<const KxTuple&>(KxSingleton(2)), static_cast<const KxTuple&>(KxDoublet(2, 3)));
  EXPECT_LT(KxTriplet(1, 9, 9), KxTriplet(2, 0, 0));
  EXPECT_LT(KxTriplet(1, 2, 3), KxTriplet(1, 3, 0));
  EXPECT_FALSE(KxTriplet(1, 2, 3) < KxTriplet(1, 2, 3));
  EXPECT_EQ(textOf(KxSingleton(7)), "(7)");
  EXPECT_EQ(textOf(KxDoublet(2, 3)), "(2,3)");
  EXPECT_EQ(textOf(KxTriplet(1, 2, 3)), "(1,2,3)");
  EXPECT_EQ(KxDoublet(2, 3).getK(), static_cast<std::size_t>(-1));
}

TEST(KxTriplet, CountsAndOrdersByIndex) {
  KxTriplet t(1, 2, 3);
  t.j() = 20;
  t += KxTriplet(1, 1, 1);
  EXPECT_EQ(t, KxTriplet(2, 21, 4));
  EXPECT_EQ(t - KxTriplet(2), KxTriplet(0, 19, 2));
  EXPECT_EQ(t + 3, KxTriplet(5, 24, 7));
  EXPECT_EQ(KxTriplet(KxDoublet(4, 5)), KxTriplet(4, 5, 0));
  KiMesh::Dimension axes[3];
  EXPECT_EQ(KxTriplet::orderDimensions(axes, KiMeshIjk::KJI_LAYOUT, t), KbVec3<std::size_t>(4, 21, 2));
  EXPECT_EQ(axes[2], KiMesh::DIMENSION_I) << "the fastest comes last";
  EXPECT_EQ(KxTriplet::orderDimensions(axes, KiMeshIjk::JIK_LAYOUT, t), KbVec3<std::size_t>(21, 2, 4));
  EXPECT_EQ(axes[0], KiMesh::DIMENSION_J);
}

TEST(KxHistogram, FindsTheValueBelowWhichAFractionLies) {
  KxHistogram<double> histogram;
  EXPECT_EQ(histogram.getValueBelow(0.5), 0.0);
  histogram.init(0.0, 10.0, 20);
  for (std::size_t i = 0; i < 1000; ++i)
    histogram.push(10.0 * std::sqrt(static_cast<double>(i) / 1000.0));
  histogram.push(std::nan(""));
  EXPECT_EQ(histogram.getNumValues(), 1000u);
  EXPECT_NEAR(histogram.getValueBelow(0.25), 5.0, 0.1);
  EXPECT_NEAR(histogram.getValueBelow(0.81), 9.0, 0.1);
  EXPECT_NEAR(histogram.getValueBelow(1.0), 10.0, 1e-9);
  histogram.init(3.0, 3.0, 5);
  histogram.push(3.0);
  EXPECT_EQ(histogram.getValueBelow(0.2), 3.0);
}

TEST(KxEdgeLengthStat, MeasuresTheEdgesOfCells) {
  const std::vector<double> coordinates{0, 0, 0, 3, 0, 0, 3, 4, 0, 3, 4, 0, 3, 4, 10};
  const KbLineMeshCurvilinear mesh({4}, coordinates);
  const KiGeometryI& geometry = mesh.getGeometry();
  KxEdgeLengthStat::MinMaxLength range(geometry);
  EXPECT_EQ(range.getMax(), 0.0);
  const auto walk = [](KxEdgeLengthStat& stat, const std::vector<std::size_t>& nodes) {
    stat.startCell();
    for (const std::size_t node : nodes)
      stat.push(node);
    stat.finishCell();
  };
  walk(range, {2, 0, 1, 2}); // the triangle 0 1 2, closed
  walk(range, {2, 3, 4});    // an edge without length between
  EXPECT_DOUBLE_EQ(range.getMin(), 3.0);
  EXPECT_DOUBLE_EQ(range.getMax(), 10.0);
  KxEdgeLengthStat::Histogram histogram(geometry);
  histogram.init(range.getMin(), range.getMax(), 100);
  walk(histogram, {2, 0, 1, 2});
  walk(histogram, {2, 3, 4});
  EXPECT_EQ(histogram.getLengths().getNumValues(), 4u);
  EXPECT_NEAR(histogram.getValueBelow(0.5), 4.0, 0.1);
  EXPECT_EQ(KxEdgeLengthStat::samplingStep(0), 1u);
  EXPECT_EQ(KxEdgeLengthStat::samplingStep(9999), 1u);
  EXPECT_EQ(KxEdgeLengthStat::samplingStep(1000000), 100u);
}

TEST(KeGeometryISet, IsItsPartsOneBehindTheOther) {
  const std::vector<double> first{0, 0, 0, 1, 0, 0};
  std::vector<double> second{5, 0, 0, 6, 2, 0, 7, 0, -3};
  const KbLineMeshCurvilinear a({1}, first);
  KbLineMeshCurvilinear b({2}, second);
  KeGeometryISet set;
  EXPECT_EQ(set.getNumNodes(), 0u);
  set.reserve(2);
  set.add(a.getGeometry(), 2);
  set.add(b.getGeometry(), 3);
  EXPECT_EQ(set.getNumNodes(), 5u);
  EXPECT_EQ(set.getCoord(1), Vec3(1, 0, 0));
  EXPECT_EQ(set.getCoord(2), Vec3(5, 0, 0));
  EXPECT_EQ(set.getCoord(4), Vec3(7, 0, -3));
  EXPECT_EQ(set.getMin(), Vec3(0, 0, -3));
  EXPECT_EQ(set.getMax(), Vec3(7, 2, 0));
  EXPECT_EQ(set.getVertexBuffer(), nullptr);
  const std::size_t stamp = set.getTimeStamp();
  EXPECT_EQ(set.getTimeStamp(), stamp);
  b.touchGeometry();
  EXPECT_GT(set.getTimeStamp(), stamp);
  const std::size_t before = set.getTimeStamp();
  set.clear();
  EXPECT_GT(set.getTimeStamp(), before);
  EXPECT_EQ(set.getNumNodes(), 0u);
}

TEST(KeCell, HoldsNodesOfItsOwn) {
  class LineCell final : public KeCell, public virtual KeXLineCell {
  public:
    LineCell()
        : KeCell(2) {}
  };
  LineCell cell;
  cell.setNodeIndex(0, 7);
  cell.setNodeIndex(1, 3);
  EXPECT_EQ(nodesOf(&cell), (std::vector<std::size_t>{7, 3}));
  EXPECT_EQ(cell.getNumEdges(), 1u);
}

TEST(KxLineCellExtract, AsksWhetherAPointLiesOnASegment) {
  class LineCell final : public KeCell, public KiLineCell {
  public:
    LineCell()
        : KeCell(2) {
      setNodeIndex(1, 1);
    }
  };
  const std::vector<double> coordinates{0, 0, 0, 4, 0, 0};
  const KbLineMeshCurvilinear mesh({1}, coordinates);
  const LineCell cell;
  std::vector<double> weights;
  ASSERT_TRUE(KxLineCellExtract::isPointInsideCell(mesh.getGeometry(), &cell, Vec3(1, 0, 0), weights));
  EXPECT_NEAR(weights.at(1), 0.25, 1e-9);
  ASSERT_TRUE(KxLineCellExtract::isPointInsideCell(mesh.getGeometry(), &cell, Vec3(4.0001, 0, 0), weights))
      << "rounded";
  EXPECT_EQ(weights, (std::vector<double>{0.0, 1.0}));
  EXPECT_FALSE(KxLineCellExtract::isPointInsideCell(mesh.getGeometry(), &cell, Vec3(4.001, 0, 0), weights));
  EXPECT_FALSE(KxLineCellExtract::isPointInsideCell(mesh.getGeometry(), &cell, Vec3(5, 0, 0), weights));
  EXPECT_FALSE(KxLineCellExtract::isPointInsideCell(mesh.getGeometry(), nullptr, Vec3(1, 0, 0), weights));
}

TEST(TopologyViews, StructuredSurfacesAreExplicitQuadrangles) {
  const std::vector<std::uint8_t> dead{0, 0, 0, 0, 1, 0};
  const KbSurfaceMeshRegular mesh({3, 2}, {0, 0, 0}, {1, 1, 0}, dead);
  const KxSurfaceTopologyExplicitIFromIj view(mesh.getTopology());
  EXPECT_EQ(view.getNumCells(), 6u);
  EXPECT_EQ(view.getEndNodeId(), 12u);
  EXPECT_EQ(view.getTimeStamp(), mesh.getTopology().getTimeStamp());
  EXPECT_EQ(nodesOf(view.getCell(4)), (std::vector<std::size_t>{5, 6, 10, 9}));
  EXPECT_EQ(nodesOf(view.getCell(1, 1)), (std::vector<std::size_t>{5, 6, 10, 9}));
  EXPECT_TRUE(view.isDead(4));
  EXPECT_FALSE(view.isDead(3));
  EXPECT_EQ(view.getCell(6), nullptr);
}

TEST(TopologyViews, StructuredVolumesAreExplicitHexahedra) {
  const std::vector<std::uint8_t> dead{0, 0, 0, 0, 0, 0, 0, 1};
  const KbVolumeMeshRegular regular({2, 2, 2}, {0, 0, 0}, {1, 1, 1}, dead);
  const KxVolumeTopologyExplicitIFromIjk view(regular.getTopology());
  EXPECT_EQ(view.getNumCells(), 8u);
  EXPECT_EQ(view.getEndNodeId(), 27u);
  EXPECT_TRUE(view.hasDeadCells());
  EXPECT_TRUE(view.isDead(7));
  EXPECT_EQ(nodesOf(view.getCell(7)), (std::vector<std::size_t>{13, 14, 17, 16, 22, 23, 26, 25}));
  EXPECT_EQ(view.getCell(8), nullptr);

  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({2, 2, 2});
  const KbVolumeMeshHexahedronIjk hexahedra({2, 2, 2}, a.coordinates, a.connectivity);
  const KxVolumeTopologyExplicitIFromHexaIjk hexahedronView(hexahedra.getTopology());
  EXPECT_EQ(hexahedronView.getEndNodeId(), 27u);
  EXPECT_EQ(nodesOf(hexahedronView.getCell(1, 1, 1)), nodesOf(view.getCell(7)));
}

} // namespace
