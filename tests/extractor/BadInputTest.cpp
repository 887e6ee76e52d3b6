// SPDX-License-Identifier: BSD-3-Clause
// What each family makes of bad meshes, sets and parameters, on every kind of mesh: one message that names the class
// and the function, and an output that is consistent in itself.
#include "extractor/PickTestTools.h"
#include "extractor/fuzz/Checks.h"
#include "extractor/fuzz/FamilyClasses.h"

#include <cxxabi.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

namespace {

using namespace fuzz;

constexpr double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");
constexpr double TOO_GREAT = 1e200; // finite, but beyond what any output can hold

template <class T>
std::string nameOf() {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(typeid(T).name(), nullptr, nullptr, &status), &std::free);
  return name.get();
}

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

// The sound mesh: 3 x 3 x 3 cells over the unit cube, the four by four of its lowest layer of nodes as the surface, and
// the first row of that as the line.
constexpr std::size_t N = 3;
constexpr std::size_t MIDDLE_CELL = 13; // of volumes
constexpr std::size_t MIDDLE_NODE = 21; // its first corner
const Vec3 MIDDLE(0.5, 0.45, 0.55);
const Vec3 OBLIQUE(0.2, 0.1, 1.0);
const Vec3 UP(0.0, 0.0, 1.0);

std::size_t nodeAt(std::size_t i, std::size_t j, std::size_t k) { return i + (N + 1) * (j + (N + 1) * k); }

World soundWorld() {
  World w;
  w.counts = {N, N, N};
  w.high = Vec3(1.0);
  for (std::vector<double>& axis : w.axes)
    for (std::size_t i = 0; i <= N; ++i)
      axis.push_back(static_cast<double>(i) / N);
  for (const double z : w.axes[2])
    for (const double y : w.axes[1])
      for (const double x : w.axes[0])
        w.xyz.insert(w.xyz.end(), {x, y, z});
  const auto add = [&w](World::Cells& cells, int shape, const std::vector<std::size_t>& nodes) {
    cells.nodes.emplace_back(nodes.begin(), nodes.end());
    cells.shapes.push_back(static_cast<std::uint8_t>(shape));
    cells.endNode = w.numNodes();
  };
  for (std::size_t k = 0; k < N; ++k)
    for (std::size_t j = 0; j < N; ++j)
      for (std::size_t i = 0; i < N; ++i) {
        add(w.volume, KiVolumeCell::HEXAHEDRON,
            {nodeAt(i, j, k), nodeAt(i + 1, j, k), nodeAt(i + 1, j + 1, k), nodeAt(i, j + 1, k), nodeAt(i, j, k + 1),
             nodeAt(i + 1, j, k + 1), nodeAt(i + 1, j + 1, k + 1), nodeAt(i, j + 1, k + 1)});
        if (k == 0)
          add(w.surface, KiSurfaceCell::QUADRANGLE,
              {nodeAt(i, j, 0), nodeAt(i + 1, j, 0), nodeAt(i + 1, j + 1, 0), nodeAt(i, j + 1, 0)});
        if (k == 0 && j == 0) add(w.line, KiLineCell::LINE, {i, i + 1});
      }
  for (const std::vector<std::int64_t>& cell : w.volume.nodes)
    for (const std::int64_t node : cell) {
      w.hexahedra.push_back(node);
      const double* p = w.xyz.data() + 3 * node;
      w.corners.emplace_back(p[0], p[1], p[2]);
    }
  return w;
}

/// A mesh of a kind, and sets on its nodes.
template <class K>
class Input {
public:
  explicit Input(bool offersArrays)
      : world(soundWorld())
      , m_offersArrays(offersArrays) {
    for (std::size_t n = 0; n < world.numNodes(); ++n) {
      const double* p = world.xyz.data() + 3 * n;
      values.push_back(1.0 + p[0] + 2.0 * p[1] - 3.0 * p[2]); // linear: exact between nodes
      vectors.insert(vectors.end(), {1.0, 1.0, 1.0});
    }
  }
  /// What is changed here counts from `finish` on.
  World world;
  std::vector<double> values;
  std::vector<double> vectors;

