// SPDX-License-Identifier: BSD-3-Clause
// Streamlines on every volume mesh kind, against paths that are known exactly.
#include "PathsTestTools.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiStreamlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <numeric>

using namespace paths;

namespace {

constexpr std::size_t N = 8; // cells along each axis of the unit cube
using Flow = std::function<Vec3(const Vec3&)>;
using Lines = std::vector<const KeXLineMeshCurvilinear*>;

Vec3 rotation(const Vec3& p) { return {0.5 - p[1], p[0] - 0.5, 0.0}; }
Vec3 along(const Vec3&) { return {2.0, 0.0, 0.0}; }
double linear(const Vec3& p) { return 1.0 + 2.0 * p[0] - 3.0 * p[1] + 5.0 * p[2]; }

// An extractor of any form, its mesh and its sets.
class Subject {
public:
  virtual ~Subject() = default;
  virtual const Lines& extract(const std::vector<Vec3>& starts) = 0;
  virtual const Lines& extractByCells(const std::vector<Vec3>& starts) = 0;
  virtual std::vector<const KeXDataSetI<double>*> mapNodes() = 0;
  virtual std::vector<const KeXDataSetI<double>*> mapCells() = 0;
  virtual std::vector<const KeXDataSetI<Vec3>*> mapVectors() = 0;
  virtual KiStreamlineExtractor& extractor() = 0;
  virtual void refuse(const std::set<std::size_t>& cells) = 0;
  virtual std::size_t cellOf(const KeXLineMeshCurvilinear& line, std::size_t segment) const = 0;
  std::size_t numCells = 0;
};

struct Options {
  Flow flow = along;
  bool parallel = false;
  std::vector<std::uint8_t> dead;
};

template <class Extractor, class Mesh, std::size_t NodeForm, std::size_t CellForm, class Filter>
class SubjectOf final : public Subject {
public:
  KbMeshMaker::Arrays arrays;
  std::vector<double> axis;
  std::vector<double> vectors;
  std::vector<double> cellVectors;
  std::vector<double> nodeValues;
  std::vector<double> cellValues;
  std::unique_ptr<Mesh> mesh;
  std::unique_ptr<KbDataSet<Vec3, NodeForm>> flow;
  std::unique_ptr<KbDataSet<Vec3, CellForm>> cellFlow;
  std::unique_ptr<KbDataSet<double, NodeForm>> nodeSet;
  std::unique_ptr<KbDataSet<double, CellForm>> cellSet;
  std::unique_ptr<Extractor> e;
  std::unique_ptr<Filter> filter;

  template <class T, std::size_t Form>
  static std::unique_ptr<KbDataSet<T, Form>> makeSet(const char* name, DataBinding binding,
                                                     const std::vector<double>& values, std::size_t count) {
    if constexpr (Form == 1)
      return std::make_unique<KbDataSet<T, 1>>(name, binding, values);
    else
      return std::make_unique<KbDataSet<T, 3>>(name, binding, values, KbIndex<3>{count, count, count});
  }

  void finish(const Options& o, std::size_t cells) {
    numCells = cells;
    for (std::size_t n = 0; n < arrays.coordinates.size() / 3; ++n) {
      const Vec3 p(
          KbVec3<float>(arrays.coordinates[3 * n], arrays.coordinates[3 * n + 1], arrays.coordinates[3 * n + 2]));
      const Vec3 v = o.flow(p);
      vectors.insert(vectors.end(), {v[0], v[1], v[2]});
      nodeValues.push_back(linear(p));
    }
    for (std::size_t c = 0; c < cells; ++c)
      cellVectors.insert(cellVectors.end(), {0.0, 0.0, 3.0});
    cellValues.resize(cells);
    std::iota(cellValues.begin(), cellValues.end(), 100.0);
    flow = makeSet<Vec3, NodeForm>("flow", DataBinding::PER_NODE, vectors, N + 1);
    nodeSet = makeSet<double, NodeForm>("f", DataBinding::PER_NODE, nodeValues, N + 1);
    cellFlow = makeSet<Vec3, CellForm>("cellFlow", DataBinding::PER_CELL, cellVectors, N);
    cellSet = makeSet<double, CellForm>("c", DataBinding::PER_CELL, cellValues, N);
    e.reset(Extractor::getNewInstance(*mesh, o.parallel));
  }

