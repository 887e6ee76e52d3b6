// SPDX-License-Identifier: BSD-3-Clause
// Point probes on every mesh kind against laws (linear fields are reproduced, the first of several cells wins) and
// against a search through all cells.
#include "PathsTestTools.h"

#include <KerrinExtractor/KiCancellationException.h>
#include <KerrinExtractor/KiPointProbeHexahedronIjk.h>
#include <KerrinExtractor/KiPointProbeIj.h>
#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
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

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numeric>

using namespace paths;

namespace {

constexpr std::size_t NONE = static_cast<std::size_t>(-1);
constexpr std::size_t NI = 6;
constexpr std::size_t NJ = 5;
constexpr std::size_t NK = 4;
constexpr double WARP = 0.03;

double linear(const Vec3& p) { return 1.0 + 2.0 * p[0] - 3.0 * p[1] + 5.0 * p[2]; }

// A probe of any form, its mesh and its sets, by flat indices.
class Subject {
public:
  virtual ~Subject() = default;
  virtual void move(const Vec3& point) = 0;
  virtual bool isFound() const = 0;
  virtual std::size_t cell() const = 0;
  virtual const std::vector<double>& weights() const = 0;
  virtual double nodeValue() const = 0;
  virtual double cellValue() const = 0;
  virtual std::vector<std::size_t> findCells(const std::vector<Vec3>& points) = 0;
  virtual std::vector<double> probe(const std::vector<Vec3>& points, std::vector<std::size_t>& cells) = 0;
  virtual void refuse(std::set<std::size_t> cells) = 0;
  virtual void setCallback(KiExtractorCallback* callback) = 0;
  std::size_t numCells = 0;
};

template <class Probe, class Mesh, class NodeSet, class CellSet, class Filter>
class SubjectOf final : public Subject {
public:
  std::vector<float> coordinates;
  std::vector<double> axes[3];
  std::vector<float> nodeData;
  std::vector<double> cellData;
  KbMeshMaker::Arrays arrays;
  std::unique_ptr<Mesh> mesh;
  std::unique_ptr<NodeSet> nodeSet;
  std::unique_ptr<CellSet> cellSet;
  std::unique_ptr<Probe> p;
  std::unique_ptr<Filter> filter;
  std::size_t numI = NI;
  std::size_t numJ = NJ;