  void finish() {
    world.isRaw = m_offersArrays;
    world.isWide = true;
    for (World::Cells* cells : {&world.volume, &world.surface, &world.line}) {
      cells->isUniform = true;
      cells->makeArrays();
    }
    const Counts dims{N + 1, N + 1, N + 1};
    m_scalarSet.emplace(DataBinding::PER_NODE, dims, values, m_offersArrays);
    m_vectorSet.emplace(DataBinding::PER_NODE, dims, vectors, m_offersArrays);
    m_mesh = std::make_unique<typename K::Mesh>(K::make(world));
  }
  const typename K::Mesh& mesh() const { return *m_mesh; }
  const typename K::Form::template NodeSet<double>& scalarSet() const { return *m_scalarSet; }
  const typename K::Form::template NodeSet<Vec3>& vectorSet() const { return *m_vectorSet; }

private:
  bool m_offersArrays;
  std::optional<Set<double>> m_scalarSet;
  std::optional<Set<Vec3>> m_vectorSet;
  std::unique_ptr<typename K::Mesh> m_mesh;
};

/// A family on a kind of mesh, with sound parameters.
template <class K>
struct Family {
  std::string extractor; ///< the class that messages name
  std::string function;
  /// Runs it and answers how much came out; faults of the output are failures.
  std::function<std::size_t(const Input<K>&)> run;
  bool readsSet = false;
  bool seesHullOnly = false;
};

template <class E, class K, class Extract>
Family<K> family(const Extract& extract) {
  return {nameOf<E>(), "extract", [extract](const Input<K>& in) {
            const std::unique_ptr<E> e = makeExtractor<E>(in.mesh(), true, nullptr);
            const auto& output = extract(*e, in);
            EXPECT_EQ(faultOf(output, K::cells(in.world)), "");
            return sizeOf(output);
          }};
}
/// Probes a point in a sound part of the mesh.
template <class E, class K>
Family<K> probeFamily(const Vec3& point) {
  return {nameOf<E>(), "move", [point](const Input<K>& in) {
            const std::unique_ptr<E> e = makeExtractor<E>(in.mesh(), false, nullptr);
            e->move(point, nullptr);
            return std::size_t(e->isCellFound());
          }};
}
template <class K>
Family<K> readingSet(Family<K> family) {
  family.readsSet = true;
  return family;
}
template <class K>
Family<K> seeingHullOnly(Family<K> family) {
  family.seesHullOnly = true;
  return family;
}

template <class K>
std::vector<Family<K>> volumeFamilies() {
  using F = typename K::Form;
  using In = const Input<K>&;
  const auto unbounded = [](auto& e, In) -> auto& { return e.extract(nullptr); };
  const double distance = OBLIQUE.normalized().dot(MIDDLE);
  std::vector<Family<K>> list{
      readingSet(
          family<Isosurf<F>, K>([](auto& e, In in) -> auto& { return e.extract(1.0, in.scalarSet(), nullptr); })),
      family<PlaneSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(OBLIQUE, distance, nullptr); }),
      family<SphereSlice<F>, K>([](auto& e, In) -> auto& { return e.extract(MIDDLE, 0.3, nullptr); }),
      family<CylinderSlice<F>, K>([](auto& e, In) -> auto& { return e.extract(MIDDLE, 0.25, OBLIQUE, nullptr); }),
      family<FenceSlice<F>, K>([](auto& e, In) -> auto& {
        return e.extract(OBLIQUE, {{0.1, 0.2, 0}, MIDDLE, {0.8, 0.1, 0}}, nullptr);
      }),
      seeingHullOnly(family<Skin<F>, K>(unbounded)),
      seeingHullOnly(family<VolumeOutline<F>, K>(unbounded)),
  };
  if constexpr (SERVES<GridPlaneSlice<F>, K>)
    list.push_back(family<GridPlaneSlice<F>, K>([=](auto& e, In) -> auto& {
      return e.extract(OBLIQUE, distance, 0.05, nullptr);
    }));
  if constexpr (SERVES<VolumeCells<F>, K>)
    list.push_back(family<VolumeCells<F>, K>([](auto& e, In) -> auto& { return e.extract(0.8, nullptr); }));
  if constexpr (SERVES<Streamlines<F>, K>)
    list.push_back(readingSet(family<Streamlines<F>, K>([](auto& e, In in) -> auto& {
      return e.extract(in.vectorSet(), {{0.9, 0.1, 0.1}}, nullptr);
    })));
  if constexpr (requires { typename K::LogicalSlice; }) {
    list.push_back(family<typename K::LogicalSlice, K>(
        [](auto& e, In) -> auto& { return e.extract(KiMesh::DIMENSION_K, 1, false, nullptr); }));
    list.push_back(family<typename K::InterpolatedSlice, K>(
        [](auto& e, In) -> auto& { return e.extract(KiMesh::DIMENSION_K, 1.25, nullptr); }));
  }
  if constexpr (SERVES<VolumeProbe<F>, K>) list.push_back(probeFamily<VolumeProbe<F>, K>(Vec3(0.9)));
  return list;
}