  const Lines& extract(const std::vector<Vec3>& starts) override { return e->extract(*flow, starts, filter.get()); }
  const Lines& extractByCells(const std::vector<Vec3>& starts) override {
    return e->extract(*cellFlow, starts, filter.get());
  }
  std::vector<const KeXDataSetI<double>*> mapNodes() override { return e->extractScalarSet(*nodeSet); }
  std::vector<const KeXDataSetI<double>*> mapCells() override { return e->extractScalarSet(*cellSet); }
  std::vector<const KeXDataSetI<Vec3>*> mapVectors() override { return e->extractVec3Set(*flow); }
  KiStreamlineExtractor& extractor() override { return *e; }
  void refuse(const std::set<std::size_t>& cells) override { filter = std::make_unique<Filter>(cells, N, N); }
  std::size_t cellOf(const KeXLineMeshCurvilinear& line, std::size_t segment) const override {
    const KeXTopologyI& t = line.getTopology();
    if (!t.hasStructuredInputCells()) return t.getInputCellIndexI(segment);
    return t.getInputCellIndexI(segment) + N * (t.getInputCellIndexJ(segment) + N * t.getInputCellIndexK(segment));
  }
};

struct Kind {
  std::string name;
  std::function<std::unique_ptr<Subject>(const Options&)> make;
};

const KbIndex<3> CELLS{N, N, N};

template <class Mesh>
using SubjectIjk = SubjectOf<KiStreamlineExtractIjk, Mesh, 3, 3, RefuseIjk>;

Kind unstructured(const std::string& name,
                  KbMeshMaker::Arrays (*make)(const KbIndex<3>&, double, const KbMeshMaker::Field&)) {
  return {name, [make](const Options& o) {
            auto s =
                std::make_unique<SubjectOf<KiStreamlineExtractUnstructured, KbVolumeMeshUnstructured, 1, 1, RefuseI>>();
            s->arrays = make(CELLS, 0.0, KbMeshMaker::wave);
            s->mesh = std::make_unique<KbVolumeMeshUnstructured>(s->arrays.coordinates, s->arrays.cells(), o.dead);
            s->finish(o, s->mesh->getTopology().getNumCells());
            return std::unique_ptr<Subject>(std::move(s));
          }};
}

std::vector<Kind> kinds() {
  using Maker = KbMeshMaker;
  return {
      {"Regular",
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshRegular>>();
         s->arrays = Maker::lattice(CELLS);
         s->mesh = std::make_unique<KbVolumeMeshRegular>(CELLS, Vec3(0.0), Vec3(1.0), o.dead);
         s->finish(o, N * N * N);
         return std::unique_ptr<Subject>(std::move(s));
       }},
      {"Rectilinear",
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshRectilinear>>();
         s->arrays = Maker::lattice(CELLS);
         for (std::size_t i = 0; i <= N; ++i)
           s->axis.push_back(static_cast<double>(i) / N);
         s->mesh = std::make_unique<KbVolumeMeshRectilinear>(s->axis, s->axis, s->axis, o.dead);
         s->finish(o, N * N * N);
         return std::unique_ptr<Subject>(std::move(s));
       }},
      {"Curvilinear",
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshCurvilinear>>();
         s->arrays = Maker::lattice(CELLS);
         s->mesh = std::make_unique<KbVolumeMeshCurvilinear>(CELLS, s->arrays.coordinates, o.dead);
         s->finish(o, N * N * N);
         return std::unique_ptr<Subject>(std::move(s));
       }},
      {"HexahedronIjk",
       [](const Options& o) {
         auto s = std::make_unique<
             SubjectOf<KiStreamlineExtractHexahedronIjk, KbVolumeMeshHexahedronIjk, 1, 3, RefuseIjk>>();
         s->arrays = Maker::hexahedra(CELLS);
         s->mesh =
             std::make_unique<KbVolumeMeshHexahedronIjk>(CELLS, s->arrays.coordinates, s->arrays.connectivity, o.dead);
         s->finish(o, N * N * N);
         return std::unique_ptr<Subject>(std::move(s));
       }},
      unstructured("Hexahedra", &Maker::hexahedra),
      unstructured("Tetrahedra", &Maker::tetrahedra),
      unstructured("Mixed", &Maker::mixed),
  };
}

Vec3 pointOf(const KeXLineMeshCurvilinear& line, std::size_t i) { return line.getGeometry().getCoord(i); }
std::size_t numPoints(const KeXLineMeshCurvilinear& line) { return line.getGeometry().getNumNodes(); }
Vec3 lastPoint(const KeXLineMeshCurvilinear& line) { return pointOf(line, numPoints(line) - 1); }
double lengthOf(const KeXLineMeshCurvilinear& line) {
  double length = 0.0;
  for (std::size_t i = 0; i + 1 < numPoints(line); ++i)
    length += (pointOf(line, i + 1) - pointOf(line, i)).length();
  return length;
}

