// SPDX-License-Identifier: BSD-3-Clause
// What every extractor promises, on every kind of mesh.
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiCancellationException.h>

#include <gtest/gtest.h>

#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace {

double waveField(const KbVec3<double>& p) { return std::sin(7.0 * p[0]) * std::cos(5.0 * p[1]) + std::sin(6.0 * p[2]); }

/// Records the calls of an extraction; stops it at a chosen call.
class Recorder final : public KiExtractorCallback {
public:
  std::string calls; ///< B e P p s for begin and end of extraction and phase, and steps
  bool geometryChanged = false;
  bool topologyChanged = false;
  bool dataSetChanged = false;
  std::size_t numPhases = 0;
  std::size_t stopAt = static_cast<std::size_t>(-1); ///< answer no at this question
  std::size_t questions = 0;

  void beginExtract(std::string, bool geometry, bool topology, bool dataSet, std::size_t phases) override {
    calls += 'B';
    m_phase = 0;
    geometryChanged = geometry;
    topologyChanged = topology;
    dataSetChanged = dataSet;
    numPhases = phases;
  }
  void endExtract() override { calls += 'e'; }
  bool beginPhase(std::size_t phase, std::string, std::size_t) override {
    EXPECT_EQ(phase, m_phase++);
    calls += 'P';
    return questions++ != stopAt;
  }
  bool endPhase() override {
    calls += 'p';
    return questions++ != stopAt;
  }
  bool endStep(std::size_t) override {
    calls += 's';
    return questions++ != stopAt;
  }
  double getEndStepCallPeriod() override { return 0.0; }
  void reset() {
    calls.clear();
    questions = 0;
  }

private:
  std::size_t m_phase = 0;
};

/// How many polygons come from each input cell.
std::vector<std::size_t> polygonsOfCells(Subject& subject, const Subject::Request& request) {
  std::vector<std::size_t> counts(subject.cells.size(), 0);
  const std::size_t numPolygons = subject.extract(request).getTopology().getNumCells();
  for (std::size_t p = 0; p < numPolygons; ++p)
    ++counts.at(subject.inputCell(p));
  return counts;
}

class ExtractorContract : public testing::TestWithParam<SubjectKind> {
protected:
  std::unique_ptr<Subject> make(SubjectOptions options = {}) const {
    if (!options.field) options.field = waveField;
    return GetParam().make(options);
  }
};

TEST_P(ExtractorContract, EmptyMeshGivesAnEmptySurface) {
  SubjectOptions options;
  options.counts = {0, 0, 0};
  const auto subject = make(options);
  const KeXSurfaceMeshUnstructured& s = subject->extract(0.3);
  EXPECT_EQ(s.getTopology().getNumCells(), 0u);
  EXPECT_EQ(s.getGeometry().getNumNodes(), 0u);
  EXPECT_EQ(s.getTopology().getIndexBuffer()->getByteSize(), 0u);
  EXPECT_EQ(s.getGeometry().getVertexBuffer()->getByteSize(), 0u);
}

TEST_P(ExtractorContract, OneCellIsCutInTheMiddle) {
  SubjectOptions options;
  options.counts = {1, 1, 1};
  options.field = [](const KbVec3<double>& p) { return p[2]; };
  const auto subject = make(options);
  const Surface s(subject->extract(0.5));
  ASSERT_GT(s.polygons.size(), 0u);
  EXPECT_NEAR(s.area(), 1.0, 0.05); // warped kinds are not quite a unit square
  for (std::size_t p = 0; p < s.polygons.size(); ++p)
    EXPECT_LT(s.normal(p)[2], 0.0); // towards decreasing values
  for (const KbVec3<double>& v : s.vertices)
    EXPECT_NEAR(v[2], 0.5, 0.03);
}

TEST_P(ExtractorContract, ConstantFieldGivesNothing) {
  SubjectOptions options;
  options.field = [](const KbVec3<double>&) { return 2.0; };
  const auto subject = make(options);
  for (const double isovalue : {1.0, 2.0, 3.0})
    EXPECT_EQ(subject->extract(isovalue).getTopology().getNumCells(), 0u) << isovalue;
}

TEST_P(ExtractorContract, ValueOnNodesCollapsesWithoutCracks) {
  SubjectOptions options;
  options.counts = {6, 6, 6};
  options.field = [](const KbVec3<double>& p) { // integers at the nodes, many equal to the isovalue
    return std::round(4.0 - 8.0 * (KbVec3<double>(std::abs(p[0]), p[1], p[2]) - KbVec3<double>(0.5)).length());
  };
  const auto subject = make(options);
  const Surface s(subject->extract(1.0));
  ASSERT_GT(s.polygons.size(), 4u);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  for (const std::vector<std::size_t>& p : s.polygons)
    EXPECT_EQ(std::set<std::size_t>(p.begin(), p.end()).size(), p.size());
}

