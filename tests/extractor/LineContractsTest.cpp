// SPDX-License-Identifier: BSD-3-Clause
// What every extractor of lines, points and cells promises, on every kind of mesh that it takes: one row each.
#include "LineTestTools.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiCellExtractIj.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbIndexRangeFilter.h>
#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshRegular.h>
#include <KerrinMesh/KbLineMeshUnstructured.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <set>
#include <span>

namespace {

using lines::Vec3;

/// The output of any family in plain form.
struct Snapshot {
  std::vector<double> vertices;
  std::vector<std::size_t> cells;      ///< node indices of all cells, with ends
  std::vector<std::size_t> inputCells; ///< as flat indices
  std::size_t stamp = 0;
  friend bool operator==(const Snapshot& a, const Snapshot& b) {
    return a.vertices == b.vertices && a.cells == b.cells && a.inputCells == b.inputCells;
  }
};

constexpr std::size_t NUM_I = 90; // several chunks of cells
constexpr std::size_t NUM_J = 70;

void append(Snapshot& s, const KeXGeometryExplicit& geometry, const KeXTopologyI& topology) {
  for (std::size_t v = 0; v < geometry.getNumNodes(); ++v)
    for (std::size_t axis = 0; axis < 3; ++axis)
      s.vertices.push_back(geometry.getCoord(v)[axis]);
  for (std::size_t c = 0; c < topology.getNumCells(); ++c)
    s.inputCells.push_back(topology.getInputCellIndexI(c) +
                           (topology.hasStructuredInputCells() ? NUM_I * topology.getInputCellIndexJ(c) : 0));
  s.stamp = std::max({s.stamp, geometry.getTimeStamp(), topology.getTimeStamp()});
}

template <class Mesh>
void append(Snapshot& s, const Mesh& mesh) {
  append(s, mesh.getGeometry(), mesh.getTopology());
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiCell* cell = mesh.getTopology().getCell(c);
    for (std::size_t n = 0; n < cell->getNumNodes(); ++n)
      s.cells.push_back(cell->getNodeIndex(n));
    s.cells.push_back(static_cast<std::size_t>(-1));
  }
}
void append(Snapshot& s, const KeXPointMeshCurvilinear& mesh) { append(s, mesh.getGeometry(), mesh.getTopology()); }
void append(Snapshot& s, const std::vector<const KeXLineMeshUnstructured*>& meshes) {
  for (const KeXLineMeshUnstructured* mesh : meshes)
    append(s, *mesh);
}

/// One mesh with one extractor on it. `extract(parameter, filtered)` has two settings of its parameters; with
/// `filtered` only the first half of the cells is accepted.
struct Subject {
  std::function<Snapshot(int parameter, bool filtered)> extract;
  std::function<const KeXDataSetI<double>*(bool perNode)> map; ///< the number of the node or cell
  KiBaseExtractor* extractor = nullptr;
  std::size_t numCells = 0;
  std::function<void(const std::vector<std::uint8_t>&)> setDead;
  std::shared_ptr<void> owner;
};

struct Row {
  const char* name;
  std::function<Subject(bool parallel, bool isEmpty)> make;
  bool seesNeighbours = false; ///< what comes from a cell depends on those beside it
};

std::vector<double> countUp(std::size_t n) {
  std::vector<double> numbers(n);
  for (std::size_t i = 0; i < n; ++i)
    numbers[i] = static_cast<double>(i);
  return numbers;
}

// The forms of addressing: sets and filters of a surface with NUM_I x NUM_J cells, or of a line with as many.
struct FormI {
  using Set = KbScalarSetI;
  using Filter = KbIndexRangeFilterI;
  static std::unique_ptr<Filter> half(std::size_t numCells) {
    return std::make_unique<Filter>(KbIndex<1>{0}, KbIndex<1>{numCells / 2});
  }
  static std::unique_ptr<Set> set(DataBinding binding, const std::vector<double>& values) {
    return std::make_unique<Set>("s", binding, values);
  }
};
struct FormIj {
  using Set = KbScalarSetIj;
  using Filter = KbIndexRangeFilterIj;
  static std::unique_ptr<Filter> half(std::size_t) {
    return std::make_unique<Filter>(KbIndex<2>{0, 0}, KbIndex<2>{NUM_I, NUM_J / 2});
  }
  static std::unique_ptr<Set> set(DataBinding binding, const std::vector<double>& values) {
    const std::size_t more = binding == DataBinding::PER_NODE ? 1 : 0;
    const KbIndex<2> counts = values.empty() ? KbIndex<2>{0, 0} : KbIndex<2>{NUM_I + more, NUM_J + more};
    return std::make_unique<Set>("s", binding, values, counts);
  }
};