void expectNear(const Vec3& a, const Vec3& b, double tolerance) {
  EXPECT_LE((a - b).length(), tolerance) << a << " / " << b;
}

class Streamline : public testing::TestWithParam<Kind> {
protected:
  std::unique_ptr<Subject> make(const Options& options = {}) const { return GetParam().make(options); }
};

TEST_P(Streamline, StraightLinesEndOnTheBorder) {
  const auto s = make();
  const Lines& lines = s->extract({{0.13, 0.4, 0.7}, {0.99, 0.21, 0.3}});
  ASSERT_EQ(lines.size(), 2u);
  expectNear(pointOf(*lines[0], 0), {0.13, 0.4, 0.7}, 1e-7);
  expectNear(lastPoint(*lines[0]), {1.0, 0.4, 0.7}, 1e-6);
  expectNear(lastPoint(*lines[1]), {1.0, 0.21, 0.3}, 1e-6);
  EXPECT_NEAR(lengthOf(*lines[0]), 0.87, 1e-6);
  EXPECT_EQ(lines[0]->getTopology().getNumCells() + 1, numPoints(*lines[0]));
  // 0.3 of a cell (an eighth, or a part of it where cells are cut) at most.
  for (std::size_t i = 0; i + 1 < numPoints(*lines[0]); ++i)
    EXPECT_LE((pointOf(*lines[0], i + 1) - pointOf(*lines[0], i)).length(), 0.3 / N + 1e-7);
}

TEST_P(Streamline, StartsOnTheBorderHaveNoSegmentOutwards) {
  const auto s = make();
  const Lines& lines = s->extract({{1.0, 0.4, 0.7}, {0.0, 0.4, 0.7}});
  EXPECT_EQ(numPoints(*lines[0]), 1u);
  EXPECT_EQ(lines[0]->getTopology().getNumCells(), 0u);
  EXPECT_NEAR(lengthOf(*lines[1]), 1.0, 1e-6);
}

TEST_P(Streamline, CirclesCloseAfterOneTurn) {
  Options options;
  options.flow = rotation;
  const auto s = make(options);
  s->extractor().setMaxLifeTime(2.0 * std::numbers::pi);
  const Lines& lines = s->extract({{0.8, 0.5, 0.5}});
  ASSERT_GT(numPoints(*lines[0]), 20u);
  for (std::size_t i = 0; i < numPoints(*lines[0]); ++i) {
    const Vec3 r = pointOf(*lines[0], i) - Vec3(0.5);
    EXPECT_NEAR(r.length(), 0.3, 1e-4);
    EXPECT_NEAR(r[2], 0.0, 1e-6);
  }
  expectNear(lastPoint(*lines[0]), {0.8, 0.5, 0.5}, 1e-4);
}

TEST_P(Streamline, BackwardRunsAgainstTheFlow) {
  const auto s = make();
  s->extractor().setDirection(KiStreamlineExtractor::BACKWARD);
  expectNear(lastPoint(*s->extract({{0.83, 0.4, 0.7}})[0]), {0.0, 0.4, 0.7}, 1e-6);
}

TEST_P(Streamline, EachLimitEndsTheLine) {
  const Vec3 start(0.1, 0.4, 0.7);
  const auto s = make();
  s->extractor().setMaxLength(0.25);
  EXPECT_NEAR(lengthOf(*s->extract({start})[0]), 0.25, 1e-6);
  s->extractor().setMaxLength(0.0);
  s->extractor().setMaxLifeTime(0.2); // at speed 2
  EXPECT_NEAR(lengthOf(*s->extract({start})[0]), 0.4, 1e-6);
  s->extractor().setMaxLifeTime(0.0);
  s->extractor().setMaxStepNumber(3);
  EXPECT_EQ(numPoints(*s->extract({start})[0]), 4u);
  s->extractor().setMaxStepNumber(0);
  s->extractor().setMinSpeed(2.5);
  EXPECT_EQ(numPoints(*s->extract({start})[0]), 1u);
  s->extractor().setMinSpeed(0.0);
  EXPECT_NEAR(lengthOf(*s->extract({start})[0]), 0.9, 1e-6);
}