template <class K>
std::vector<Family<K>> surfaceFamilies() {
  using F = typename K::Form;
  using In = const Input<K>&;
  const auto unbounded = [](auto& e, In) -> auto& { return e.extract(nullptr); };
  std::vector<Family<K>> list{
      readingSet(family<Isolines<F>, K>([](auto& e, In in) -> auto& {
        return e.extract({1.2, 2.5}, in.scalarSet(), nullptr);
      })),
      family<ClipLines<F>, K>([](auto& e, In) -> auto& {
        return e.extract({1, 1, 0}, 0.6, nullptr);
      }),
      family<ClipLines<F>, K>([](auto& e, In) -> auto& {
        return e.extract(UP, {{0.1, 0.1, 0}, {0.4, 0.5, 0}, {0.9, 0.2, 0}}, nullptr);
      }),
      family<SurfaceExtract<F>, K>(unbounded),
      family<SurfaceOutline<F>, K>(unbounded),
      family<SurfaceCells<F>, K>([](auto& e, In) -> auto& { return e.extract(0.8, nullptr); }),
      probeFamily<SurfaceProbe<F>, K>({0.9, 0.9, 0.0}),
  };
  if constexpr (std::is_same_v<K, SurfaceUnstructured>) {
    list.push_back(readingSet(family<KxElevatedSurfaceExtractUnstructured, K>(
        [](auto& e, In in) -> auto& { return e.extract(0.1, &in.scalarSet(), nullptr); })));
    list.push_back(
        family<KiTessellatedSurfaceExtract, K>([](auto& e, In) -> auto& { return e.extract(nullptr, nullptr); }));
  }
  return list;
}

template <class K>
std::vector<Family<K>> lineFamilies() {
  using In = const Input<K>&;
  return {
      family<KiClipPointExtract, K>([](auto& e, In) -> auto& {
        return e.extract({1, 0, 0}, 0.9, nullptr);
      }),
      family<LineCells<K>, K>([](auto& e, In) -> auto& { return e.extract(0.8, nullptr); }),
      family<Lines<K>, K>([](auto& e, In) -> auto& {
        if constexpr (IS_EXPLICIT_LINE<K>)
          return e.extract(nullptr, nullptr);
        else
          return e.extract(nullptr);
      }),
  };
}

template <class K>
std::vector<Family<K>> familiesOf() {
  if constexpr (IS_AMONG<K, VolumeKinds>)
    return volumeFamilies<K>();
  else if constexpr (IS_AMONG<K, SurfaceKinds>)
    return surfaceFamilies<K>();
  else
    return lineFamilies<K>();
}

/// What is done to a mesh, and what is said about it.
struct Damage {
  std::string name;
  std::function<void(World&)> apply;
  const char* text;          ///< in the message; null where nothing is said
  bool isEverywhere = false; ///< nothing of the mesh is left
};

const char* const OUT_OF_RANGE = " has a node id that is out of range; such cells are skipped";
const char* const NOT_FINITE = " has a node whose coordinates are not finite; such cells are skipped";
// Of whole meshes:
const char* const CORNERS_NOT_FINITE = "the mesh's corners (0, 0, 0) and (";
const char* const NOT_ASCENDING = "the positions along x do not ascend at index ";

/// The explicit cells of a kind, and the one of them that is damaged.
template <class K>
World::Cells& cellsOf(World& w) {
  if constexpr (std::is_same_v<K, VolumeUnstructured>) return w.volume;
  if constexpr (std::is_same_v<K, SurfaceUnstructured>) return w.surface;
  return w.line;
}
template <class K>
constexpr std::size_t DAMAGED_CELL = std::is_same_v<K, VolumeUnstructured>    ? MIDDLE_CELL
                                     : std::is_same_v<K, SurfaceUnstructured> ? 4
                                                                              : 1;