TEST_P(ExtractorContract, NanNodeSilencesTheCellsAround) {
  const auto subject = make();
  const std::vector<std::size_t> before = polygonsOfCells(*subject, {0.3, false, false});
  const std::size_t hole = 3 + 7 * (2 + 6 * 2); // an inner lattice node
  subject->values[hole] = std::numeric_limits<float>::quiet_NaN();
  subject->touchValues();
  const std::vector<std::size_t> after = polygonsOfCells(*subject, {0.3, false, false});
  std::size_t numSilenced = 0;
  for (std::size_t cell = 0; cell < subject->cells.size(); ++cell) {
    const std::vector<std::size_t>& nodes = subject->cells[cell];
    const bool isAround = std::find(nodes.begin(), nodes.end(), hole) != nodes.end();
    numSilenced += isAround && before[cell] > 0;
    EXPECT_EQ(after[cell], isAround ? 0u : before[cell]) << cell;
  }
  EXPECT_GT(numSilenced, 0u);
  for (const KbVec3<double>& v : Surface(subject->extract(0.3)).vertices)
    EXPECT_TRUE(std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]));
}

TEST_P(ExtractorContract, DeadAndRefusedCellsYieldNothing) {
  const auto whole = make();
  const std::size_t numCells = whole->cells.size();
  const std::vector<std::size_t> ofAll = polygonsOfCells(*whole, {0.3, false, false});
  SubjectOptions options;
  options.firstDeadCell = numCells / 2;
  const auto halfDead = make(options);
  const std::vector<std::size_t> ofLive = polygonsOfCells(*halfDead, {0.3, false, false});
  const std::vector<std::size_t> ofAccepted = polygonsOfCells(*whole, {0.3, false, true});
  for (std::size_t cell = 0; cell < numCells; ++cell) {
    EXPECT_EQ(ofLive[cell], cell < numCells / 2 ? ofAll[cell] : 0u) << cell;
    EXPECT_EQ(ofAccepted[cell], cell % 2 == 0 ? ofAll[cell] : 0u) << cell;
  }
  EXPECT_EQ(polygonsOfCells(*whole, {0.3, false, false}), ofAll); // and back without the filter
}

TEST_P(ExtractorContract, NothingIsDoneTwice) {
  const auto subject = make();
  Recorder recorder;
  subject->extractor().setExtractorCallback(recorder);
  const KeXSurfaceMeshUnstructured& s = subject->extract(0.3);
  EXPECT_TRUE(recorder.geometryChanged && recorder.topologyChanged && recorder.dataSetChanged);
  const std::size_t topologyStamp = s.getTopology().getTimeStamp();
  const std::size_t geometryStamp = s.getGeometry().getTimeStamp();
  const auto* mapped = subject->mapScalars(false);
  ASSERT_NE(mapped, nullptr);
  const std::size_t mappedStamp = mapped->getTimeStamp();

  recorder.reset();
  EXPECT_EQ(&subject->extract(0.3), &s);
  EXPECT_EQ(recorder.calls, "Be");
  EXPECT_FALSE(recorder.geometryChanged || recorder.topologyChanged || recorder.dataSetChanged);
  EXPECT_EQ(recorder.numPhases, 0u);
  EXPECT_EQ(s.getTopology().getTimeStamp(), topologyStamp);
  EXPECT_EQ(s.getGeometry().getTimeStamp(), geometryStamp);
  EXPECT_EQ(subject->mapScalars(false), mapped);
  EXPECT_EQ(mapped->getTimeStamp(), mappedStamp);

  recorder.reset();
  subject->extract(0.31);
  EXPECT_TRUE(recorder.geometryChanged && recorder.topologyChanged);
  EXPECT_FALSE(recorder.dataSetChanged);
  EXPECT_GT(s.getTopology().getTimeStamp(), topologyStamp);

  recorder.reset();
  subject->touchValues();
  subject->extract(0.31);
  EXPECT_TRUE(recorder.dataSetChanged);
}

TEST_P(ExtractorContract, PhasesAreNested) {
  const auto subject = make();
  Recorder recorder;
  subject->extractor().setExtractorCallback(recorder);
  subject->extract(0.3);
  std::string withoutSteps;
  for (const char c : recorder.calls)
    if (c != 's') withoutSteps += c;
  std::string expected = "B";
  for (std::size_t p = 0; p < recorder.numPhases; ++p)
    expected += "Pp";
  EXPECT_EQ(withoutSteps, expected + "e");
  EXPECT_NE(recorder.calls.find('s'), std::string::npos);
}