/// Everything that a subject needs to stay alive.
template <class Mesh, class Extractor, class Form>
struct Case {
  KbMeshMaker::Arrays arrays;
  std::vector<double> axes[2];
  std::vector<std::int32_t> connectivity;
  std::vector<std::uint8_t> dead;
  std::unique_ptr<Mesh> mesh;
  std::unique_ptr<Extractor> extractor;
  std::vector<double> field, nodes, cells;
  std::unique_ptr<typename Form::Set> fieldSet, nodeSet, cellSet;
  std::unique_ptr<typename Form::Filter> filter;
};

/// `makeMesh(case, isEmpty)`, `makeExtractor(mesh, parallel)` and `run(extractor, case, parameter, filter)` make a row.
template <class Mesh, class Extractor, class Form, class MakeMesh, class MakeExtractor, class RunOnce>
Row row(const char* name, const MakeMesh& makeMesh, const MakeExtractor& makeExtractor, const RunOnce& run) {
  return {name, [=](bool parallel, bool isEmpty) {
            const auto c = std::make_shared<Case<Mesh, Extractor, Form>>();
            c->arrays = KbMeshMaker::quadrangles({NUM_I, NUM_J});
            c->mesh = makeMesh(*c, isEmpty);
            c->extractor.reset(makeExtractor(*c->mesh, parallel));
            constexpr bool isSurface = !std::is_base_of_v<KiLineMeshUnstructured, Mesh> &&
                                       !std::is_base_of_v<KiLineMeshRegular, Mesh> &&
                                       !std::is_base_of_v<KiLineMeshCurvilinear, Mesh>;
            const std::size_t numNodes = isEmpty ? 0 : c->arrays.values.size();
            const std::size_t numCells = isEmpty ? 0 : isSurface ? NUM_I * NUM_J : numNodes - 1;
            c->nodes = countUp(numNodes);
            c->cells = countUp(numCells);
            c->field.assign(c->arrays.values.begin(), c->arrays.values.begin() + static_cast<std::ptrdiff_t>(numNodes));
            c->fieldSet = Form::set(DataBinding::PER_NODE, c->field);
            c->nodeSet = Form::set(DataBinding::PER_NODE, c->nodes);
            c->cellSet = Form::set(DataBinding::PER_CELL, c->cells);
            c->filter = Form::half(numCells);
            Subject s;
            s.extract = [=](int parameter, bool filtered) {
              Snapshot snapshot;
              append(snapshot, run(*c->extractor, *c, parameter, filtered ? c->filter.get() : nullptr));
              return snapshot;
            };
            s.map = [=](bool perNode) {
              const auto result = c->extractor->extractScalarSet(perNode ? *c->nodeSet : *c->cellSet);
              if constexpr (std::is_pointer_v<std::remove_cv_t<decltype(result)>>)
                return result;
              else
                return result.at(0);
            };
            s.extractor = c->extractor.get();
            s.numCells = numCells;
            s.setDead = [=](const std::vector<std::uint8_t>& dead) {
              c->dead = dead;
              c->mesh->setDead(c->dead);
            };
            s.owner = c;
            return s;
          }};
}

