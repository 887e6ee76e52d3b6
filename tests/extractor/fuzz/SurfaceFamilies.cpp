// SPDX-License-Identifier: BSD-3-Clause
// Every family of surface and line meshes on every kind that it serves.
#include "Case.h"

#include <KerrinExtractor/KiCellExtractIj.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiLineCellExtractI.h>
#include <KerrinExtractor/KiLineCellExtractUnstructured.h>
#include <KerrinExtractor/KiLineExtract.h>
#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiPointProbeIj.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinExtractor/KiTessellatedSurfaceExtract.h>
#include <KerrinExtractor/KxElevatedSurfaceExtractUnstructured.h>

#include "Probing.h"

namespace fuzz {
namespace {

struct UnstructuredForm {
  using Filter = KiCellFilterI;
  template <class T>
  using SetForm = KiDataSetI<T>;
  using Surface = KiSurfaceExtractUnstructured;
  using Isoline = KiIsolineExtractUnstructured;
  using ClipLine = KiClipLineExtractUnstructured;
  using Outline = KiOutlineExtractUnstructured;
  using CellExtract = KiCellExtractUnstructured;
  using Probe = KiPointProbeUnstructured;
};
struct IjForm {
  using Filter = KiCellFilterIj;
  template <class T>
  using SetForm = KiDataSetIj<T>;
  using Surface = KiSurfaceExtractIj;
  using Isoline = KiIsolineExtractIj;
  using ClipLine = KiClipLineExtractIj;
  using Outline = KiOutlineExtractIj;
  using CellExtract = KiCellExtractIj;
  using Probe = KiPointProbeIj;
};

/// What surfaces and lines share.
template <class Mesh>
class Kind {
public:
  Kind(Case& c, const char* kind, const Mesh& mesh, const Sets& sets, const Counts& cells, const Filter* filter)
      : m_case(c)
      , m_kind(kind)
      , m_mesh(mesh)
      , m_sets(sets)
      , m_cells(cells)
      , m_filter(filter) {}

protected:
  Random& random() { return m_case.random; }
  Vec3 place() {
    const World& world = m_case.world;
    const auto node = [&] {
      const std::size_t n = random().below(world.numNodes());
      return Vec3(world.xyz[3 * n], world.xyz[3 * n + 1], world.xyz[3 * n + 2]);
    };
    if (random().chance(0.05)) return random().point(-1.0, 1.0);
    const Vec3 a = node();
    return random().chance(0.3) ? a : a + (node() - a) * random().between(-0.2, 1.2);
  }
  template <class Make, class Extract>
  void run(const char* family, const Make& make, const Extract& extract) {
    m_case.run(std::string(m_kind) + ", " + family, m_cells, make, extract,
               [this](auto& e, const auto& visit) { m_sets.map(e, visit); });
  }
  template <class Extractor>
  auto maker(KiTessellator* tessellator) {
    return [this, tessellator](bool isParallel) { return Extractor::getNewInstance(m_mesh, isParallel, tessellator); };
  }

  Case& m_case;
  const char* m_kind;
  const Mesh& m_mesh;
  const Sets& m_sets;
  Counts m_cells;
  const Filter* m_filter;
};

template <class Form, class Mesh>
class Surfaces : Kind<Mesh> {
public:
  using Kind<Mesh>::Kind;

  void run() {
    KiTessellator* tessellator = m_case.tessellator();
    Kind<Mesh>::run(
        "surface", this->template maker<typename Form::Surface>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(filter(v));
        });
    Kind<Mesh>::run(
        "outline", this->template maker<typename Form::Outline>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(filter(v));
        });
    const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
    Kind<Mesh>::run(
        "cell extract",
        this->template maker<typename Form::CellExtract>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(factors[v], filter(v));
        });
    cuts(tessellator);
    if constexpr (std::is_same_v<Form, UnstructuredForm>) explicitOnes(tessellator);
    std::vector<Vec3> points;
    for (std::size_t n = 0; n < 20; ++n)
      points.push_back(this->place());
    probe<typename Form::Probe>(m_case, std::string(m_kind) + ", probe", m_mesh, points, filter(1), m_sets, m_cells);
  }