TEST_P(ExtractorContract, CancelledAnywhereItStartsAgain) {
  const std::string expected = bytesOf(make()->extract(0.3));
  std::size_t numQuestions = 1;
  for (std::size_t stop = 0; stop < numQuestions; ++stop) {
    for (const bool parallel : {false, true}) {
      SubjectOptions options;
      options.parallel = parallel;
      const auto subject = make(options);
      Recorder recorder;
      recorder.stopAt = static_cast<std::size_t>(-1);
      subject->extractor().setExtractorCallback(recorder);
      if (stop == 0 && !parallel) {
        subject->extract(0.1);
        numQuestions = recorder.questions;
      }
      recorder.reset();
      recorder.stopAt = stop;
      try {
        subject->extract(0.3);
        EXPECT_TRUE(parallel) << "stopped at question " << stop; // other threads may have left the caller no step
      } catch (const KiCancellationException&) {
        EXPECT_EQ(recorder.calls.back(), 'e');
      }
      recorder.stopAt = static_cast<std::size_t>(-1);
      recorder.reset();
      EXPECT_EQ(bytesOf(subject->extract(0.3)), expected) << "stopped at question " << stop;
    }
  }
}

TEST_P(ExtractorContract, ParallelEqualsSerialByteForByte) {
  SubjectOptions options;
  options.counts = {33, 30, 29}; // several chunks of cells
  const auto serial = make(options);
  const std::string first = bytesOf(serial->extract(0.3));
  const std::string second = bytesOf(serial->extract(0.4));
  options.parallel = true;
  for (std::size_t threads = 1; threads <= 4; ++threads) {
    const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
    const auto parallel = make(options);
    EXPECT_EQ(bytesOf(parallel->extract(0.3)), first) << threads;
    EXPECT_EQ(bytesOf(parallel->extract(0.4)), second) << threads;
  }
}

TEST_P(ExtractorContract, LivingExtractorEqualsFreshOne) {
  const auto living = make();
  for (const double isovalue : {0.3, -0.4, 0.0, 5.0, 0.31, 0.3}) {
    const std::string fresh = bytesOf(make()->extract(isovalue));
    EXPECT_EQ(bytesOf(living->extract(isovalue)), fresh) << isovalue;
  }
}

TEST_P(ExtractorContract, SetsAreMapped) {
  const auto subject = make();
  const Surface s(subject->extract(0.3));
  ASSERT_GT(s.vertices.size(), 0u);
  const auto* nodeScalars = subject->mapScalars(false);
  const auto* cellScalars = subject->mapScalars(true);
  const auto* nodeVectors = subject->mapVectors(false);
  const auto* cellVectors = subject->mapVectors(true);
  ASSERT_TRUE(nodeScalars && cellScalars && nodeVectors && cellVectors);
  EXPECT_EQ(nodeScalars->getName(), "nodes");
  EXPECT_EQ(nodeScalars->getBinding(), DataBinding::PER_NODE);
  EXPECT_EQ(cellScalars->getBinding(), DataBinding::PER_CELL);
  ASSERT_EQ(nodeScalars->getSize(), s.vertices.size());
  ASSERT_EQ(cellScalars->getSize(), s.polygons.size());
  for (std::size_t v = 0; v < s.vertices.size(); ++v) {
    EXPECT_NEAR(nodeScalars->get(v), 0.3, 1e-6);                            // the set that was cut
    EXPECT_NEAR((nodeVectors->get(v) - s.vertices[v]).length(), 0.0, 1e-6); // the positions
  }
  for (std::size_t c = 0; c < s.polygons.size(); ++c) {
    EXPECT_EQ(cellScalars->get(c), static_cast<double>(subject->inputCell(c)));
    EXPECT_EQ(cellVectors->get(c)[1], static_cast<double>(subject->inputCell(c)));
  }
  EXPECT_NEAR(nodeScalars->getMean(), 0.3, 1e-6);
  EXPECT_NEAR(nodeScalars->getStandardDeviation(), 0.0, 1e-6);
  const std::unique_ptr<KeXDataSetI<double>> clone(cellScalars->getNewClone());
  EXPECT_EQ(clone->getTimeStamp(), cellScalars->getTimeStamp());
  EXPECT_EQ(clone->getMax(), cellScalars->getMax());
}

TEST_P(ExtractorContract, CloneKeepsTheOutput) {
  const auto subject = make();
  const KeXSurfaceMeshUnstructured& s = subject->extract(0.3);
  const std::unique_ptr<KeXSurfaceMeshUnstructured> clone(s.getNewClone());
  const std::string bytes = bytesOf(s);
  const std::size_t stamp = s.getTopology().getTimeStamp();
  subject->extract(0.7);
  EXPECT_EQ(bytesOf(*clone), bytes);
  EXPECT_EQ(clone->getTopology().getTimeStamp(), stamp);
}

TEST_P(ExtractorContract, CellValuesAreAveragedToTheNodes) {
  const auto subject = make(); // cell c has the value c
  const double middle = 0.5 * static_cast<double>(subject->cells.size() - 1);
  const Surface s(subject->extract(Subject::Request{middle, true, false}));
  EXPECT_GT(s.polygons.size(), 0u);
  EXPECT_EQ(s.numOpenEdges([](const KbVec3<double>&) { return true; }), 0u);
  for (std::size_t p = 0; p < s.polygons.size(); ++p) // values grow with k
    EXPECT_LT(s.normal(p)[2], 0.0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ExtractorContract, testing::ValuesIn(subjectKinds()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

} // namespace