  void move(const Vec3& point) override { p->move(point, filter.get()); }
  bool isFound() const override { return p->isCellFound(); }
  std::size_t cell() const override {
    std::size_t i = 0, j = 0, k = 0;
    if constexpr (std::is_same_v<Probe, KiPointProbeUnstructured>)
      p->getCell(i);
    else if constexpr (std::is_same_v<Probe, KiPointProbeIj>)
      p->getCell(i, j);
    else
      p->getCell(i, j, k);
    return i == NONE ? NONE : i + numI * (j + numJ * k);
  }
  const std::vector<double>& weights() const override { return p->getWeights(); }
  double nodeValue() const override { return p->getValue(*nodeSet); }
  double cellValue() const override { return p->getValue(*cellSet); }
  std::vector<std::size_t> findCells(const std::vector<Vec3>& points) override {
    std::vector<std::size_t> cells(points.size());
    p->findCells(points.data(), points.size(), filter.get(), cells.data());
    return cells;
  }
  std::vector<double> probe(const std::vector<Vec3>& points, std::vector<std::size_t>& cells) override {
    std::vector<double> values(points.size());
    cells.resize(points.size());
    p->probe(points.data(), points.size(), filter.get(), *nodeSet, cells.data(), values.data());
    return values;
  }
  void refuse(std::set<std::size_t> cells) override { filter = std::make_unique<Filter>(std::move(cells), numI, numJ); }
  void setCallback(KiExtractorCallback* callback) override { p->setExtractorCallback(callback); }
};

struct Options {
  bool parallel = false;
  std::vector<std::uint8_t> dead;
};

struct Kind {
  std::string name;
  bool isSurface;
  double warp;
  std::function<std::unique_ptr<Subject>(const Options&)> make;
};

// Fills in what follows from the mesh: sets, probe.
template <class S, std::size_t N, std::size_t M>
std::unique_ptr<Subject> finish(std::unique_ptr<S> s, const Options& o, std::size_t numCells, KbIndex<N> nodeCounts,
                                KbIndex<M> cellCounts) {
  s->numCells = numCells;
  s->cellData.resize(numCells);
  std::iota(s->cellData.begin(), s->cellData.end(), 100.0);
  if constexpr (N == 1)
    s->nodeSet = std::make_unique<KbScalarSetI>("f", DataBinding::PER_NODE, s->arrays.values);
  else
    s->nodeSet = std::make_unique<KbDataSet<double, N>>("f", DataBinding::PER_NODE, s->arrays.values, nodeCounts);
  if constexpr (M == 1)
    s->cellSet = std::make_unique<KbScalarSetI>("c", DataBinding::PER_CELL, s->cellData);
  else
    s->cellSet = std::make_unique<KbDataSet<double, M>>("c", DataBinding::PER_CELL, s->cellData, cellCounts);
  using Probe = typename std::remove_reference_t<decltype(*s->p)>;
  s->p.reset(Probe::getNewInstance(*s->mesh, o.parallel));
  return s;
}

using VolumeIjk = KbIndex<3>;

template <class Mesh>
using SubjectIjk = SubjectOf<KiPointProbeIjk, Mesh, KbScalarSetIjk, KbScalarSetIjk, RefuseIjk>;
template <class Mesh>
using SubjectIj = SubjectOf<KiPointProbeIj, Mesh, KbScalarSetIj, KbScalarSetIj, RefuseIj>;
template <class Mesh>
using SubjectI = SubjectOf<KiPointProbeUnstructured, Mesh, KbScalarSetI, KbScalarSetI, RefuseI>;

std::vector<double> steps(std::size_t n) {
  std::vector<double> v(n + 1);
  for (std::size_t i = 0; i <= n; ++i)
    v[i] = std::pow(static_cast<double>(i) / static_cast<double>(n), 1.3);
  return v;
}

Kind unstructured(const std::string& name, std::function<KbMeshMaker::Arrays()> makeArrays) {
  return {name, false, WARP, [makeArrays](const Options& o) {
            auto s = std::make_unique<SubjectI<KbVolumeMeshUnstructured>>();
            s->arrays = makeArrays();
            s->mesh = std::make_unique<KbVolumeMeshUnstructured>(s->arrays.coordinates, s->arrays.cells(), o.dead);
            const std::size_t numCells = s->mesh->getTopology().getNumCells();
            return finish(std::move(s), o, numCells, KbIndex<1>{0}, KbIndex<1>{0});
          }};
}

const VolumeIjk CELLS{NI, NJ, NK};
const VolumeIjk NODES{NI + 1, NJ + 1, NK + 1};
const KbIndex<2> CELLS2{NI, NJ};
const KbIndex<2> NODES2{NI + 1, NJ + 1};

std::vector<Kind> kinds() {
  using Maker = KbMeshMaker;
  return {
      {"Regular", false, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshRegular>>();
         s->arrays = Maker::lattice(CELLS, 0.0, linear);
         s->mesh = std::make_unique<KbVolumeMeshRegular>(CELLS, Vec3(0.0), Vec3(1.0), o.dead);
         return finish(std::move(s), o, NI * NJ * NK, NODES, CELLS);
       }},
      {"Rectilinear", false, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshRectilinear>>();
         s->axes[0] = steps(NI);
         s->axes[1] = steps(NJ);
         s->axes[2] = steps(NK);
         for (double z : s->axes[2])
           for (double y : s->axes[1])
             for (double x : s->axes[0])
               s->arrays.values.push_back(static_cast<float>(linear({x, y, z})));
         s->mesh = std::make_unique<KbVolumeMeshRectilinear>(s->axes[0], s->axes[1], s->axes[2], o.dead);
         return finish(std::move(s), o, NI * NJ * NK, NODES, CELLS);
       }},
      {"Curvilinear", false, WARP,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIjk<KbVolumeMeshCurvilinear>>();
         s->arrays = Maker::lattice(CELLS, WARP, linear);
         s->mesh = std::make_unique<KbVolumeMeshCurvilinear>(CELLS, s->arrays.coordinates, o.dead);
         return finish(std::move(s), o, NI * NJ * NK, NODES, CELLS);
       }},
      {"HexahedronIjk", false, WARP,
       [](const Options& o) {
         auto s = std::make_unique<SubjectOf<KiPointProbeHexahedronIjk, KbVolumeMeshHexahedronIjk, KbScalarSetI,
                                             KbScalarSetIjk, RefuseIjk>>();
         s->arrays = Maker::hexahedra(CELLS, WARP, linear);
         s->mesh =
             std::make_unique<KbVolumeMeshHexahedronIjk>(CELLS, s->arrays.coordinates, s->arrays.connectivity, o.dead);
         return finish(std::move(s), o, NI * NJ * NK, KbIndex<1>{0}, CELLS);
       }},
      unstructured("Hexahedra", [] { return Maker::hexahedra(CELLS, WARP, linear); }),
      unstructured("Tetrahedra", [] { return Maker::tetrahedra(CELLS, WARP, linear); }),
      unstructured("Wedges", [] { return Maker::wedges(CELLS, WARP, linear); }),
      unstructured("Pyramids", [] { return Maker::pyramids(CELLS, WARP, linear); }),
      unstructured("Mixed", [] { return Maker::mixed(CELLS, WARP, linear); }),
      {"SurfaceRegular", true, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIj<KbSurfaceMeshRegular>>();
         s->mesh = std::make_unique<KbSurfaceMeshRegular>(CELLS2, Vec3(0, 0, 0.25), Vec3(1, 1, 0.25), o.dead);
         for (std::size_t j = 0; j <= NJ; ++j)
           for (std::size_t i = 0; i <= NI; ++i)
             s->arrays.values.push_back(
                 static_cast<float>(linear({static_cast<double>(i) / NI, static_cast<double>(j) / NJ, 0.25})));
         return finish(std::move(s), o, NI * NJ, NODES2, CELLS2);
       }},
      {"SurfaceRectilinear", true, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIj<KbSurfaceMeshRectilinear>>();
         s->axes[0] = steps(NI);
         s->axes[1] = steps(NJ);
         s->mesh = std::make_unique<KbSurfaceMeshRectilinear>(s->axes[0], s->axes[1], 0.25, o.dead);
         for (double y : s->axes[1])
           for (double x : s->axes[0])
             s->arrays.values.push_back(static_cast<float>(linear({x, y, 0.25})));
         return finish(std::move(s), o, NI * NJ, NODES2, CELLS2);
       }},
      {"SurfaceCurvilinear", true, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectIj<KbSurfaceMeshCurvilinear>>();
         s->arrays = Maker::surfaceLattice(CELLS2, linear);
         for (std::size_t n = 0; n < s->arrays.values.size(); ++n) // a plane that leans, so that its points are known
           s->arrays.coordinates[3 * n + 2] = 0.25f;
         for (std::size_t n = 0; n < s->arrays.values.size(); ++n)
           s->arrays.values[n] =
               static_cast<float>(linear({static_cast<double>(s->arrays.coordinates[3 * n]),
                                          static_cast<double>(s->arrays.coordinates[3 * n + 1]), 0.25}));
         s->mesh = std::make_unique<KbSurfaceMeshCurvilinear>(CELLS2, s->arrays.coordinates, o.dead);
         return finish(std::move(s), o, NI * NJ, NODES2, CELLS2);
       }},
      {"SurfaceUnstructured", true, 0.0,
       [](const Options& o) {
         auto s = std::make_unique<SubjectI<KbSurfaceMeshUnstructured>>();
         s->arrays = Maker::quadrangles(CELLS2, linear);
         for (std::size_t n = 0; n < s->arrays.values.size(); ++n) {
           s->arrays.coordinates[3 * n + 2] = 0.25f;
           s->arrays.values[n] =
               static_cast<float>(linear({static_cast<double>(s->arrays.coordinates[3 * n]),
                                          static_cast<double>(s->arrays.coordinates[3 * n + 1]), 0.25}));
         }
         s->mesh = std::make_unique<KbSurfaceMeshUnstructured>(s->arrays.coordinates, s->arrays.cells(), o.dead);
         return finish(std::move(s), o, NI * NJ, KbIndex<1>{0}, KbIndex<1>{0});
       }},
  };
}