/// The kinds of meshes.
const auto unstructuredSurface = [](auto& c, bool isEmpty) {
  if (isEmpty) c.arrays = {};
  return std::make_unique<KbSurfaceMeshUnstructured>(
      c.arrays.coordinates, isEmpty ? KbCells(KiSurfaceCell::QUADRANGLE, KbArray()) : c.arrays.cells());
};
const auto regularSurface = [](auto&, bool isEmpty) {
  return std::make_unique<KbSurfaceMeshRegular>(isEmpty ? KbIndex<2>{0, 0} : KbIndex<2>{NUM_I, NUM_J}, Vec3(0, 0, 0),
                                                Vec3(1, 1, 0));
};
const auto rectilinearSurface = [](auto& c, bool isEmpty) {
  for (std::size_t i = 0; i <= (isEmpty ? 0 : NUM_I); ++i)
    c.axes[0].push_back(static_cast<double>(i * i) / (NUM_I * NUM_I));
  for (std::size_t j = 0; j <= (isEmpty ? 0 : NUM_J); ++j)
    c.axes[1].push_back(static_cast<double>(j) / NUM_J);
  return std::make_unique<KbSurfaceMeshRectilinear>(c.axes[0], c.axes[1]);
};
const auto curvilinearSurface = [](auto& c, bool isEmpty) {
  if (isEmpty) c.arrays.coordinates.resize(3);
  return std::make_unique<KbSurfaceMeshCurvilinear>(isEmpty ? KbIndex<2>{0, 0} : KbIndex<2>{NUM_I, NUM_J},
                                                    c.arrays.coordinates);
};
const auto unstructuredLine = [](auto& c, bool isEmpty) {
  const auto numNodes = isEmpty ? 1 : static_cast<std::int32_t>(c.arrays.values.size());
  for (std::int32_t n = 0; n + 1 < numNodes; ++n)
    c.connectivity.insert(c.connectivity.end(), {n, n + 1});
  return std::make_unique<KbLineMeshUnstructured>(c.arrays.coordinates, KbCells(KiLineCell::LINE, c.connectivity));
};
const auto regularLine = [](auto& c, bool isEmpty) {
  return std::make_unique<KbLineMeshRegular>(KbIndex<1>{isEmpty ? 0 : c.arrays.values.size() - 1}, Vec3(0, 0, 0),
                                             Vec3(1, 1, 1));
};
const auto curvilinearLine = [](auto& c, bool isEmpty) {
  if (isEmpty) c.arrays.coordinates.resize(3);
  return std::make_unique<KbLineMeshCurvilinear>(KbIndex<1>{isEmpty ? 0 : c.arrays.values.size() - 1},
                                                 c.arrays.coordinates);
};

/// The families.
const auto isolines = [](auto& extractor, auto& c, int parameter, const auto* filter) -> decltype(auto) {
  return extractor.extract({0.1 + 0.3 * parameter, -0.4 + 0.1 * parameter}, *c.fieldSet, filter);
};
const auto planes = [](auto& extractor, auto&, int parameter, const auto* filter) -> decltype(auto) {
  return extractor.extract(Vec3(1.0, 0.3 + parameter, 0.0), 0.37, filter);
};
const auto curtains = [](auto& extractor, auto&, int parameter, const auto* filter) -> decltype(auto) {
  return extractor.extract(Vec3(0, 0, 1), {{0.1, 0.1, 0}, {0.5, 0.8, 0}, {0.9, 0.3 + 0.1 * parameter, 0}}, filter);
};
const auto wholeMesh = [](auto& extractor, auto&, int, const auto* filter) -> decltype(auto) {
  return extractor.extract(filter);
};
const auto pieces = [](auto& extractor, auto&, int parameter, const auto* filter) -> decltype(auto) {
  return extractor.extract(0.5 + 0.25 * parameter, filter);
};

template <class Extractor>
const auto plain = [](const auto& mesh, bool parallel) { return Extractor::getNewInstance(mesh, parallel); };
template <class Extractor>
const auto tessellating =
    [](const auto& mesh, bool parallel) { return Extractor::getNewInstance(mesh, parallel, nullptr); };
const auto tessellatedLine = [](auto& extractor, auto&, int, const auto* filter) -> decltype(auto) {
  return extractor.extract(nullptr, filter);
};

/// On the four kinds of surfaces.
template <class Unstructured, class Ij, class MakeU, class MakeIj, class RunOnce>
void addSurfaceRows(std::vector<Row>& rows, const std::array<const char*, 4>& names, const MakeU& makeU,
                    const MakeIj& makeIj, const RunOnce& run) {
  rows.push_back(row<KbSurfaceMeshUnstructured, Unstructured, FormI>(names[0], unstructuredSurface, makeU, run));
  rows.push_back(row<KbSurfaceMeshRegular, Ij, FormIj>(names[1], regularSurface, makeIj, run));
  rows.push_back(row<KbSurfaceMeshRectilinear, Ij, FormIj>(names[2], rectilinearSurface, makeIj, run));
  rows.push_back(row<KbSurfaceMeshCurvilinear, Ij, FormIj>(names[3], curvilinearSurface, makeIj, run));
}

