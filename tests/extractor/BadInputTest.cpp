// SPDX-License-Identifier: BSD-3-Clause
// What each family makes of bad meshes, sets and parameters: one message, and an output that is consistent in itself.
#include "extractor/PickTestTools.h"
#include "extractor/fuzz/Checks.h"
#include "extractor/fuzz/World.h"

#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

namespace {

using namespace pick;

constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");

std::size_t sizeOf(const KeXSurfaceMeshUnstructured& m) { return m.getTopology().getNumCells(); }
std::size_t sizeOf(const KeXLineMeshUnstructured& m) { return m.getTopology().getNumCells(); }
std::size_t sizeOf(const KeXPointMeshCurvilinear& m) { return m.getTopology().getNumCells(); }
template <class Mesh>
std::size_t sizeOf(const std::vector<const Mesh*>& meshes) {
  std::size_t size = 0;
  for (const Mesh* mesh : meshes)
    size += mesh->getGeometry().getNumNodes();
  return size;
}

/// A mesh of one dimension and sets on its nodes. The meshes of applications need not be checked as our own are.
template <class Interface, class Topology, std::size_t NUM_CORNERS>
struct Input {
  using Mesh = fuzz::ExplicitMesh<Interface, Topology>;
  KbMeshMaker::Arrays arrays;
  bool offersArrays = false;
  fuzz::World world;
  std::vector<float> flow;
  std::unique_ptr<Mesh> mesh;
  std::unique_ptr<KbScalarSetI> values;
  std::unique_ptr<KbVec3SetI> vectors;