class PointProbe : public testing::TestWithParam<Kind> {
protected:
  std::unique_ptr<Subject> make(const Options& options = {}) const { return GetParam().make(options); }
  // Inside of the mesh, away from its border.
  std::vector<Vec3> points(std::size_t count, std::uint64_t seed = 12345) const {
    std::vector<Vec3> p = randomPoints(count, 0.05, 0.95, seed);
    if (GetParam().isSurface)
      for (Vec3& point : p)
        point[2] = 0.25;
    return p;
  }
};

TEST_P(PointProbe, ReproducesLinearFieldsWithPositiveWeightsThatSumToOne) {
  const auto s = make();
  for (const Vec3& p : points(500)) {
    s->move(p);
    ASSERT_TRUE(s->isFound()) << p;
    EXPECT_NEAR(s->nodeValue(), linear(p), 3e-6) << p;
    EXPECT_EQ(s->cellValue(), 100.0 + static_cast<double>(s->cell()));
    double sum = 0.0;
    for (const double w : s->weights()) {
      EXPECT_GE(w, -1e-8);
      sum += w;
    }
    EXPECT_NEAR(sum, 1.0, 1e-12);
  }
}

TEST_P(PointProbe, ManyPointsAtOnceAreTheSameAsOneByOneSerialAndParallel) {
  const std::vector<Vec3> all = points(3000);
  const auto s = make();
  const auto q = make({true, {}});
  std::vector<std::size_t> cells;
  std::vector<std::size_t> parallelCells;
  const std::vector<double> values = s->probe(all, cells);
  EXPECT_EQ(values, q->probe(all, parallelCells));
  EXPECT_EQ(cells, parallelCells);
  EXPECT_EQ(cells, s->findCells(all));
  for (std::size_t i = 0; i < all.size(); i += 17) {
    s->move(all[i]);
    EXPECT_EQ(s->cell(), cells[i]);
    EXPECT_EQ(s->nodeValue(), values[i]);
  }
}