template <class K>
constexpr bool IS_EXPLICIT = requires(const typename K::Mesh& m) {
  m.getTopology().getCell(std::size_t(0));
};
template <class K>
constexpr bool IS_REGULAR =
    std::is_same_v<K, VolumeRegular> || std::is_same_v<K, SurfaceRegular> || std::is_same_v<K, LineRegular>;
template <class K>
constexpr bool IS_RECTILINEAR = std::is_same_v<K, VolumeRectilinear> || std::is_same_v<K, SurfaceRectilinear>;

/// Puts a coordinate into a cell that the families with sound parameters look at, and not all others with it.
template <class K>
void setCoordinate(World& w, double value) {
  if constexpr (IS_REGULAR<K>)
    w.high[0] = value;
  else if constexpr (IS_RECTILINEAR<K>)
    w.axes[0][1] = value;
  else if constexpr (std::is_same_v<K, VolumeVertexHexahedronIjk>)
    w.corners[8 * MIDDLE_CELL][0] = value;
  else if constexpr (IS_AMONG<K, VolumeKinds>)
    w.xyz[3 * MIDDLE_NODE] = value;
  else
    w.xyz[3 * (IS_AMONG<K, LineKinds> ? 1 : 5)] = value;
}

/// Takes the extent away from a cell.
template <class K>
void flatten(World& w) {
  if constexpr (IS_REGULAR<K>) {
    w.high[0] = w.low[0];
  } else if constexpr (IS_RECTILINEAR<K>) {
    w.axes[0][2] = w.axes[0][1];
  } else if constexpr (std::is_same_v<K, VolumeVertexHexahedronIjk>) {
    std::fill_n(w.corners.begin() + 8 * MIDDLE_CELL, 8, w.corners[8 * MIDDLE_CELL]);
  } else if constexpr (IS_EXPLICIT<K>) {
    std::vector<std::int64_t>& cell = cellsOf<K>(w).nodes[DAMAGED_CELL<K>];
    std::fill(cell.begin(), cell.end(), cell[0]);
  } else if constexpr (std::is_same_v<K, VolumeHexahedronIjk>) {
    std::fill_n(w.hexahedra.begin() + 8 * MIDDLE_CELL, 8, w.hexahedra[8 * MIDDLE_CELL]);
  } else {
    for (std::size_t n = 0; n < w.numNodes(); ++n) // the middle layer of cells along x
      if (n % (N + 1) == 2) w.xyz[3 * n] = w.xyz[3 * (n - 1)];
  }
}

template <class K>
std::vector<Damage> damagesOf() {
  std::vector<Damage> list{{"no extent", &flatten<K>, nullptr, IS_REGULAR<K>}};
  for (const double value : {INFINITE, -INFINITE, NOT_A_NUMBER, TOO_GREAT})
    list.push_back({value == TOO_GREAT ? "coordinate too great" : "coordinate " + std::to_string(value),
                    [value](World& w) { setCoordinate<K>(w, value); },
                    std::is_same_v<K, VolumeRegular> ? CORNERS_NOT_FINITE : NOT_FINITE, IS_REGULAR<K>});
  if constexpr (IS_EXPLICIT<K> || std::is_same_v<K, VolumeHexahedronIjk>) {
    const auto nodes = [](World& w) {
      if constexpr (IS_EXPLICIT<K>)
        return cellsOf<K>(w).nodes[DAMAGED_CELL<K>].data();
      else
        return w.hexahedra.data() + 8 * MIDDLE_CELL;
    };
    for (const std::int64_t id : {std::int64_t(100000), std::int64_t(-1), std::int64_t(64)})
      list.push_back({"node " + std::to_string(id), [=](World& w) { nodes(w)[1] = id; }, OUT_OF_RANGE});
    list.push_back({"repeated node", [=](World& w) { nodes(w)[1] = nodes(w)[0]; }, nullptr});
    const auto setRange = [](World& w, std::size_t begin, std::size_t end) {
      if constexpr (IS_EXPLICIT<K>) {
        cellsOf<K>(w).beginNode = begin;
        cellsOf<K>(w).endNode = end;
      } else {
        w.hexahedraBeginNode = begin;
        w.hexahedraEndNode = end;
      }
    };
    list.push_back({"no nodes", [=](World& w) { setRange(w, 0, 0); }, OUT_OF_RANGE, true});
    list.push_back({"nodes that end before they begin", [=](World& w) { setRange(w, 30, 1); }, OUT_OF_RANGE, true});
  }
  return list;
}

