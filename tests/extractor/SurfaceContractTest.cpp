// SPDX-License-Identifier: BSD-3-Clause
// What every family promises that yields a surface and asks no set for it, on every kind of mesh that it serves.
#include "extractor/SurfaceFamilies.h"

#include <KerrinExtractor/KiCancellationException.h>

#include <tbb/global_control.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using namespace pick;

class SurfaceContract : public testing::TestWithParam<Row<SurfaceSubject>> {
protected:
  static std::unique_ptr<SurfaceSubject> make(const SubjectOptions& options = {}) { return GetParam().make(options); }
};

void expectEmpty(const KeXSurfaceMeshUnstructured& mesh) {
  EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
  EXPECT_EQ(mesh.getGeometry().getNumNodes(), 0u);
  EXPECT_EQ(mesh.getTopology().getIndexBuffer()->getByteSize(), 0u);
  EXPECT_EQ(mesh.getGeometry().getVertexBuffer()->getByteSize(), 0u);
}

/// The nodes of a cell of a subject's lattice.
std::vector<std::size_t> nodesOf(const SurfaceSubject& subject, std::size_t cell) {
  const Counts n = subject.counts();
  const std::vector<std::int32_t>& ids = subject.arrays().connectivity;
  const auto stride = static_cast<std::ptrdiff_t>(ids.size() / (n[0] * n[1] * n[2]));
  const auto first = ids.begin() + static_cast<std::ptrdiff_t>(cell) * stride;
  return {first, first + stride};
}

TEST_P(SurfaceContract, AMeshWithoutCellsGivesNothing) {
  const auto subject = make({{0, 0, 0}, false, {}});
  const MessageLog messages;
  expectEmpty(subject->extract());
  EXPECT_TRUE(messages.lines.empty()) << messages.lines.front();
}

TEST_P(SurfaceContract, AMeshWithoutLivingCellsGivesNothing) {
  expectEmpty(make({{2, 2, 2}, false, std::vector<std::uint8_t>(8, 1)})->extract());
}

TEST_P(SurfaceContract, TheOneCellOfAMeshIsShown) {
  const auto subject = make({{1, 1, 1}, false, {}});
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  const Surface s(mesh);
  ASSERT_GT(s.polygons.size(), 0u);
  EXPECT_GT(s.area(), 0.05);
  for (std::size_t p = 0; p < s.polygons.size(); ++p)
    EXPECT_EQ(inputCell(mesh, p, subject->counts()), 0u);
  for (const Vec3& v : s.vertices)
    for (std::size_t axis = 0; axis < 3; ++axis)
      EXPECT_NEAR(v[axis], 0.5, 0.5 + 0.1) << "surfaces are not flat";
}

TEST_P(SurfaceContract, EqualCallsDoNothing) {
  const auto subject = make();
  Recorder recorder;
  subject->extractor().setExtractorCallback(recorder);
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  EXPECT_EQ(recorder.changes, (std::array{true, true, false}));
  const std::size_t geometryStamp = mesh.getGeometry().getTimeStamp();
  const std::size_t topologyStamp = mesh.getTopology().getTimeStamp();
  recorder.reset();
  EXPECT_EQ(&subject->extract(), &mesh);
  EXPECT_EQ(&subject->getExtract(), &mesh);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_EQ(recorder.changes, (std::array{false, false, false}));
  EXPECT_EQ(recorder.numPhases, 0u);
  EXPECT_EQ(mesh.getGeometry().getTimeStamp(), geometryStamp);
  EXPECT_EQ(mesh.getTopology().getTimeStamp(), topologyStamp);
}

TEST_P(SurfaceContract, PhasesNestAndAreAnnounced) {
  const auto subject = make();
  Recorder recorder;
  subject->extractor().setExtractorCallback(recorder);
  subject->extract();
  std::string expected = "B";
  for (std::size_t p = 0; p < recorder.numPhases; ++p)
    expected += "Pp";
  EXPECT_EQ(recorder.withoutSteps(), expected + "e");
  EXPECT_EQ(recorder.numEmptyPhases, 0u);
}