  static constexpr std::size_t numCorners() { return NUM_CORNERS; }
  void finish() {
    world.isRaw = offersArrays;
    world.xyz.assign(arrays.coordinates.begin(), arrays.coordinates.end());
    fuzz::World::Cells& cells = world.volume;
    for (std::size_t c = 0; c < arrays.connectivity.size(); c += NUM_CORNERS)
      cells.nodes.emplace_back(arrays.connectivity.begin() + static_cast<std::ptrdiff_t>(c),
                               arrays.connectivity.begin() + static_cast<std::ptrdiff_t>(c + NUM_CORNERS));
    cells.shapes.assign(cells.nodes.size(), arrays.shapes[0]);
    cells.endNode = world.numNodes();
    cells.isUniform = true;
    cells.makeArrays();
    mesh = std::make_unique<Mesh>(world, cells);
    flow.assign(arrays.coordinates.size(), 1.0f);
    values = std::make_unique<KbScalarSetI>("values", DataBinding::PER_NODE, arrays.values);
    vectors = std::make_unique<KbVec3SetI>("flow", DataBinding::PER_NODE, flow);
  }
  std::size_t numCells() const { return mesh->getTopology().getNumCells(); }
};
using Volume = Input<KiVolumeMeshUnstructured, fuzz::VolumeTopology, 8>;
using Surfaces = Input<KiSurfaceMeshUnstructured, fuzz::SurfaceTopology, 4>;
using Lines = Input<KiLineMeshUnstructured, fuzz::LineTopology, 2>;

template <class In>
struct Family {
  const char* extractor; ///< the class that messages name
  /// Runs it and answers how much came out; faults of the output are failures.
  std::function<std::size_t(const In&)> run;
  bool seesHullOnly = false;
};

template <class In, class E>
std::unique_ptr<E> make(const In& input) {
  if constexpr (std::is_same_v<E, KxElevatedSurfaceExtractUnstructured>)
    return std::make_unique<E>(*input.mesh, true);
  else if constexpr (requires { E::getNewInstance(*input.mesh, true, nullptr); })
    return std::unique_ptr<E>(E::getNewInstance(*input.mesh, true, nullptr));
  else
    return std::unique_ptr<E>(E::getNewInstance(*input.mesh, true));
}

template <class E, class In, class Extract>
Family<In> family(const char* name, const Extract& extract) {
  return {name,
          [extract](const In& input) {
            const std::unique_ptr<E> e = make<In, E>(input);
            const auto& output = extract(*e, input);
            EXPECT_EQ(fuzz::faultOf(output, {input.numCells(), 0, 0}), "");
            return sizeOf(output);
          },
          std::is_same_v<E, KiSkinExtractUnstructured> ||
              (std::is_same_v<E, KiOutlineExtractUnstructured> && std::is_same_v<In, Volume>)};
}
// The class, and its call in terms of `e` and `in`.
#define KX_FAMILY(In, Class, ...)                                                                                      \
  family<Class, In>(                                                                                                   \
      #Class, [](Class & e, [[maybe_unused]] const In& in) -> auto& { return __VA_ARGS__; })

const Vec3 MIDDLE(0.5, 0.45, 0.55);
const Vec3 OBLIQUE(0.2, 0.1, 1.0);

std::vector<Family<Volume>> volumeFamilies() {
  return {
      KX_FAMILY(Volume, KiIsosurfExtractUnstructured, e.extract(1.0, *in.values, nullptr)),
      KX_FAMILY(Volume, KiPlaneSliceExtractUnstructured, e.extract(OBLIQUE, OBLIQUE.normalized().dot(MIDDLE), nullptr)),
      KX_FAMILY(Volume, KiSphereSliceExtractUnstructured, e.extract(MIDDLE, 0.3, nullptr)),
      KX_FAMILY(Volume, KiCylinderSliceExtractUnstructured, e.extract(MIDDLE, 0.1, OBLIQUE, nullptr)),
      KX_FAMILY(Volume, KiGridPlaneSliceExtractUnstructured,
                e.extract(OBLIQUE, OBLIQUE.normalized().dot(MIDDLE), 0.05, nullptr)),
      KX_FAMILY(Volume, KiFenceSliceExtractUnstructured,
                e.extract(OBLIQUE, {{0.1, 0.2, 0}, MIDDLE, {0.8, 0.1, 0}}, nullptr)),
      KX_FAMILY(Volume, KiSkinExtractUnstructured, e.extract(nullptr)),
      KX_FAMILY(Volume, KiOutlineExtractUnstructured, e.extract(nullptr)),
      KX_FAMILY(Volume, KiCellExtractUnstructured, e.extract(0.8, nullptr)),
      KX_FAMILY(Volume, KiStreamlineExtractUnstructured, e.extract(*in.vectors, {{0.1, 0.1, 0.1}}, nullptr)),
  };
}

std::vector<Family<Surfaces>> surfaceFamilies() {
  return {
      KX_FAMILY(Surfaces, KiIsolineExtractUnstructured, e.extract({1.0, 1.5}, *in.values, nullptr)),
      KX_FAMILY(Surfaces, KiClipLineExtractUnstructured, e.extract({1, 1, 0}, 0.6, nullptr)),
      KX_FAMILY(Surfaces, KiClipLineExtractUnstructured,
                e.extract({0, 0, 1}, {{0.1, 0.1, 0}, {0.4, 0.5, 0}, {0.9, 0.2, 0}}, nullptr)),
      KX_FAMILY(Surfaces, KiSurfaceExtractUnstructured, e.extract(nullptr)),
      KX_FAMILY(Surfaces, KiOutlineExtractUnstructured, e.extract(nullptr)),
      KX_FAMILY(Surfaces, KiCellExtractUnstructured, e.extract(0.8, nullptr)),
      KX_FAMILY(Surfaces, KxElevatedSurfaceExtractUnstructured, e.extract(0.1, in.values.get(), nullptr)),
  };
}

std::vector<Family<Lines>> lineFamilies() {
  return {
      KX_FAMILY(Lines, KiClipPointExtract, e.extract({1, 0, 0}, 3.2, nullptr)),
      KX_FAMILY(Lines, KiLineCellExtractUnstructured, e.extract(0.8, nullptr)),
      KX_FAMILY(Lines, KiTessellatedLineExtract, e.extract(nullptr, nullptr)),
  };
}

/// What is done to cell `cell`, and what is said about it.
struct Damage {
  const char* name;
  std::function<void(KbMeshMaker::Arrays&, std::size_t cell, std::size_t numCorners)> apply;
  const char* text; ///< behind the cell's number; null where nothing is said
};

const char* const OUT_OF_RANGE = " has a node id that is out of range; such cells are skipped";
const char* const NOT_FINITE = " has a node whose coordinates are not finite; such cells are skipped";

std::vector<Damage> damages() {
  const auto setIndex = [](std::int32_t value) {
    return [value](KbMeshMaker::Arrays& a, std::size_t cell, std::size_t corners) {
      a.connectivity[cell * corners + 1] = value;
    };
  };
  const auto setCoordinate = [](double value) {
    return [value](KbMeshMaker::Arrays& a, std::size_t cell, std::size_t corners) {
      a.coordinates[3 * static_cast<std::size_t>(a.connectivity[cell * corners + 1])] = static_cast<float>(value);
    };
  };
  return {
      {"index too great", setIndex(100000), OUT_OF_RANGE},
      {"negative index", setIndex(-1), OUT_OF_RANGE},
      {"infinite coordinate", setCoordinate(INFINITE), NOT_FINITE},
      {"coordinate that is not a number", setCoordinate(NOT_A_NUMBER), NOT_FINITE},
      {"repeated node",
       [](KbMeshMaker::Arrays& a, std::size_t cell, std::size_t corners) {
         a.connectivity[cell * corners + 1] = a.connectivity[cell * corners];
       },
       nullptr},
      {"no extent",
       [](KbMeshMaker::Arrays& a, std::size_t cell, std::size_t corners) {
         for (std::size_t c = 1; c < corners; ++c)
           a.connectivity[cell * corners + c] = a.connectivity[cell * corners];
       },
       nullptr},
  };
}

/// Runs the families on the damaged mesh: the fault is told once, by the family's name, and the rest still comes out.
template <class In>
void expectDamagesAreTold(const std::vector<Family<In>>& families, std::size_t cell, In (*makeInput)(),
                          bool offersArrays) {
  for (const Family<In>& f : families) {
    In whole = makeInput();
    whole.offersArrays = offersArrays;
    whole.finish();
    MessageLog silence;
    EXPECT_GT(f.run(whole), 0u) << f.extractor;
    EXPECT_TRUE(silence.lines.empty()) << silence.lines.front();
    for (const Damage& damage : damages()) {
      SCOPED_TRACE(std::string(f.extractor) + ", " + damage.name);
      In input = makeInput();
      input.offersArrays = offersArrays;
      damage.apply(input.arrays, cell, In::numCorners());
      input.finish();
      MessageLog log;
      EXPECT_GT(f.run(input), 0u);
      EXPECT_EQ(fuzz::Offences::take(), "");
      // A skin looks at no node inside of the mesh.
      const bool isUnseen = damage.text == NOT_FINITE && f.seesHullOnly;
      if (!damage.text || isUnseen) {
        EXPECT_TRUE(log.lines.empty()) << log.lines.front();
        continue;
      }
      ASSERT_EQ(log.lines.size(), 1u);
      EXPECT_EQ(log.lines[0].find(std::string(f.extractor) + "::"), 0u) << log.lines[0];
      EXPECT_NE(log.lines[0].find(damage.text), std::string::npos) << log.lines[0];
      if (damage.text == OUT_OF_RANGE) {
        EXPECT_NE(log.lines[0].find("cell " + std::to_string(cell) + " "), std::string::npos) << log.lines[0];
      }
    }
  }
}

Volume volume() {
  Volume v;
  v.arrays = KbMeshMaker::hexahedra({3, 3, 3}, 0.0, linear);
  return v;
}
Surfaces surface() {
  Surfaces s;
  s.arrays = KbMeshMaker::quadrangles({4, 4}, linear);
  return s;
}
Lines line() {
  Lines l;
  for (int n = 0; n < 8; ++n) {
    l.arrays.coordinates.insert(l.arrays.coordinates.end(), {static_cast<float>(n), 0.1f * static_cast<float>(n), 0});
    l.arrays.values.push_back(static_cast<float>(n));
  }
  for (std::int32_t n = 0; n < 7; ++n)
    l.arrays.connectivity.insert(l.arrays.connectivity.end(), {n, n + 1});
  l.arrays.shapes = {KiLineCell::LINE};
  return l;
}

/// Cells whose nodes lie around a range that ends before it begins: none of them is a node.
template <class In>
void expectNoNodes(const std::vector<Family<In>>& families, In (*makeInput)(), bool offersArrays) {
  for (const Family<In>& f : families) {
    SCOPED_TRACE(f.extractor);
    In input = makeInput();
    input.offersArrays = offersArrays;
    input.finish();
    input.world.volume.beginNode = input.world.numNodes() / 2;
    input.world.volume.endNode = 1;
    const MessageLog log;
    EXPECT_EQ(f.run(input), 0u);
    EXPECT_EQ(fuzz::Offences::take(), "");
    EXPECT_LE(log.lines.size(), 1u); // where no node bounds the mesh, no cell is looked at by its place
  }
}

class BadCells : public testing::TestWithParam<bool> {};
TEST_P(BadCells, OfVolumesAreToldOnceAndLeftOut) { expectDamagesAreTold(volumeFamilies(), 13, volume, GetParam()); }
TEST_P(BadCells, OfSurfacesAreToldOnceAndLeftOut) { expectDamagesAreTold(surfaceFamilies(), 5, surface, GetParam()); }
TEST_P(BadCells, OfLinesAreToldOnceAndLeftOut) { expectDamagesAreTold(lineFamilies(), 4, line, GetParam()); }
TEST_P(BadCells, OfRangesWithoutNodesAreLeftOut) {
  expectNoNodes(volumeFamilies(), volume, GetParam());
  expectNoNodes(surfaceFamilies(), surface, GetParam());
  expectNoNodes(lineFamilies(), line, GetParam());
}
std::string nameOf(const testing::TestParamInfo<bool>& info) { return info.param ? "Arrays" : "Virtual"; }
INSTANTIATE_TEST_SUITE_P(Access, BadCells, testing::Values(false, true), nameOf);

TEST(BadInput, ProbesTellDamagedCellsAndFindTheOthers) {
  for (const Damage& damage : damages()) {
    SCOPED_TRACE(damage.name);
    Volume v = volume();
    damage.apply(v.arrays, 13, 8);
    v.finish();
    const std::unique_ptr<KiPointProbeUnstructured> probe(KiPointProbeUnstructured::getNewInstance(*v.mesh, false));
    MessageLog log;
    probe->move({0.9, 0.9, 0.9}, nullptr);
    EXPECT_TRUE(probe->isCellFound());
    ASSERT_EQ(log.lines.size(), damage.text ? 1u : 0u);
    if (damage.text) {
      EXPECT_EQ(log.lines[0].find("KiPointProbeUnstructured::move: cell "), 0u);
      EXPECT_NE(log.lines[0].find(damage.text), std::string::npos) << log.lines[0];
    }
  }
}

/// Sets without a value, and with too few.
template <class In>
void expectShortSetsAreTold(const std::vector<Family<In>>& families, const std::vector<const char*>& readers,
                            const In& whole) {
  for (const std::size_t size : {std::size_t{0}, whole.arrays.values.size() - 1}) {
    for (const Family<In>& f : families) {
      const bool isReader =
          std::any_of(readers.begin(), readers.end(), [&](const char* r) { return std::string(r) == f.extractor; });
      if (!isReader) continue;
      SCOPED_TRACE(std::string(f.extractor) + ", " + std::to_string(size) + " values");
      In input;
      input.arrays = whole.arrays;
      input.finish();
      std::vector<float> few(whole.arrays.values.begin(),
                             whole.arrays.values.begin() + static_cast<std::ptrdiff_t>(size));
      std::vector<float> fewVectors(3 * size, 1.0f);
      input.values = std::make_unique<KbScalarSetI>("short", DataBinding::PER_NODE, few);
      input.vectors = std::make_unique<KbVec3SetI>("short", DataBinding::PER_NODE, fewVectors);
      MessageLog log;
      f.run(input);
      ASSERT_EQ(log.lines.size(), 1u);
      EXPECT_EQ(log.lines[0], std::string(f.extractor) + "::extract: the set \"short\" has fewer than the " +
                                  std::to_string(whole.arrays.values.size()) + " values that the mesh needs");
    }
  }
}

TEST(BadInput, SetsThatAreTooShortAreToldOnce) {
  Volume v = volume();
  expectShortSetsAreTold(volumeFamilies(), {"KiIsosurfExtractUnstructured", "KiStreamlineExtractUnstructured"}, v);
  Surfaces s = surface();
  expectShortSetsAreTold(surfaceFamilies(), {"KiIsolineExtractUnstructured", "KxElevatedSurfaceExtractUnstructured"},
                         s);
}

TEST(BadInput, ParametersWithoutMeaningGiveNothingAndOneMessage) {
  struct Row {
    Family<Volume> family;
    const char* text;
  };
  const Vec3 none(0.0);
  const Vec3 up(0, 0, 1);
  const std::vector<Row> rows{
      {KX_FAMILY(Volume, KiIsosurfExtractUnstructured, e.extract(NOT_A_NUMBER, *in.values, nullptr)),
       "the isovalue nan is not finite"},
      {KX_FAMILY(Volume, KiPlaneSliceExtractUnstructured, e.extract(Vec3(0.0), 0.5, nullptr)),
       "the plane's normal has no length"},
      {KX_FAMILY(Volume, KiPlaneSliceExtractUnstructured, e.extract(OBLIQUE, INFINITE, nullptr)),
       "the plane's normal or distance is not finite"},
      {KX_FAMILY(Volume, KiSphereSliceExtractUnstructured, e.extract(MIDDLE, -1.0, nullptr)),
       "the sphere's radius is negative"},
      {KX_FAMILY(Volume, KiSphereSliceExtractUnstructured, e.extract(Vec3(INFINITE, 0, 0), 1.0, nullptr)),
       "the sphere's centre or radius is not finite"},
      {KX_FAMILY(Volume, KiCylinderSliceExtractUnstructured, e.extract(MIDDLE, -0.1, OBLIQUE, nullptr)),
       "the cylinder's radius is negative"},
      {KX_FAMILY(Volume, KiCylinderSliceExtractUnstructured, e.extract(MIDDLE, 0.1, Vec3(0.0), nullptr)),
       "the cylinder's direction has no length"},
      {KX_FAMILY(Volume, KiGridPlaneSliceExtractUnstructured, e.extract(OBLIQUE, 0.5, 0.0, nullptr)),
       "the step 0 is not a positive number"},
      {KX_FAMILY(Volume, KiFenceSliceExtractUnstructured, e.extract(OBLIQUE, {}, nullptr)), "the polyline is empty"},
      {KX_FAMILY(Volume, KiFenceSliceExtractUnstructured, e.extract(OBLIQUE, {MIDDLE}, nullptr)),
       "the polyline has fewer than two points that differ across the direction"},
  };
  Volume input = volume();
  input.finish();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    MessageLog log;
    EXPECT_EQ(row.family.run(input), 0u);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0], std::string(row.family.extractor) + "::extract: " + row.text);
  }
}