TEST_P(Streamline, LineEndsWhereTheFlowStops) {
  Options options;
  options.flow = [](const Vec3& p) { return Vec3(0.5, 0.5, 0.5) - p; };
  const auto s = make(options);
  const Lines& lines = s->extract({{0.9, 0.3, 0.6}});
  expectNear(lastPoint(*lines[0]), Vec3(0.5), 1e-5);
  EXPECT_LT(numPoints(*lines[0]), 500u);
}

TEST_P(Streamline, StartsOutsideGiveEmptyLines) {
  const auto s = make();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Lines& lines = s->extract({{1.5, 0.5, 0.5}, {0.2, 0.3, 0.4}, {nan, 0.5, 0.5}});
  ASSERT_EQ(lines.size(), 3u);
  for (const std::size_t i : {0u, 2u}) {
    EXPECT_EQ(numPoints(*lines[i]), 0u);
    EXPECT_EQ(lines[i]->getTopology().getNumCells(), 0u);
  }
  EXPECT_GT(numPoints(*lines[1]), 10u);
  EXPECT_TRUE(s->extract({}).empty());
}

TEST_P(Streamline, DeadAndRefusedCellsEndTheLineAtTheirFace) {
  const auto whole = make();
  const Lines& lines = whole->extract({{0.06, 0.42, 0.55}});
  std::set<std::size_t> hidden; // all cells that the line enters beyond the middle
  for (std::size_t i = 0; i + 1 < numPoints(*lines[0]); ++i)
    if (pointOf(*lines[0], i)[0] > 0.5) hidden.insert(whole->cellOf(*lines[0], i));
  Options options;
  options.dead.resize(whole->numCells);
  for (const std::size_t c : hidden)
    options.dead[c] = 1;
  const auto dead = make(options);
  whole->refuse(hidden);
  for (Subject* s : {dead.get(), whole.get()}) {
    const Vec3 end = lastPoint(*s->extract({{0.06, 0.42, 0.55}})[0]);
    EXPECT_GE(end[0], 0.5 - 1e-6);
    EXPECT_LE(end[0], 0.5 + 1.0 / N);
    if (GetParam().name != "Tetrahedra" && GetParam().name != "Mixed") expectNear(end, {0.5, 0.42, 0.55}, 1e-6);
  }
}

TEST_P(Streamline, NaNEndsTheLine) {
  Options options;
  options.flow = [](const Vec3& p) { return Vec3(p[0] > 0.76 ? std::nan("") : 1.0, 0.0, 0.0); };
  const auto s = make(options);
  expectNear(lastPoint(*s->extract({{0.1, 0.43, 0.57}})[0]), {0.75, 0.43, 0.57}, 1e-6);
}

TEST_P(Streamline, VectorsPerCellAreConstantInEachCell) {
  const auto s = make();
  const Lines& lines = s->extractByCells({{0.33, 0.4, 0.05}});
  expectNear(lastPoint(*lines[0]), {0.33, 0.4, 1.0}, 1e-6);
}

TEST_P(Streamline, MapsSetsOntoTheLines) {
  Options options;
  options.flow = rotation;
  const auto s = make(options);
  s->extractor().setMaxLifeTime(2.0);
  const Lines& lines = s->extract({{0.8, 0.45, 0.4}, {3, 3, 3}, {0.3, 0.3, 0.7}});
  const auto nodes = s->mapNodes();
  const auto cells = s->mapCells();
  const auto vectors = s->mapVectors();
  ASSERT_EQ(nodes.size(), 3u);
  for (const std::size_t l : {0u, 1u, 2u}) {
    ASSERT_EQ(nodes[l]->getSize(), numPoints(*lines[l]));
    ASSERT_EQ(cells[l]->getSize(), lines[l]->getTopology().getNumCells());
    for (std::size_t i = 0; i < nodes[l]->getSize(); ++i) {
      EXPECT_NEAR(nodes[l]->get(i), linear(pointOf(*lines[l], i)), 5e-6);
      expectNear(vectors[l]->get(i), rotation(pointOf(*lines[l], i)), 1e-6);
    }
    for (std::size_t c = 0; c < cells[l]->getSize(); ++c)
      EXPECT_EQ(cells[l]->get(c), 100.0 + static_cast<double>(s->cellOf(*lines[l], c)));
  }
  EXPECT_EQ(nodes, s->mapNodes());
}