TEST_P(PointProbe, FindsNothingOutsideOrAtNaN) {
  const auto s = make();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  for (const Vec3& p : {Vec3(1.5, 0.5, 0.25), Vec3(0.5, -0.5, 0.25), Vec3(0.5, 0.5, 1e9), Vec3(nan, 0.5, 0.25),
                        Vec3(0.5, 0.5, nan), Vec3(infinity, 0.5, 0.25), Vec3(0.5, -infinity, 0.25)}) {
    s->move({0.5, 0.5, 0.25});
    ASSERT_TRUE(s->isFound());
    s->move(p);
    EXPECT_FALSE(s->isFound()) << p;
    EXPECT_EQ(s->cell(), NONE);
    EXPECT_TRUE(s->weights().empty());
    EXPECT_EQ(s->nodeValue(), 0.0);
    EXPECT_EQ(s->cellValue(), 0.0);
    std::vector<std::size_t> cells;
    EXPECT_EQ(s->probe({p}, cells), std::vector<double>{0.0});
    EXPECT_EQ(cells[0], NONE);
  }
}

TEST_P(PointProbe, FilterAndDeadCellsHideCellsOnly) {
  const std::vector<Vec3> all = points(800);
  const auto plain = make();
  const std::vector<std::size_t> cells = plain->findCells(all);
  std::set<std::size_t> hidden;
  Options options;
  options.dead.resize(plain->numCells);
  for (std::size_t c = 0; c < plain->numCells; c += 3) {
    hidden.insert(c);
    options.dead[c] = 1;
  }
  const auto dead = make(options);
  const auto filtered = make();
  filtered->refuse(hidden);
  const std::vector<std::size_t> deadCells = dead->findCells(all);
  EXPECT_EQ(filtered->findCells(all), deadCells);
  std::size_t numHidden = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(deadCells[i], hidden.count(cells[i]) ? NONE : cells[i]);
    numHidden += hidden.count(cells[i]);
  }
  EXPECT_GT(numHidden, 100u);
}

// Kinds whose inner nodes lie on round coordinates.
class StraightPointProbe : public PointProbe {};