private:
  using Kind<Mesh>::m_case;
  using Kind<Mesh>::m_kind;
  using Kind<Mesh>::m_mesh;
  using Kind<Mesh>::m_sets;
  using Kind<Mesh>::m_cells;
  using Kind<Mesh>::random;
  const typename Form::Filter* filter(std::size_t variant) const { return variant == 0 ? nullptr : this->m_filter; }

  void cuts(KiTessellator* tessellator) {
    std::vector<double> isovalues[2];
    for (std::vector<double>& values : isovalues)
      for (std::size_t n = random().below(5); n > 0; --n)
        values.push_back(random().number(-1.0, 1.0));
    const bool isPerCell = random().chance(0.3);
    Kind<Mesh>::run(
        "isolines", [&](bool isParallel) { return Form::Isoline::getNewInstance(m_mesh, isParallel); },
        [&](auto& e, std::size_t v) -> auto& {
          const SetGroup& sets = m_sets.template in<Form::template SetForm>();
          const typename Form::template SetForm<double>& set = isPerCell ? sets.cellScalars : sets.nodeScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    const Vec3 normal = random().point(-1.0, 1.0);
    const double distance = normal.normalized().dot(this->place());
    std::vector<Vec3> polyline;
    for (std::size_t n = random().below(6); n > 0; --n)
      polyline.push_back(this->place());
    Kind<Mesh>::run(
        "clip lines", this->template maker<typename Form::ClipLine>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return v == 0 ? e.extract(normal, distance, filter(v)) : e.extract(normal, polyline, filter(v));
        });
  }

  void explicitOnes(KiTessellator* tessellator) {
    const double factor = random().number(-1.0, 1.0);
    const SetGroup& sets = m_sets.template in<KiDataSetI>();
    const KiDataSetI<double>* heights = random().chance(0.5) ? &sets.nodeScalars : &sets.cellScalars;
    Kind<Mesh>::run(
        "elevated surface",
        [&](bool isParallel) { return new KxElevatedSurfaceExtractUnstructured(m_mesh, isParallel); },
        [&](auto& e, std::size_t v) -> auto& { return e.extract(factor, v == 0 ? heights : nullptr, filter(v)); });
    Kind<Mesh>::run(
        "tessellated surface",
        [&](bool isParallel) { return KiTessellatedSurfaceExtract::getNewInstance(m_mesh, isParallel); },
        [&](auto& e, std::size_t v) -> auto& { return e.extract(v == 0 ? tessellator : nullptr, filter(v)); });
    const std::unique_ptr<KiSurfaceExtractUnstructured> surface(
        KiSurfaceExtractUnstructured::getNewInstance(m_mesh, false, tessellator));
    std::string fault = faultOf(surface->extractLines(tessellator, filter(1)), m_cells);
    if (fault.empty()) fault = faultOf(surface->extractPoints(filter(0)), m_cells);
    if (fault.empty()) fault = Offences::take();
    if (!fault.empty()) m_case.faults.push_back(std::string(m_kind) + ", lines or points of a surface: " + fault);
  }
};

template <class Mesh>
class Lines : Kind<Mesh> {
public:
  using Kind<Mesh>::Kind;