TEST_P(SurfaceContract, StopsAtEachQuestionAndStaysUsable) {
  const auto whole = make();
  Recorder recorder;
  whole->extractor().setExtractorCallback(recorder);
  const std::string expected = bytesOf(whole->extract());
  const std::size_t numQuestions = recorder.questions;
  ASSERT_GT(numQuestions, 0u);
  for (std::size_t q = 0; q < numQuestions; ++q) {
    const auto fresh = make();
    recorder.reset();
    recorder.stopAt = q;
    fresh->extractor().setExtractorCallback(recorder);
    EXPECT_THROW(fresh->extract(), KiCancellationException) << q;
    EXPECT_EQ(recorder.calls.back(), 'e');
    EXPECT_EQ(fresh->getExtract().getTopology().getNumCells(), 0u);
    recorder.stopAt = static_cast<std::size_t>(-1);
    EXPECT_EQ(bytesOf(fresh->extract()), expected);
  }
}

TEST_P(SurfaceContract, ParallelEqualsSerial) {
  SubjectOptions options{{30, 24, 20}, false, std::vector<std::uint8_t>(30 * 24 * 20, 0)};
  for (std::size_t c = 0; c < options.dead.size(); ++c)
    options.dead[c] = c * 2654435761u % 7 == 0;
  const std::string expected = bytesOf(make(options)->extract());
  EXPECT_GT(expected.size(), 1000u);
  options.parallel = true;
  for (const std::size_t threads : {1u, 2u, 4u}) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    EXPECT_EQ(bytesOf(make(options)->extract()), expected) << threads;
  }
}

TEST_P(SurfaceContract, DeadAndRefusedCellsAreTheSame) {
  SubjectOptions options{{5, 3, 3}, false, {}};
  const auto live = make(options);
  for (std::size_t c = 0; c < 5 * 3 * 3; ++c)
    options.dead.push_back(c % 2 != 0);
  const std::string whole = bytesOf(live->extract());
  const std::string half = bytesOf(live->extract(true));
  EXPECT_EQ(bytesOf(make(options)->extract()), half);
  EXPECT_NE(half, whole);
  for (std::size_t c = 0; c < live->getExtract().getTopology().getNumCells(); ++c)
    EXPECT_EQ(inputCell(live->getExtract(), c, live->counts()) % 2, 0u);
  EXPECT_EQ(bytesOf(live->extract()), whole);
}

TEST_P(SurfaceContract, SetsOfNodesAndCellsAreMapped) {
  const auto subject = make({{4, 3, 2}, false, {}});
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  const KeXDataSetI<double>* nodes = subject->mapNodes();
  ASSERT_NE(nodes, nullptr);
  EXPECT_EQ(nodes->getBinding(), DataBinding::PER_NODE);
  EXPECT_EQ(nodes->getName(), "nodes");
  ASSERT_EQ(nodes->getSize(), mesh.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < nodes->getSize(); ++v)
    EXPECT_NEAR(nodes->get(v), linear(mesh.getGeometry().getCoord(v)), 2e-6);

  const KeXDataSetI<double>* cells = subject->mapCells();
  ASSERT_NE(cells, nullptr);
  EXPECT_EQ(cells->getBinding(), DataBinding::PER_CELL);
  ASSERT_EQ(cells->getSize(), mesh.getTopology().getNumCells());
  for (std::size_t c = 0; c < cells->getSize(); ++c)
    EXPECT_EQ(cells->get(c), static_cast<double>(inputCell(mesh, c, subject->counts())));

  const KeXDataSetI<Vec3>* positions = subject->mapPositions();
  ASSERT_NE(positions, nullptr);
  for (std::size_t v = 0; v < positions->getSize(); ++v)
    EXPECT_LT((positions->get(v) - mesh.getGeometry().getCoord(v)).length(), 1e-6);

  nodes = subject->mapNodes();
  const std::size_t stamp = nodes->getTimeStamp();
  EXPECT_EQ(subject->mapNodes(), nodes);
  EXPECT_EQ(nodes->getTimeStamp(), stamp);
}

TEST_P(SurfaceContract, APolygonLiesInItsInputCell) {
  const auto subject = make();
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  const Surface s(mesh);
  ASSERT_GT(s.polygons.size(), 0u);
  for (std::size_t p = 0; p < s.polygons.size(); ++p) {
    Vec3 low(2.0);
    Vec3 high(-2.0);
    for (const std::size_t node : nodesOf(*subject, inputCell(mesh, p, subject->counts())))
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto x = static_cast<double>(subject->arrays().coordinates[3 * node + axis]);
        low[axis] = std::min(low[axis], x);
        high[axis] = std::max(high[axis], x);
      }
    Vec3 centre;
    const auto expectInside = [&](const Vec3& point) {
      for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_GE(point[axis], low[axis] - 1e-6) << "polygon " << p;
        EXPECT_LE(point[axis], high[axis] + 1e-6) << "polygon " << p;
      }
    };
    for (const std::size_t v : s.polygons[p]) {
      centre += s.vertices[v] / static_cast<double>(s.polygons[p].size());
      if (!subject->isSampled()) expectInside(s.vertices[v]);
    }
    expectInside(centre);
  }
}