TEST_P(StraightPointProbe, CornersAreInTheFirstOpenCellAroundThem) {
  // The mesh nodes are points that cells share exactly; which cells, the probe itself says by hiding one at a time.
  const auto s = make();
  const bool isRegular = GetParam().name == "Regular" || GetParam().name == "SurfaceRegular";
  Vec3 inner(2.0 / NI, 2.0 / NJ, 1.0 / NK);
  if (GetParam().name == "Rectilinear" || GetParam().name == "SurfaceRectilinear")
    inner = {steps(NI)[2], steps(NJ)[2], steps(NK)[1]};
  else if (!isRegular) {
    // From the lattice rather than by rounding `inner` to float and back: of that, GCC 12.2 keeps only the third
    // component here when it vectorises straight-line code (-ftree-slp-vectorize, which is part of -O2).
    const KbMeshMaker::Arrays lattice = KbMeshMaker::lattice({NI, NJ, NK});
    const std::size_t node = 2 + (NI + 1) * (2 + (NJ + 1) * 1);
    for (std::size_t axis = 0; axis < 3; ++axis)
      inner[axis] = static_cast<double>(lattice.coordinates[3 * node + axis]);
  }
  if (GetParam().isSurface) inner[2] = 0.25;
  std::set<std::size_t> hidden;
  std::vector<std::size_t> order;
  for (;;) {
    s->refuse(hidden);
    s->move(inner);
    if (!s->isFound()) break;
    EXPECT_NEAR(s->nodeValue(), linear(inner), 3e-6);
    order.push_back(s->cell());
    hidden.insert(s->cell());
    ASSERT_LE(order.size(), 8u);
  }
  const std::size_t first = 1 + NI; // cell (1, 1, 0)
  std::vector<std::size_t> expected{first, first + 1, first + NI, first + NI + 1};
  if (!GetParam().isSurface)
    for (std::size_t c = 0; c < 4; ++c)
      expected.push_back(expected[c] + NI * NJ);
  EXPECT_EQ(order, expected);
}

TEST_P(PointProbe, ReportsOnePhaseLessExtractionWhenNothingChanged) {
  const auto s = make();
  Recorder recorder;
  s->setCallback(&recorder);
  s->move({0.5, 0.5, 0.25});
  EXPECT_EQ(recorder.log.front(), 'B');
  EXPECT_EQ(recorder.log.back(), 'E');
  EXPECT_TRUE(recorder.geometryChanged && recorder.topologyChanged);
  recorder.log.clear();
  s->move({0.4, 0.5, 0.25});
  EXPECT_EQ(recorder.log, "BE");
  EXPECT_FALSE(recorder.geometryChanged || recorder.topologyChanged || recorder.dataSetChanged);
  recorder.log.clear();
  s->findCells(points(10));
  EXPECT_EQ(recorder.log, "B()E");
}

TEST_P(PointProbe, CancelLeavesTheProbeUsable) {
  const auto s = make();
  Recorder recorder;
  s->setCallback(&recorder);
  recorder.stop = true;
  EXPECT_THROW(s->findCells(points(10)), KiCancellationException);
  EXPECT_FALSE(s->isFound());
  EXPECT_EQ(recorder.log.back(), 'E');
  recorder.stop = false;
  s->move({0.5, 0.5, 0.25});
  EXPECT_TRUE(s->isFound());
}

std::vector<Kind> straightKinds() {
  std::vector<Kind> straight = kinds();
  std::erase_if(straight, [](const Kind& kind) { return kind.warp != 0.0; });
  return straight;
}

std::string nameOf(const testing::TestParamInfo<Kind>& row) { return row.param.name; }
INSTANTIATE_TEST_SUITE_P(Kinds, PointProbe, testing::ValuesIn(kinds()), nameOf);
INSTANTIATE_TEST_SUITE_P(Kinds, StraightPointProbe, testing::ValuesIn(straightKinds()), nameOf);

// The oracle for explicit cells: the first cell that says itself that it holds the point.
std::size_t searchAll(const KiVolumeMeshUnstructured& mesh, const Vec3& point) {
  std::vector<double> weights;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c)
    if (mesh.getTopology().getCell(c)->isPointInsideCell(mesh.getGeometry(), point, weights)) return c;
  return NONE;
}

struct Search {
  std::vector<std::size_t> probed;
  std::vector<std::size_t> searched;
};

Search search(const KiVolumeMeshUnstructured& mesh, const std::vector<Vec3>& points) {
  Search result;
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, true));
  result.probed.resize(points.size());
  probe->findCells(points.data(), points.size(), nullptr, result.probed.data());
  for (const Vec3& p : points)
    result.searched.push_back(searchAll(mesh, p));
  return result;
}