template <class K>
bool isUnseen(const Family<K>& f, const Damage& damage) {
  // A skin looks at no node inside of the mesh. Axes are at the hull too, and a broken corner of one cell tears its
  // faces off those of its neighbours.
  constexpr bool IS_AT_HULL = IS_REGULAR<K> || IS_RECTILINEAR<K> || std::is_same_v<K, VolumeVertexHexahedronIjk>;
  return f.seesHullOnly && damage.text == NOT_FINITE && !IS_AT_HULL;
}

bool contains(const std::string& line, const char* text) { return line.find(text) != std::string::npos; }

void expectOneMessage(const MessageLog& log, const std::string& origin, const std::vector<const char*>& texts) {
  ASSERT_EQ(log.lines.size(), 1u) << (log.lines.size() > 1 ? log.lines[0] + "\n" + log.lines[1] : "");
  EXPECT_EQ(log.lines[0].find(origin + ": "), 0u) << log.lines[0];
  EXPECT_TRUE(std::any_of(texts.begin(), texts.end(), [&](const char* t) { return contains(log.lines[0], t); }))
      << log.lines[0];
}

template <class K>
void expectDamagesAreTold(bool offersArrays) {
  for (const Family<K>& f : familiesOf<K>()) {
    SCOPED_TRACE(std::string(K::NAME) + ", " + f.extractor);
    {
      const MessageLog log;
      Input<K> sound(offersArrays);
      sound.finish();
      EXPECT_GT(f.run(sound), 0u);
      EXPECT_TRUE(log.lines.empty()) << log.lines.front();
    }
    for (const Damage& damage : damagesOf<K>()) {
      SCOPED_TRACE(damage.name);
      Input<K> input(offersArrays);
      damage.apply(input.world);
      input.finish();
      const MessageLog log;
      const std::size_t size = f.run(input);
      if (damage.text && damage.isEverywhere) {
        EXPECT_EQ(size, 0u);
      }
      // What locates points does without axes that do not ascend.
      const bool isLost = damage.isEverywhere || (!log.lines.empty() && contains(log.lines[0], NOT_ASCENDING));
      if (!isLost) {
        EXPECT_GT(size, 0u);
      }

      EXPECT_EQ(Offences::take(), "");
      if (!damage.text || isUnseen(f, damage)) {
        EXPECT_TRUE(log.lines.empty()) << log.lines.front();
        continue;
      }
      expectOneMessage(log, f.extractor + "::" + f.function, {damage.text, NOT_ASCENDING});
    }
  }
}

class BadMesh : public testing::TestWithParam<bool> {};
template <class Kinds>
void expectDamagesOf(bool offersArrays) {
  forEachKind<Kinds>([&](auto kind) { expectDamagesAreTold<decltype(kind)>(offersArrays); });
}
TEST_P(BadMesh, OfAnyVolumeKindIsToldOnceAndTheRestComesOut) { expectDamagesOf<VolumeKinds>(GetParam()); }
TEST_P(BadMesh, OfAnySurfaceKindIsToldOnceAndTheRestComesOut) { expectDamagesOf<SurfaceKinds>(GetParam()); }
TEST_P(BadMesh, OfAnyLineKindIsToldOnceAndTheRestComesOut) { expectDamagesOf<LineKinds>(GetParam()); }

/// Meshes without a cell are no fault; nothing comes out of them.
template <class K>
void expectNothingOfNothing(bool offersArrays) {
  for (const Family<K>& f : familiesOf<K>()) {
    SCOPED_TRACE(std::string(K::NAME) + ", " + f.extractor);
    Input<K> input(offersArrays);
    input.world.counts = {0, 0, 0};
    for (World::Cells* cells : {&input.world.volume, &input.world.surface, &input.world.line}) {
      cells->nodes.clear();
      cells->shapes.clear();
    }
    input.world.hexahedra.clear();
    input.world.corners.clear();
    input.finish();
    const MessageLog log;
    EXPECT_EQ(f.run(input), 0u);
    EXPECT_TRUE(log.lines.empty()) << log.lines.front();
    EXPECT_EQ(Offences::take(), "");
  }
}
TEST_P(BadMesh, WithoutACellGivesNothing) {
  const auto expect = [&](auto kind) { expectNothingOfNothing<decltype(kind)>(GetParam()); };
  forEachKind<VolumeKinds>(expect);
  forEachKind<SurfaceKinds>(expect);
  forEachKind<LineKinds>(expect);
}