TEST(BadInput, CutsOfSurfacesAndLinesTellParametersWithoutMeaning) {
  Surfaces s = surface();
  s.finish();
  Lines l = line();
  l.finish();
  const auto expectTold = [](const auto& f, const auto& input, const char* text) {
    SCOPED_TRACE(text);
    MessageLog log;
    EXPECT_EQ(f.run(input), 0u);
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0], std::string(f.extractor) + "::extract: " + text);
  };
  expectTold(KX_FAMILY(Surfaces, KiIsolineExtractUnstructured, e.extract({NOT_A_NUMBER}, *in.values, nullptr)), s,
             "the isovalue nan is not finite");
  expectTold(KX_FAMILY(Surfaces, KiClipLineExtractUnstructured, e.extract(Vec3(0.0), 0.5, nullptr)), s,
             "the plane's normal has no length");
  expectTold(KX_FAMILY(Surfaces, KiClipLineExtractUnstructured, e.extract({0, 0, 1}, {MIDDLE}, nullptr)), s,
             "the polyline has fewer than two points that differ across the direction");
  expectTold(KX_FAMILY(Lines, KiClipPointExtract, e.extract(Vec3(0.0), 0.5, nullptr)), l,
             "the plane's normal has no length");
}

#undef KX_FAMILY

} // namespace