std::vector<Row> allRows() {
  std::vector<Row> rows;
  addSurfaceRows<KiIsolineExtractUnstructured, KiIsolineExtractIj>(
      rows, {"IsolineUnstructured", "IsolineRegular", "IsolineRectilinear", "IsolineCurvilinear"},
      plain<KiIsolineExtractUnstructured>, plain<KiIsolineExtractIj>, isolines);
  addSurfaceRows<KiClipLineExtractUnstructured, KiClipLineExtractIj>(
      rows, {"PlaneUnstructured", "PlaneRegular", "PlaneRectilinear", "PlaneCurvilinear"},
      tessellating<KiClipLineExtractUnstructured>, tessellating<KiClipLineExtractIj>, planes);
  addSurfaceRows<KiClipLineExtractUnstructured, KiClipLineExtractIj>(
      rows, {"CurtainUnstructured", "CurtainRegular", "CurtainRectilinear", "CurtainCurvilinear"},
      tessellating<KiClipLineExtractUnstructured>, tessellating<KiClipLineExtractIj>, curtains);
  addSurfaceRows<KiCellExtractUnstructured, KiCellExtractIj>(
      rows, {"CellsUnstructured", "CellsRegular", "CellsRectilinear", "CellsCurvilinear"},
      tessellating<KiCellExtractUnstructured>, tessellating<KiCellExtractIj>, pieces);
  addSurfaceRows<KiOutlineExtractUnstructured, KiOutlineExtractIj>(
      rows, {"OutlineUnstructured", "OutlineRegular", "OutlineRectilinear", "OutlineCurvilinear"},
      tessellating<KiOutlineExtractUnstructured>, tessellating<KiOutlineExtractIj>, wholeMesh);
  for (Row& outline : std::span(rows).last(4))
    outline.seesNeighbours = true;
  rows.push_back(row<KbLineMeshUnstructured, KiClipPointExtract, FormI>("PointsUnstructured", unstructuredLine,
                                                                        tessellating<KiClipPointExtract>, planes));
  rows.push_back(row<KbLineMeshRegular, KiClipPointExtract, FormI>("PointsRegular", regularLine,
                                                                   tessellating<KiClipPointExtract>, planes));
  rows.push_back(row<KbLineMeshCurvilinear, KiClipPointExtract, FormI>("PointsCurvilinear", curvilinearLine,
                                                                       tessellating<KiClipPointExtract>, planes));
  rows.push_back(row<KbLineMeshUnstructured, KiTessellatedLineExtract, FormI>(
      "LineUnstructured", unstructuredLine, plain<KiTessellatedLineExtract>, tessellatedLine));
  rows.push_back(
      row<KbLineMeshRegular, KiLineExtract, FormI>("LineRegular", regularLine, tessellating<KiLineExtract>, wholeMesh));
  rows.push_back(row<KbLineMeshCurvilinear, KiLineExtract, FormI>("LineCurvilinear", curvilinearLine,
                                                                  tessellating<KiLineExtract>, wholeMesh));
  rows.push_back(row<KbLineMeshUnstructured, KiLineCellExtractUnstructured, FormI>(
      "LineCellsUnstructured", unstructuredLine, tessellating<KiLineCellExtractUnstructured>, pieces));
  rows.push_back(row<KbLineMeshRegular, KiLineCellExtractI, FormI>("LineCellsRegular", regularLine,
                                                                   tessellating<KiLineCellExtractI>, pieces));
  rows.push_back(row<KbLineMeshCurvilinear, KiLineCellExtractI, FormI>("LineCellsCurvilinear", curvilinearLine,
                                                                       tessellating<KiLineCellExtractI>, pieces));
  return rows;
}

/// Records what an extraction reports, and cancels it at a given call.
class Recorder final : public KiExtractorCallback {
public:
  std::size_t cancelAt = static_cast<std::size_t>(-1);
  std::size_t numAnswers = 0;
  std::vector<std::string> calls;
  bool changed = false;
  std::size_t announced = 0;

  void beginExtract(std::string, bool geometry, bool topology, bool dataSet, std::size_t numPhases) override {
    calls.push_back("beginExtract");
    changed = geometry || topology || dataSet;
    announced = numPhases;
  }
  void endExtract() override { calls.push_back("endExtract"); }
  bool beginPhase(std::size_t, std::string, std::size_t) override {
    calls.push_back("beginPhase");
    return answer();
  }
  bool endPhase() override {
    calls.push_back("endPhase");
    return answer();
  }
  bool endStep(std::size_t) override { return answer(); }
  double getEndStepCallPeriod() override { return 0.0; }

private:
  bool answer() { return numAnswers++ != cancelAt; }
};

class LineContracts : public testing::TestWithParam<Row> {};

TEST_P(LineContracts, AnEmptyMeshYieldsNothing) {
  const Subject s = GetParam().make(true, true);
  const MessageLog messages;
  const Snapshot output = s.extract(0, false);
  EXPECT_TRUE(output.vertices.empty());
  EXPECT_TRUE(output.inputCells.empty());
  EXPECT_TRUE(messages.lines.empty());
}