TEST(PointProbeSearch, AgreesWithASearchThroughAllCells) {
  for (const auto& arrays : {KbMeshMaker::hexahedra({4, 4, 4}, 0.1), KbMeshMaker::tetrahedra({4, 4, 4}, 0.1),
                             KbMeshMaker::wedges({4, 4, 4}, 0.1), KbMeshMaker::pyramids({4, 4, 4}, 0.1),
                             KbMeshMaker::mixed({4, 4, 4}, 0.1)}) {
    const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
    const Search s = search(mesh, randomPoints(200, -0.1, 1.1, 99));
    EXPECT_EQ(s.probed, s.searched);
  }
}

TEST(PointProbeSearch, NodesOfTheMeshAreInTheFirstCellAroundThem) {
  const auto arrays = KbMeshMaker::mixed({4, 4, 4}, 0.05);
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  std::vector<std::size_t> first(arrays.values.size(), NONE);
  for (std::size_t c = mesh.getTopology().getNumCells(); c-- > 0;)
    for (std::size_t n = 0; n < mesh.getTopology().getCell(c)->getNumNodes(); ++n)
      first[mesh.getTopology().getCell(c)->getNodeIndex(n)] = c;
  std::vector<Vec3> nodes;
  for (std::size_t n = 0; n < first.size(); ++n)
    nodes.push_back(mesh.getGeometry().getCoord(n));
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, false));
  std::vector<std::size_t> found(nodes.size());
  probe->findCells(nodes.data(), nodes.size(), nullptr, found.data());
  EXPECT_EQ(found, first);
}

TEST(PointProbeSearch, CrumpledAndInvertedHexahedraAreSearchedThroughout) {
  auto arrays = KbMeshMaker::hexahedra({3, 3, 3});
  const std::vector<Vec3> shifts = randomPoints(arrays.values.size(), -0.12, 0.12, 5);
  for (std::size_t n = 0; n < arrays.values.size(); ++n)
    for (std::size_t axis = 0; axis < 3; ++axis)
      arrays.coordinates[3 * n + axis] += static_cast<float>(shifts[n][axis]);
  for (std::size_t c = 0; c < 27; c += 2) // turn every other cell inside out
    for (std::size_t n = 0; n < 4; ++n)
      std::swap(arrays.connectivity[8 * c + n], arrays.connectivity[8 * c + 4 + n]);
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const Search s = search(mesh, randomPoints(300, 0.0, 1.0, 6));
  std::size_t differing = 0;
  for (std::size_t i = 0; i < s.probed.size(); ++i)
    differing += s.probed[i] != s.searched[i] ? 1 : 0;
  // Where the map folds over, the two searches may end on different sheets; that is rare.
  EXPECT_LE(differing, 3u);
}

TEST(PointProbeSearch, GradedMeshesStayWithinTheirMemory) {
  // Cells of very different sizes: layers get thinner by 1.5 each.
  auto arrays = KbMeshMaker::hexahedra({6, 6, 24});
  for (std::size_t n = 0; n < arrays.values.size(); ++n)
    arrays.coordinates[3 * n + 2] = std::pow(1.5f, 24.0f * (arrays.coordinates[3 * n + 2] - 1.0f));
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const Search s = search(mesh, randomPoints(200, 0.0, 1.0, 7));
  EXPECT_EQ(s.probed, s.searched);
}