/// Sets without a value, and with one too few. Structured forms know no size: only arrays can be too short.
template <class K>
void expectShortSetsAreTold(bool offersArrays) {
  constexpr bool IS_FLAT = std::is_same_v<typename K::Form::template NodeSet<double>, KiDataSetI<double>>;
  if (!IS_FLAT && !offersArrays) return;
  for (const Family<K>& f : familiesOf<K>()) {
    if (!f.readsSet) continue;
    const Counts cells = K::cells(soundWorld());
    const std::size_t needed = IS_FLAT ? soundWorld().numNodes() : (cells[0] + 1) * (cells[1] + 1) * (cells[2] + 1);
    for (const std::size_t size : {std::size_t{0}, needed - 1}) {
      SCOPED_TRACE(std::string(K::NAME) + ", " + f.extractor + ", " + std::to_string(size) + " values");
      Input<K> input(offersArrays);
      input.values.resize(size);
      input.vectors.resize(3 * size);
      input.finish();
      const MessageLog log;
      f.run(input);
      ASSERT_EQ(log.lines.size(), 1u);
      EXPECT_EQ(log.lines[0], f.extractor + "::extract: the set \"set\" has fewer than the " + std::to_string(needed) +
                                  " values that the mesh needs");
      EXPECT_EQ(Offences::take(), "");
    }
  }
}
TEST_P(BadMesh, SetsThatAreTooShortAreToldOnce) {
  const auto expect = [&](auto kind) { expectShortSetsAreTold<decltype(kind)>(GetParam()); };
  forEachKind<VolumeKinds>(expect);
  forEachKind<SurfaceKinds>(expect);
}

std::string accessName(const testing::TestParamInfo<bool>& info) { return info.param ? "Arrays" : "Virtual"; }
INSTANTIATE_TEST_SUITE_P(Access, BadMesh, testing::Values(false, true), accessName);

/// Parameters that mean nothing give nothing, and one message that tells which.
template <class K>
struct BadParameter {
  Family<K> family;
  const char* text;
};

template <class K>
std::vector<BadParameter<K>> badVolumeParameters() {
  using F = typename K::Form;
  using In = const Input<K>&;
  using Polyline = std::vector<Vec3>;
  std::vector<BadParameter<K>> list;
  const auto isosurf = [&](double isovalue, const char* text) {
    list.push_back(
        {family<Isosurf<F>, K>([=](auto& e, In in) -> auto& { return e.extract(isovalue, in.scalarSet(), nullptr); }),
         text});
  };
  isosurf(NOT_A_NUMBER, "the isovalue nan is not finite");
  isosurf(INFINITE, "the isovalue inf is not finite");
  const auto plane = [&](const Vec3& normal, double distance, const char* text) {
    list.push_back(
        {family<PlaneSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(normal, distance, nullptr); }), text});
    if constexpr (SERVES<GridPlaneSlice<F>, K>)
      list.push_back({family<GridPlaneSlice<F>, K>([=](auto& e, In) -> auto& {
                        return e.extract(normal, distance, 0.1, nullptr);
                      }),
                      text});
  };
  plane(Vec3(0.0), 0.5, "the plane's normal has no length");
  plane(OBLIQUE, INFINITE, "the plane's normal or distance is not finite");
  plane({0.0, NOT_A_NUMBER, 1.0}, 0.5, "the plane's normal or distance is not finite");
  if constexpr (SERVES<GridPlaneSlice<F>, K>) {
    const auto step = [&](double value, const char* text) {
      list.push_back(
          {family<GridPlaneSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(OBLIQUE, 0.5, value, nullptr); }),
           text});
    };
    step(0.0, "the step 0 is not a positive number");
    step(-0.1, "the step -0.1 is not a positive number");
    step(NOT_A_NUMBER, "the step nan is not a positive number");
    step(INFINITE, "the step inf is not a positive number");
  }
  const auto sphere = [&](const Vec3& centre, double radius, const char* text) {
    list.push_back(
        {family<SphereSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(centre, radius, nullptr); }), text});
  };
  sphere(MIDDLE, -1.0, "the sphere's radius is negative");
  sphere(MIDDLE, NOT_A_NUMBER, "the sphere's centre or radius is not finite");
  sphere({INFINITE, 0, 0}, 1.0, "the sphere's centre or radius is not finite");
  const auto cylinder = [&](double radius, const Vec3& axis, const char* text) {
    list.push_back(
        {family<CylinderSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(MIDDLE, radius, axis, nullptr); }),
         text});
  };
  cylinder(-0.1, OBLIQUE, "the cylinder's radius is negative");
  cylinder(0.1, Vec3(0.0), "the cylinder's direction has no length");
  cylinder(INFINITE, OBLIQUE, "the cylinder's centre, radius or direction is not finite");
  const auto fence = [&](const Vec3& direction, const Polyline& polyline, const char* text) {
    list.push_back(
        {family<FenceSlice<F>, K>([=](auto& e, In) -> auto& { return e.extract(direction, polyline, nullptr); }),
         text});
  };
  fence(UP, {}, "the polyline is empty");
  fence(UP, {MIDDLE}, "the polyline has fewer than two points that differ across the direction");
  fence(UP, {MIDDLE, MIDDLE + UP}, "the polyline has fewer than two points that differ across the direction");
  fence(UP, {MIDDLE, {NOT_A_NUMBER, 0, 0}}, "the polyline has a point that is not finite");
  fence(Vec3(0.0), {MIDDLE, Vec3(0.0)}, "the direction of the curtain has no finite length");
  if constexpr (SERVES<VolumeCells<F>, K>)
    list.push_back({family<VolumeCells<F>, K>([](auto& e, In) -> auto& { return e.extract(NOT_A_NUMBER, nullptr); }),
                    "the factor nan"});
  if constexpr (requires { typename K::InterpolatedSlice; })
    list.push_back({family<typename K::InterpolatedSlice, K>(
                        [](auto& e, In) -> auto& { return e.extract(KiMesh::DIMENSION_J, NOT_A_NUMBER, nullptr); }),
                    "the position nan along the axis is not a number"});
  return list;
}