TEST_P(LineContracts, EqualCallsDoNothing) {
  const Subject s = GetParam().make(false, false);
  const Snapshot first = s.extract(0, false);
  ASSERT_FALSE(first.inputCells.empty());
  Recorder recorder;
  s.extractor->setExtractorCallback(recorder);
  const Snapshot second = s.extract(0, false);
  EXPECT_EQ(second.stamp, first.stamp);
  EXPECT_EQ(second, first);
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"beginExtract", "endExtract"}));
  EXPECT_FALSE(recorder.changed);
  EXPECT_EQ(recorder.announced, 0u);
}

TEST_P(LineContracts, ThreadsChangeNothing) {
  const Subject serial = GetParam().make(false, false);
  const Subject parallel = GetParam().make(true, false);
  for (const int parameter : {0, 1}) {
    EXPECT_EQ(parallel.extract(parameter, false), serial.extract(parameter, false));
    EXPECT_EQ(parallel.extract(parameter, true), serial.extract(parameter, true));
  }
}

TEST_P(LineContracts, DeadAndRefusedCellsYieldNothing) {
  const Subject s = GetParam().make(true, false);
  const Snapshot whole = s.extract(0, false);
  const Snapshot half = s.extract(0, true);
  EXPECT_NE(half.stamp, whole.stamp);
  std::vector<std::size_t> wanted;
  for (const std::size_t cell : whole.inputCells)
    if (cell < s.numCells / 2) wanted.push_back(cell);
  if (!GetParam().seesNeighbours) {
    EXPECT_EQ(std::multiset<std::size_t>(half.inputCells.begin(), half.inputCells.end()),
              std::multiset<std::size_t>(wanted.begin(), wanted.end()));
  }
  for (const std::size_t cell : half.inputCells)
    EXPECT_LT(cell, s.numCells / 2);
  std::vector<std::uint8_t> dead(s.numCells, 0);
  std::fill(dead.begin() + static_cast<std::ptrdiff_t>(s.numCells / 2), dead.end(), std::uint8_t{1});
  s.setDead(dead);
  EXPECT_EQ(s.extract(0, false), half);
}

TEST_P(LineContracts, SetsAreMappedOnce) {
  const Subject s = GetParam().make(true, false);
  const Snapshot output = s.extract(0, false);
  const KeXDataSetI<double>* cells = s.map(false);
  ASSERT_NE(cells, nullptr);
  ASSERT_GT(cells->getSize(), 0u);
  EXPECT_EQ(cells->getBinding(), DataBinding::PER_CELL);
  for (std::size_t c = 0; c < cells->getSize(); ++c)
    EXPECT_EQ(cells->get(c), static_cast<double>(output.inputCells[c]));
  const KeXDataSetI<double>* nodes = s.map(true);
  ASSERT_NE(nodes, nullptr);
  EXPECT_EQ(nodes->getBinding(), DataBinding::PER_NODE);
  EXPECT_LE(nodes->getSize(), output.vertices.size() / 3);
  EXPECT_GE(nodes->getMin(), 0.0);
  const std::size_t stamp = nodes->getTimeStamp();
  EXPECT_EQ(s.map(true), nodes);
  EXPECT_EQ(nodes->getTimeStamp(), stamp);
}

TEST_P(LineContracts, CallsNestAndACancelledExtractorGoesOn) {
  const Subject s = GetParam().make(true, false);
  const Snapshot wanted = s.extract(0, false);
  const Subject cancelled = GetParam().make(true, false);
  Recorder recorder;
  cancelled.extractor->setExtractorCallback(recorder);
  std::size_t numCancelled = 0;
  for (std::size_t at = 0;; ++at) {
    recorder = {};
    recorder.cancelAt = at;
    bool isCancelled = false;
    try {
      EXPECT_EQ(cancelled.extract(0, false), wanted);
    } catch (const KiCancellationException&) {
      isCancelled = true;
    }
    ASSERT_GE(recorder.calls.size(), 2u);
    EXPECT_EQ(recorder.calls.front(), "beginExtract");
    EXPECT_EQ(recorder.calls.back(), "endExtract");
    if (!isCancelled) break;
    ++numCancelled;
    ASSERT_LT(at, 100000u);
  }
  EXPECT_GE(numCancelled, 2u) << "at the begin and the end of each phase at least";
  EXPECT_TRUE(recorder.changed);
  EXPECT_EQ(std::count(recorder.calls.begin(), recorder.calls.end(), "beginPhase"),
            static_cast<std::ptrdiff_t>(recorder.announced));
}

INSTANTIATE_TEST_SUITE_P(Families, LineContracts, testing::ValuesIn(allRows()),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