TEST(PointProbeSearch, QuadraticCellsAndPolyhedraUseTheirOwnShapeFunctions) {
  // A quadratic tetrahedron with one bulging edge, and a polyhedral cube beside it.
  const std::vector<double> coordinates{0, 0,   0, 1, 0, 0,   0,   1, 0,   0, 0,   1,   0.5, 0, 0, 0.6, 0.6, 0,
                                        0, 0.5, 0, 0, 0, 0.5, 0.5, 0, 0.5, 0, 0.5, 0.5, 2,   0, 0, 3,   0,   0,
                                        3, 1,   0, 2, 1, 0,   2,   0, 1,   3, 0,   1,   3,   1, 1, 2,   1,   1};
  const std::vector<std::int32_t> connectivity{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};
  const std::vector<std::int32_t> offsets{0, 10, 18};
  const std::vector<std::uint8_t> shapes{KiVolumeCell::QUADRATIC_TETRAHEDRON, KiVolumeCell::POLYHEDRON};
  const std::vector<std::int32_t> faces{6, 4,  10, 13, 12, 11, 4,  14, 15, 16, 17, 4,  10, 11, 15, 14,
                                        4, 11, 12, 16, 15, 4,  12, 13, 17, 16, 4,  13, 10, 14, 17};
  const std::vector<std::int32_t> faceOffsets{0, 0, 31};
  KbCells cells(shapes, connectivity, offsets);
  cells.setFaces(faces, faceOffsets);
  const KbVolumeMeshUnstructured mesh(coordinates, cells);
  std::vector<double> values(18, 0.0);
  for (std::size_t n = 0; n < 18; ++n)
    values[n] = linear({coordinates[3 * n], coordinates[3 * n + 1], coordinates[3 * n + 2]});
  const KbScalarSetI set("f", DataBinding::PER_NODE, values);
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, false));
  std::size_t cell = 0;
  for (const Vec3& p : {Vec3(0.2, 0.2, 0.2), Vec3(0.55, 0.55, 0.0)}) { // the second one only the bulge holds
    probe->move(p, nullptr);
    ASSERT_TRUE(probe->isCellFound());
    probe->getCell(cell);
    EXPECT_EQ(cell, 0u);
    EXPECT_EQ(probe->getWeights().size(), 10u);
    EXPECT_NEAR(probe->getValue(set), linear(p), 1e-9);
  }
  probe->move({2.3, 0.4, 0.7}, nullptr);
  probe->getCell(cell);
  EXPECT_EQ(cell, 1u);
  EXPECT_EQ(probe->getWeights().size(), 8u);
  EXPECT_NEAR(probe->getValue(set), linear({2.3, 0.4, 0.7}), 1e-9);
}

TEST(PointProbeInput, EmptyMeshesFindNothing) {
  const std::vector<float> noCoordinates;
  const std::vector<std::int32_t> noNodes;
  const KbVolumeMeshUnstructured volume(noCoordinates, {KiVolumeCell::HEXAHEDRON, noNodes});
  const KbSurfaceMeshUnstructured surface(noCoordinates, {KiSurfaceCell::TRIANGLE, noNodes});
  const KbVolumeMeshRegular regular({0, 0, 0}, Vec3(0.0), Vec3(1.0));
  const std::unique_ptr<KiPointProbeUnstructured> a(KiPointProbeUnstructured::getNewInstance(volume, true));
  const std::unique_ptr<KiPointProbeUnstructured> b(KiPointProbeUnstructured::getNewInstance(surface, true));
  const std::unique_ptr<KiPointProbeIjk> c(KiPointProbeIjk::getNewInstance(regular, true));
  a->move(Vec3(0.0), nullptr);
  b->move(Vec3(0.0), nullptr);
  c->move(Vec3(0.0), nullptr);
  EXPECT_FALSE(a->isCellFound());
  EXPECT_FALSE(b->isCellFound());
  EXPECT_FALSE(c->isCellFound());
  std::size_t i = 0, j = 0, k = 0;
  c->getCell(i, j, k);
  EXPECT_EQ(i, NONE);
  EXPECT_EQ(k, NONE);
}

TEST(PointProbeInput, UnsuitableSetsAreZeroWithOneMessage) {
  const KbVolumeMeshRegular mesh({2, 2, 2}, Vec3(0.0), Vec3(1.0));
  const std::unique_ptr<KiPointProbeIjk> probe(KiPointProbeIjk::getNewInstance(mesh, false));
  probe->move(Vec3(0.3), nullptr);
  ASSERT_TRUE(probe->isCellFound());
  const std::vector<double> values(8, 7.0);
  const KbScalarSetIjk tooShort("short", DataBinding::PER_NODE, values, {2, 2, 2});
  MessageLog messages;
  EXPECT_EQ(probe->getValue(tooShort), 0.0);
  ASSERT_EQ(messages.lines.size(), 1u);
  EXPECT_NE(messages.lines[0].find("KiPointProbeIjk::getValue: the set \"short\""), std::string::npos);
  const KbScalarSetIjk cells("cells", DataBinding::PER_CELL, values, {2, 2, 2});
  EXPECT_EQ(probe->getValue(cells), 7.0);
  EXPECT_EQ(messages.lines.size(), 1u);
}

TEST(PointProbeInput, BadCellsAreLeftOutWithOneMessage) {
  auto arrays = KbMeshMaker::tetrahedra({2, 2, 2});
  arrays.coordinates[0] = std::numeric_limits<float>::quiet_NaN();
  const KbVolumeMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, true));
  MessageLog messages;
  probe->move(Vec3(0.01), nullptr);
  EXPECT_FALSE(probe->isCellFound());
  probe->move({0.8, 0.7, 0.9}, nullptr);
  EXPECT_TRUE(probe->isCellFound());
  ASSERT_EQ(messages.lines.size(), 1u);
  EXPECT_NE(messages.lines[0].find("cell 0 has a node whose coordinates are not finite"), std::string::npos);
}