  void run() {
    KiTessellator* tessellator = m_case.tessellator();
    const KiCellFilterI* filters[2] = {nullptr, this->m_filter};
    const Vec3 normals[2] = {random().point(-1.0, 1.0), random().point(-1.0, 1.0)};
    const double distances[2] = {normals[0].normalized().dot(this->place()), random().odd()};
    Kind<Mesh>::run(
        "clip points", this->template maker<KiClipPointExtract>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(normals[v], distances[v], filters[v]);
        });
    const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
    const auto cells = [&](auto& e, std::size_t v) -> auto& { return e.extract(factors[v], filters[v]); };
    if constexpr (std::is_base_of_v<KiLineMeshUnstructured, Mesh>) {
      Kind<Mesh>::run("line cells", this->template maker<KiLineCellExtractUnstructured>(tessellator), cells);
      Kind<Mesh>::run(
          "tessellated lines",
          [&](bool isParallel) { return KiTessellatedLineExtract::getNewInstance(this->m_mesh, isParallel); },
          [&](auto& e, std::size_t v) -> auto& { return e.extract(v == 0 ? tessellator : nullptr, filters[v]); });
    } else {
      Kind<Mesh>::run("line cells", this->template maker<KiLineCellExtractI>(tessellator), cells);
      Kind<Mesh>::run(
          "lines", this->template maker<KiLineExtract>(tessellator), [&](auto& e, std::size_t v) -> auto& {
            return e.extract(filters[v]);
          });
    }
  }

private:
  using Kind<Mesh>::m_case;
  using Kind<Mesh>::random;
};

} // namespace

void Case::runSurfaces() {
  const Counts cells{world.counts[0], world.counts[1], 0};
  const Counts cellDims{world.counts[0], world.counts[1], 1};
  const Counts nodeDims{world.counts[0] + 1, world.counts[1] + 1, 1};
  const std::size_t numCells = cells[0] * cells[1];
  const std::size_t kind = random.below(4);
  if (kind == 0) {
    const std::size_t count = world.surface.nodes.size();
    const Sets sets(random, world, world.surface.endNode, nodeDims, count, cellDims);
    const Filter filter(random, count, cellDims);
    const ExplicitMesh<KiSurfaceMeshUnstructured, SurfaceTopology> mesh(world, world.surface);
    Surfaces<UnstructuredForm, ExplicitMesh<KiSurfaceMeshUnstructured, SurfaceTopology>>(
        *this, "unstructured surface", mesh, sets, {count, 0, 0}, random.chance(0.5) ? &filter : nullptr)
        .run();
    return;
  }
  const Sets sets(random, world, nodeDims[0] * nodeDims[1], nodeDims, numCells, cellDims);
  const Filter filter(random, numCells, cellDims);
  const Filter* chosen = random.chance(0.5) ? &filter : nullptr;
  const auto runOn = [&](const char* name, const auto& mesh) {
    Surfaces<IjForm, std::decay_t<decltype(mesh)>>(*this, name, mesh, sets, cells, chosen).run();
  };
  if (kind == 1) runOn("regular surface", GridMesh<KiSurfaceMeshRegular, GridTopology::IJ>(world));
  if (kind == 2) runOn("rectilinear surface", GridMesh<KiSurfaceMeshRectilinear, GridTopology::IJ>(world));
  if (kind == 3) runOn("curvilinear surface", GridMesh<KiSurfaceMeshCurvilinear, GridTopology::IJ>(world));
}

void Case::runLines() {
  const std::size_t kind = random.below(3);
  const std::size_t count = kind == 0 ? world.line.nodes.size() : world.counts[0];
  const std::size_t numNodes = kind == 0 ? world.line.endNode : count + 1;
  const Sets sets(random, world, numNodes, Counts{numNodes, 1, 1}, count, Counts{count, 1, 1});
  const Filter filter(random, count, {count, 1, 1});
  const auto runOn = [&](const char* name, const auto& mesh) {
    Lines<std::decay_t<decltype(mesh)>>(*this, name, mesh, sets, {count, 0, 0}, random.chance(0.5) ? &filter : nullptr)
        .run();
  };
  if (kind == 0) runOn("unstructured line", ExplicitMesh<KiLineMeshUnstructured, LineTopology>(world, world.line));
  if (kind == 1) runOn("regular line", GridMesh<KiLineMeshRegular, GridTopology::I>(world));
  if (kind == 2) runOn("curvilinear line", GridMesh<KiLineMeshCurvilinear, GridTopology::I>(world));
}

} // namespace fuzz