template <class K>
std::vector<BadParameter<K>> badSurfaceParameters() {
  using F = typename K::Form;
  using In = const Input<K>&;
  return {
      {family<Isolines<F>, K>(
           [](auto& e, In in) -> auto& { return e.extract({NOT_A_NUMBER}, in.scalarSet(), nullptr); }),
       "the isovalue nan is not finite"},
      {family<ClipLines<F>, K>([](auto& e, In) -> auto& { return e.extract(Vec3(0.0), 0.5, nullptr); }),
       "the plane's normal has no length"},
      {family<ClipLines<F>, K>([](auto& e, In) -> auto& { return e.extract(UP, NOT_A_NUMBER, nullptr); }),
       "the plane's normal or distance is not finite"},

      {family<ClipLines<F>, K>([](auto& e, In) -> auto& { return e.extract(UP, {MIDDLE}, nullptr); }),
       "the polyline has fewer than two points that differ across the direction"},
      {family<SurfaceCells<F>, K>([](auto& e, In) -> auto& { return e.extract(INFINITE, nullptr); }), "the factor inf"},
  };
}

template <class K>
std::vector<BadParameter<K>> badLineParameters() {
  using In = const Input<K>&;
  return {
      {family<KiClipPointExtract, K>([](auto& e, In) -> auto& { return e.extract(Vec3(0.0), 0.5, nullptr); }),
       "the plane's normal has no length"},
      {family<KiClipPointExtract, K>([](auto& e, In) -> auto& { return e.extract(UP, INFINITE, nullptr); }),
       "the plane's normal or distance is not finite"},
      {family<LineCells<K>, K>([](auto& e, In) -> auto& { return e.extract(NOT_A_NUMBER, nullptr); }),
       "the factor nan"},
  };
}

template <class K>
void expectTold(const std::vector<BadParameter<K>>& rows) {
  Input<K> input(true);
  input.finish();
  for (const BadParameter<K>& row : rows) {
    SCOPED_TRACE(std::string(K::NAME) + ", " + row.family.extractor + ", " + row.text);
    const MessageLog log;
    EXPECT_EQ(row.family.run(input), 0u);
    expectOneMessage(log, row.family.extractor + "::extract", {row.text});
  }
}