TEST(PointProbeInput, NaNAtANodeIsNaNAtThePointsThatNeedIt) {
  auto arrays = KbMeshMaker::lattice({2, 2, 2});
  arrays.values[0] = std::numeric_limits<float>::quiet_NaN();
  const KbVolumeMeshRegular mesh({2, 2, 2}, Vec3(0.0), Vec3(1.0));
  const KbScalarSetIjk set("f", DataBinding::PER_NODE, arrays.values, {3, 3, 3});
  const std::unique_ptr<KiPointProbeIjk> probe(KiPointProbeIjk::getNewInstance(mesh, false));
  probe->move(Vec3(0.1), nullptr);
  EXPECT_TRUE(std::isnan(probe->getValue(set)));
  probe->move({0.5, 0.1, 0.1}, nullptr); // on the far face of the cell with the NaN
  EXPECT_FALSE(std::isnan(probe->getValue(set)));
}

TEST(PointProbeInput, ChangedGeometryIsReadAgain) {
  auto arrays = KbMeshMaker::lattice({3, 3, 3}, WARP);
  KbVolumeMeshCurvilinear mesh({3, 3, 3}, arrays.coordinates);
  const std::unique_ptr<KiPointProbeIjk> probe(KiPointProbeIjk::getNewInstance(mesh, false));
  probe->move(Vec3(5.5), nullptr);
  EXPECT_FALSE(probe->isCellFound());
  std::vector<float> moved = arrays.coordinates;
  for (float& x : moved)
    x += 5.0f;
  ASSERT_TRUE(mesh.setCoordinates(moved));
  probe->move(Vec3(5.5), nullptr);
  EXPECT_TRUE(probe->isCellFound());
}

TEST(PointProbeSurface, ToleranceIsAMillionthOfTheMesh) {
  const auto arrays = KbMeshMaker::quadrangles({8, 8});
  const KbSurfaceMeshUnstructured mesh(arrays.coordinates, arrays.cells());
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, false));
  std::vector<double> weights;
  const KiSurfaceCell* cell = mesh.getTopology().getCell(27);
  Vec3 centre;
  for (std::size_t n = 0; n < 4; ++n)
    centre += mesh.getGeometry().getCoord(cell->getNodeIndex(n)) * 0.25;
  std::size_t found = 0;
  probe->move(centre, nullptr);
  probe->getCell(found);
  EXPECT_EQ(found, 27u);
  const double diagonal = (mesh.getGeometry().getMax() - mesh.getGeometry().getMin()).length();
  probe->move(centre + Vec3(0, 0, 0.9e-6 * diagonal), nullptr);
  EXPECT_TRUE(probe->isCellFound());
  probe->move(centre + Vec3(0, 0, 2e-6 * diagonal), nullptr);
  EXPECT_FALSE(probe->isCellFound());
}

TEST(PointProbeSurface, PolygonsReproduceLinearFields) {
  const std::vector<double> coordinates{0, 0, 1, 2, 0, 1, 2, 2, 1, 1, 0.8, 1, 0, 2, 1};
  const std::vector<std::int32_t> connectivity{0, 1, 2, 3, 4};
  const std::vector<std::int32_t> offsets{0, 5};
  const KbSurfaceMeshUnstructured mesh(coordinates, {KiSurfaceCell::POLYGON, connectivity, offsets});
  std::vector<double> values;
  for (std::size_t n = 0; n < 5; ++n)
    values.push_back(linear({coordinates[3 * n], coordinates[3 * n + 1], coordinates[3 * n + 2]}));
  const KbScalarSetI set("f", DataBinding::PER_NODE, values);
  const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(mesh, false));
  probe->move({0.3, 1.1, 1.0}, nullptr);
  ASSERT_TRUE(probe->isCellFound());
  EXPECT_NEAR(probe->getValue(set), linear({0.3, 1.1, 1.0}), 1e-9);
  probe->move({1.0, 1.5, 1.0}, nullptr); // in the notch
  EXPECT_FALSE(probe->isCellFound());
}

} // namespace