TEST_P(SurfaceContract, AConstantStaysConstant) {
  const auto subject = make({{4, 3, 2}, false, {}});
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  subject->setNodeValues(std::vector<float>(subject->arrays().values.size(), 0.75f));
  const KeXDataSetI<double>* mapped = subject->mapNodes();
  ASSERT_NE(mapped, nullptr);
  ASSERT_EQ(mapped->getSize(), mesh.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_NEAR(mapped->get(v), 0.75, 1e-6);
}

TEST_P(SurfaceContract, ANanReachesTheCellsAroundItsNodeAndNoOthers) {
  const auto subject = make();
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  const Surface s(mesh);
  const KeXDataSetI<double>* mapped = subject->mapNodes();
  ASSERT_NE(mapped, nullptr);
  std::vector<double> sound;
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    sound.push_back(mapped->get(v));
  const std::vector<float> values = subject->arrays().values;
  std::size_t numReached = 0;
  std::size_t numCorners = 0;
  for (std::size_t node = 0; node < values.size(); ++node) {
    std::vector<float> spoilt = values;
    spoilt[node] = std::numeric_limits<float>::quiet_NaN();
    subject->setNodeValues(spoilt);
    mapped = subject->mapNodes();
    ASSERT_NE(mapped, nullptr);
    for (std::size_t p = 0; p < s.polygons.size(); ++p) {
      const std::vector<std::size_t> around = nodesOf(*subject, inputCell(mesh, p, subject->counts()));
      const bool mayBeReached = subject->isSampled() || std::find(around.begin(), around.end(), node) != around.end();
      for (const std::size_t v : s.polygons[p]) {
        const bool isReached = std::isnan(mapped->get(v));
        numReached += isReached;
        ++numCorners;
        if (!isReached || !mayBeReached) {
          EXPECT_EQ(mapped->get(v), sound[v]) << "node " << node << ", vertex " << v;
        }
      }
    }
  }
  EXPECT_GT(numReached, 0u);
  EXPECT_LT(numReached, numCorners / 4);
}

TEST_P(SurfaceContract, ShortSetsAreToldAndGiveNull) {
  const auto subject = make({{4, 3, 2}, false, {}});
  subject->extract();
  const MessageLog log;
  EXPECT_EQ(subject->mapTooFew(), nullptr);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_NE(log.lines[0].find("few"), std::string::npos) << log.lines[0];
}

TEST_P(SurfaceContract, ANewStampOfTheMeshExtractsAgain) {
  const auto subject = make();
  Recorder recorder;
  subject->extractor().setExtractorCallback(recorder);
  const KeXSurfaceMeshUnstructured& mesh = subject->extract();
  const std::size_t stamp = mesh.getGeometry().getTimeStamp();
  subject->touchGeometry();
  subject->extract();
  EXPECT_EQ(recorder.changes, (std::array{true, false, false}));
  EXPECT_GT(mesh.getGeometry().getTimeStamp(), stamp);
}

class CutContract : public testing::TestWithParam<Row<CutSubject>> {};

TEST_P(CutContract, ThroughNodesTheSurfaceComesOnceAndWhole) {
  const auto subject = GetParam().make({{4, 4, 4}, false, {}});
  const Surface at(subject->extractAt(0.0));
  const double above = Surface(subject->extractAt(1e-5)).area();
  const double beside = 0.5 * (above + Surface(subject->extractAt(-1e-5)).area());
  ASSERT_GT(beside, 0.0);
  EXPECT_NEAR(at.area(), beside, 1e-3 * beside);
  for (const std::vector<std::size_t>& ids : at.polygons) {
    EXPECT_GE(ids.size(), 3u);
    EXPECT_EQ(std::set<std::size_t>(ids.begin(), ids.end()).size(), ids.size());
  }
}

const auto nameOf = [](const auto& tested) { return tested.param.name; };
INSTANTIATE_TEST_SUITE_P(Families, SurfaceContract, testing::ValuesIn(surfaceRows()), nameOf);
INSTANTIATE_TEST_SUITE_P(Families, CutContract, testing::ValuesIn(cutRows()), nameOf);

} // namespace