TEST(BadParameters, OfVolumeFamiliesGiveNothingAndOneMessage) {
  forEachKind<VolumeKinds>([](auto kind) { expectTold(badVolumeParameters<decltype(kind)>()); });
}
TEST(BadParameters, OfSurfaceFamiliesGiveNothingAndOneMessage) {
  forEachKind<SurfaceKinds>([](auto kind) { expectTold(badSurfaceParameters<decltype(kind)>()); });
}
TEST(BadParameters, OfLineFamiliesGiveNothingAndOneMessage) {
  forEachKind<LineKinds>([](auto kind) { expectTold(badLineParameters<decltype(kind)>()); });
}

TEST(BadInput, NodesThatWouldBeRaisedTooFarStayWhereTheyAre) {
  Input<SurfaceUnstructured> input(false);
  input.values[5] = TOO_GREAT;
  input.finish();
  KxElevatedSurfaceExtractUnstructured extractor(input.mesh(), false);
  const KeXSurfaceMeshUnstructured& raised = extractor.extract(2.0, &input.scalarSet(), nullptr);
  EXPECT_EQ(faultOf(raised, {9, 0, 0}), "");
  EXPECT_EQ(raised.getGeometry().getCoord(5)[2], 0.0);
  EXPECT_NEAR(raised.getGeometry().getCoord(6)[2], 2.0 * input.values[6], 1e-6);
}

TEST(BadInput, SurfaceCellsOfNoKnownShapeAreNotProbed) {
  Input<SurfaceUnstructured> input(false);
  input.world.surface.shapes[4] = 5;
  input.finish();
  const auto probe = makeExtractor<KiPointProbeUnstructured>(input.mesh(), false, nullptr);
  const MessageLog log;
  probe->move({0.5, 0.5, 0.0}, nullptr);
  EXPECT_FALSE(probe->isCellFound());
  expectOneMessage(log, "KiPointProbeUnstructured::move", {"cell 4 cannot be read"});
  probe->move({0.9, 0.5, 0.0}, nullptr);
  EXPECT_TRUE(probe->isCellFound());
}

/// An object may be a set in several forms; those that do not suit the mesh are refused, whichever came first.
TEST(BadInput, FormsOfOneSetAreToldApart) {
  using Kind = VolumeHexahedronIjk;
  Input<Kind> input(false);
  input.finish();
  const Set<double> set(DataBinding::PER_NODE, {N + 1, N + 1, N + 1}, input.values, false);
  const auto& flat = static_cast<const KiDataSetI<double>&>(set);
  const auto& structured = static_cast<const KiDataSetIjk<double>&>(set);
  const auto expectFlatOnly = [&](auto& e) {
    EXPECT_NE(e.extractScalarSet(flat), nullptr);
    EXPECT_EQ(e.extractScalarSet(structured), nullptr);
    EXPECT_NE(e.extractScalarSet(flat), nullptr);
  };
  const auto skin = makeExtractor<KiSkinExtractHexahedronIjk>(input.mesh(), false, nullptr);
  skin->extract(nullptr);
  expectFlatOnly(*skin);
  const auto cells = makeExtractor<KiCellExtractHexahedronIjk>(input.mesh(), false, nullptr);
  cells->extract(0.5, nullptr);
  expectFlatOnly(*cells);
  const auto isosurf = makeExtractor<KiIsosurfExtractHexahedronIjk>(input.mesh(), false, nullptr);
  EXPECT_GT(sizeOf(isosurf->extract(1.0, flat, nullptr)), 0u);
  expectFlatOnly(*isosurf);
  const MessageLog log;
  EXPECT_EQ(sizeOf(isosurf->extract(1.0, structured, nullptr)), 0u);
  expectOneMessage(log, "KiIsosurfExtractHexahedronIjk::extract", {"form of addressing that does not suit the mesh"});

  const Set<Vec3> flow(DataBinding::PER_NODE, {N + 1, N + 1, N + 1}, input.vectors, false);
  const auto lines = makeExtractor<KiStreamlineExtractHexahedronIjk>(input.mesh(), false, nullptr);
  lines->extract(static_cast<const KiDataSetI<Vec3>&>(flow), {{0.1, 0.1, 0.1}}, nullptr);
  EXPECT_NE(lines->extractScalarSet(flat)[0], nullptr);
  EXPECT_EQ(lines->extractScalarSet(structured)[0], nullptr);
  EXPECT_EQ(sizeOf(lines->extract(static_cast<const KiDataSetIjk<Vec3>&>(flow), {{0.1, 0.1, 0.1}}, nullptr)), 0u);
}

} // namespace