TEST_P(Streamline, DoesNothingWhenNothingChanged) {
  const auto s = make();
  Recorder recorder;
  s->extractor().setExtractorCallback(&recorder);
  const std::vector<Vec3> starts{{0.1, 0.4, 0.7}};
  const Lines first = s->extract(starts);
  EXPECT_EQ(recorder.log, Recorder::complete(recorder.numPhases));
  EXPECT_TRUE(recorder.geometryChanged && recorder.topologyChanged && recorder.dataSetChanged);
  const std::size_t stamp = first[0]->getGeometry().getTimeStamp();
  recorder.log.clear();
  EXPECT_EQ(s->extract(starts), first);
  EXPECT_EQ(first[0]->getGeometry().getTimeStamp(), stamp);
  EXPECT_EQ(recorder.log, "BE");
  EXPECT_FALSE(recorder.geometryChanged || recorder.topologyChanged || recorder.dataSetChanged);
  s->extractor().setMaxLength(0.1);
  recorder.log.clear();
  s->extract(starts);
  EXPECT_EQ(recorder.log, "B()E"); // cells are located as before
  EXPECT_GT(first[0]->getGeometry().getTimeStamp(), stamp);
}

TEST_P(Streamline, ParallelIsTheSameAsSerial) {
  Options options;
  options.flow = [](const Vec3& p) { return KbMeshMaker::abcFlow(p); };
  const auto serial = make(options);
  options.parallel = true;
  const auto parallel = make(options);
  const std::vector<Vec3> starts = randomPoints(100, 0.1, 0.9, 777);
  for (const auto& s : {serial.get(), parallel.get()})
    s->extractor().setMaxLength(2.0);
  const Lines& a = serial->extract(starts);
  const Lines& b = parallel->extract(starts);
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t l = 0; l < a.size(); ++l) {
    ASSERT_EQ(numPoints(*a[l]), numPoints(*b[l]));
    for (std::size_t i = 0; i < numPoints(*a[l]); ++i)
      ASSERT_EQ(pointOf(*a[l], i), pointOf(*b[l], i));
  }
}

TEST_P(Streamline, CancelLeavesEmptyLinesAndAUsableExtractor) {
  const auto s = make();
  Recorder recorder;
  s->extractor().setExtractorCallback(&recorder);
  recorder.stop = true;
  const std::vector<Vec3> starts{{0.1, 0.4, 0.7}};
  EXPECT_THROW(s->extract(starts), KiCancellationException);
  ASSERT_EQ(s->extractor().getExtract().size(), 1u);
  EXPECT_EQ(numPoints(*s->extractor().getExtract()[0]), 0u);
  EXPECT_EQ(recorder.log.back(), 'E');
  recorder.stop = false;
  EXPECT_GT(numPoints(*s->extract(starts)[0]), 1u);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Streamline, testing::ValuesIn(kinds()), [](const auto& row) { return row.param.name; });

TEST(StreamlineInput, UnsuitableSetsAndParametersGiveOneMessageEach) {
  const KbVolumeMeshRegular mesh({2, 2, 2}, Vec3(0.0), Vec3(1.0));
  const std::unique_ptr<KiStreamlineExtractIjk> e(KiStreamlineExtractIjk::getNewInstance(mesh, false));
  const std::vector<double> values(81, 1.0);
  const std::vector<double> fewer(24, 1.0);
  const KbVec3SetIjk tooShort("short", DataBinding::PER_NODE, fewer, {2, 2, 2});
  const KbVec3SetIjk good("good", DataBinding::PER_NODE, values, {3, 3, 3});
  MessageLog messages;
  EXPECT_EQ(numPoints(*e->extract(tooShort, {Vec3(0.5)}, nullptr)[0]), 0u);
  ASSERT_EQ(messages.lines.size(), 1u);
  EXPECT_NE(messages.lines[0].find("KiStreamlineExtractIjk::extract: the set \"short\""), std::string::npos);
  e->setMaxLength(-1.0);
  e->setIntegrationStepLengthFactor(0.0);
  expectNear(lastPoint(*e->extract(good, {Vec3(0.5)}, nullptr)[0]), Vec3(1.0), 1e-6);
  EXPECT_EQ(messages.lines.size(), 3u);
}

TEST(StreamlineInput, EmptyMeshGivesEmptyLines) {
  const std::vector<float> coordinates;
  const std::vector<std::int32_t> connectivity;
  const std::vector<double> values;
  const KbVolumeMeshUnstructured mesh(coordinates, {KiVolumeCell::TETRAHEDRON, connectivity});
  const KbVec3SetI set("v", DataBinding::PER_NODE, values);
  const std::unique_ptr<KiStreamlineExtractUnstructured> e(KiStreamlineExtractUnstructured::getNewInstance(mesh, true));
  EXPECT_EQ(numPoints(*e->extract(set, {Vec3(0.5)}, nullptr)[0]), 0u);
}

} // namespace
