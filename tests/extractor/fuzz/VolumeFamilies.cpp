// SPDX-License-Identifier: BSD-3-Clause
// Every family of volume meshes on every kind that it serves.
#include "Case.h"

#include <KerrinExtractor/KiCellExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCellExtractIjk.h>
#include <KerrinExtractor/KiCellExtractUnstructured.h>
#include <KerrinExtractor/KiCylinderSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiLogicalSliceExtractCurvilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRectilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>
#include <KerrinExtractor/KiOutlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiOutlineExtractIjk.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPointProbeHexahedronIjk.h>
#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>

#include "Probing.h"

namespace fuzz {
namespace {

/// The classes of each family for one of the three forms.
struct UnstructuredForm {
  using Filter = KiCellFilterI;
  template <class T>
  using NodeSet = KiDataSetI<T>;
  template <class T>
  using CellSet = KiDataSetI<T>;
  using Isosurf = KiIsosurfExtractUnstructured;
  using Plane = KiPlaneSliceExtractUnstructured;
  using Sphere = KiSphereSliceExtractUnstructured;
  using Cylinder = KiCylinderSliceExtractUnstructured;
  using GridPlane = KiGridPlaneSliceExtractUnstructured;
  using Fence = KiFenceSliceExtractUnstructured;
  using Skin = KiSkinExtractUnstructured;
  using Outline = KiOutlineExtractUnstructured;
  using CellExtract = KiCellExtractUnstructured;
  using Streamline = KiStreamlineExtractUnstructured;
  using Probe = KiPointProbeUnstructured;
};
struct HexahedronForm {
  using Filter = KiCellFilterIjk;
  template <class T>
  using NodeSet = KiDataSetI<T>;
  template <class T>
  using CellSet = KiDataSetIjk<T>;
  using Isosurf = KiIsosurfExtractHexahedronIjk;
  using Plane = KiPlaneSliceExtractHexahedronIjk;
  using Sphere = KiSphereSliceExtractHexahedronIjk;
  using Cylinder = KiCylinderSliceExtractHexahedronIjk;
  using GridPlane = KiGridPlaneSliceExtractHexahedronIjk;
  using Fence = KiFenceSliceExtractHexahedronIjk;
  using Skin = KiSkinExtractHexahedronIjk;
  using Outline = KiOutlineExtractHexahedronIjk;
  using CellExtract = KiCellExtractHexahedronIjk;
  using Streamline = KiStreamlineExtractHexahedronIjk;
  using Probe = KiPointProbeHexahedronIjk;
  using LogicalSlice = KiLogicalSliceExtractHexahedronIjk;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtractHexahedronIjk;
};
struct IjkForm {
  using Filter = KiCellFilterIjk;
  template <class T>
  using NodeSet = KiDataSetIjk<T>;
  template <class T>
  using CellSet = KiDataSetIjk<T>;
  using Isosurf = KiIsosurfExtractIjk;
  using Plane = KiPlaneSliceExtractIjk;
  using Sphere = KiSphereSliceExtractIjk;
  using Cylinder = KiCylinderSliceExtractIjk;
  using GridPlane = KiGridPlaneSliceExtractIjk;
  using Fence = KiFenceSliceExtractIjk;
  using Skin = KiSkinExtractIjk;
  using Outline = KiOutlineExtractIjk;
  using CellExtract = KiCellExtractIjk;
  using Streamline = KiStreamlineExtractIjk;
  using Probe = KiPointProbeIjk;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtract;
};
struct RegularForm : IjkForm {
  using LogicalSlice = KiLogicalSliceExtractRegular;
};
struct RectilinearForm : IjkForm {
  using LogicalSlice = KiLogicalSliceExtractRectilinear;
};
struct CurvilinearForm : IjkForm {
  using LogicalSlice = KiLogicalSliceExtractCurvilinear;
};

template <class Form, class Mesh>
class Volumes {
public:
  Volumes(Case& c, const char* kind, const Mesh& mesh, const Sets& sets, const Counts& cells, const Filter* filter)
      : m_case(c)
      , m_kind(kind)
      , m_mesh(mesh)
      , m_sets(sets)
      , m_cells(cells)
      , m_filter(filter) {
    const World& world = c.world;
    for (std::size_t n = 0; n < world.numNodes(); ++n) {
      const Vec3 p(world.xyz[3 * n], world.xyz[3 * n + 1], world.xyz[3 * n + 2]);
      if (std::isfinite(p.dot(p))) m_places.push_back(p);
    }
    if (m_places.empty()) m_places.push_back({});
  }

  void run() {
    cuts();
    curtains();
    picks();
    paths();
  }

private:
  Random& random() { return m_case.random; }
  /// Somewhere around the mesh.
  Vec3 place() {
    if (random().chance(0.05)) return random().point(-1.0, 1.0);
    const Vec3& a = m_places[random().below(m_places.size())];
    const Vec3& b = m_places[random().below(m_places.size())];
    return random().chance(0.2) ? a : a + (b - a) * random().between(-0.2, 1.2);
  }
  Vec3 direction() {
    if (!random().chance(0.3)) return random().point(-1.0, 1.0);
    Vec3 d(0.0);
    d[random().below(3)] = random().chance(0.5) ? 1.0 : -2.0;
    return d;
  }
  double size() { return (place() - place()).length(); }

  template <class Extractor>
  auto maker(KiTessellator* tessellator) {
    return [this, tessellator](bool isParallel) { return Extractor::getNewInstance(m_mesh, isParallel, tessellator); };
  }
  template <class Make, class Extract>
  void run(const char* family, const Make& make, const Extract& extract) {
    m_case.run(std::string(m_kind) + ", " + family, m_cells, make, extract,
               [this](auto& e, const auto& visit) { m_sets.map(e, visit); });
  }
  const typename Form::Filter* filter(std::size_t variant) const { return variant == 0 ? nullptr : m_filter; }

  void cuts() {
    const double isovalues[2] = {random().number(-1.0, 1.0), random().number(-1.0, 1.0)};
    KiTessellator* tessellator = m_case.tessellator();
    run(
        "isosurface", maker<typename Form::Isosurf>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          const typename Form::template NodeSet<double>& set = m_sets.in<Form::template NodeSet>().nodeScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    run(
        "isosurface of cells", maker<typename Form::Isosurf>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          const typename Form::template CellSet<double>& set = m_sets.in<Form::template CellSet>().cellScalars;
          return e.extract(isovalues[v], set, filter(v));
        });
    const Vec3 normals[2] = {direction(), direction()};
    const Vec3 places[2] = {place(), place()};
    const double distances[2] = {normals[0].normalized().dot(places[0]),
                                 random().chance(0.1) ? random().odd() : normals[1].normalized().dot(places[1])};
    run(
        "plane slice", maker<typename Form::Plane>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(normals[v], distances[v], filter(v));
        });
    const double radii[2] = {size(), random().number(-0.2, 1.0)};
    run(
        "sphere slice", maker<typename Form::Sphere>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(places[v], radii[v], filter(v));
        });
    run(
        "cylinder slice", maker<typename Form::Cylinder>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(places[v], radii[v], normals[v], filter(v));
        });
    if constexpr (!std::is_same_v<Mesh, GridMesh<KiVolumeMeshVertexHexahedronIjk, GridTopology::IJK>>) {
      // Fine grids take long and find nothing more; far too fine ones are refused.
      double extent = 0.0;
      for (const Vec3& p : m_places)
        extent = std::max(extent, (p - m_places.front()).length());
      const double steps[2] = {extent * random().between(0.01, 0.3), random().chance(0.3) ? random().odd() : size()};
      run(
          "grid plane slice", maker<typename Form::GridPlane>(tessellator), [&](auto& e, std::size_t v) -> auto& {
            const double count = 2.0 * extent / steps[v];
            return e.extract(normals[v], distances[v], count > 100.0 && count < 1e6 ? extent / 50.0 : steps[v],
                             filter(v));
          });
    }
    if constexpr (requires(typename Form::Plane & e, const typename Form::Filter* f) {
                    e.extractLines(normals[0], distances[0], f);
                  }) {
      const std::unique_ptr<typename Form::Plane> plane(maker<typename Form::Plane>(tessellator)(false));
      const std::string fault = faultOf(plane->extractLines(normals[0], distances[0], filter(1)), m_cells);
      if (!fault.empty()) m_case.faults.push_back(std::string(m_kind) + ", lines of a plane slice: " + fault);
    }
  }

  void curtains() {
    const Vec3 directions[2] = {direction(), direction()};
    std::vector<Vec3> polylines[2];
    for (std::vector<Vec3>& polyline : polylines) {
      for (std::size_t n = random().below(7); n > 0; --n)
        polyline.push_back(random().chance(0.1) && !polyline.empty() ? polyline[random().below(polyline.size())]
                                                                     : place());
      if (random().chance(0.2) && !polyline.empty()) polyline.push_back(polyline.front());
    }
    run(
        "fence slice", maker<typename Form::Fence>(nullptr), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(directions[v], polylines[v], filter(v));
        });
  }

  void picks() {
    KiTessellator* tessellator = m_case.tessellator();
    run(
        "skin",
        maker<typename Form::Skin>(tessellator), [&](auto& e, std::size_t v) -> auto& { return e.extract(filter(v)); });
    Counts ends[2];
    for (Counts& end : ends)
      for (std::size_t& i : end)
        i = random().chance(0.2) ? static_cast<std::size_t>(-1) : random().below(70);
    run(
        "skin of a range", maker<typename Form::Skin>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          e.clearCellRanges();
          if constexpr (std::is_same_v<Form, UnstructuredForm>)
            e.addCellRange(ends[v][0], ends[1 - v][0]);
          else
            e.addCellRange({ends[v][0] % 4, ends[v][1] % 4, ends[v][2]},
                           {ends[1 - v][0], ends[1 - v][1], ends[1 - v][2]});
          return e.extract(filter(v));
        });
    if constexpr (std::is_same_v<Form, UnstructuredForm>) {
      const std::unique_ptr<typename Form::Skin> skin(maker<typename Form::Skin>(tessellator)(false));
      std::string fault = faultOf(skin->extractLines(filter(1)), m_cells);
      if (fault.empty()) fault = faultOf(skin->extractPoints(filter(0)), m_cells);
      if (!fault.empty()) m_case.faults.push_back(std::string(m_kind) + ", lines or points of a skin: " + fault);
    }
    run(
        "outline", maker<typename Form::Outline>(tessellator), [&](auto& e, std::size_t v) -> auto& {
          return e.extract(filter(v));
        });
    if constexpr (requires { typename Form::LogicalSlice; }) {
      const std::size_t axis = random().below(3);
      const std::size_t indices[2] = {random().below(6), random().chance(0.1) ? static_cast<std::size_t>(-1) : 0};
      const double positions[2] = {random().number(-0.5, 4.5), static_cast<double>(random().below(5))};
      run(
          "logical slice", maker<typename Form::LogicalSlice>(tessellator), [&](auto& e, std::size_t v) -> auto& {
            return e.extract(static_cast<KiMesh::Dimension>(axis), indices[v], v == 1, filter(v));
          });
      run(
          "interpolated slice",
          maker<typename Form::InterpolatedSlice>(tessellator), [&](auto& e, std::size_t v) -> auto& {
            return e.extract(static_cast<KiMesh::Dimension>(axis), positions[v], filter(v));
          });
    }
    if constexpr (!std::is_same_v<Mesh, GridMesh<KiVolumeMeshVertexHexahedronIjk, GridTopology::IJK>>) {
      const double factors[2] = {random().number(0.0, 1.0), random().number(0.0, 1.0)};
      std::vector<std::size_t> list;
      for (std::size_t n = random().below(6); n > 0; --n)
        list.push_back(random().below(40));
      run(
          "cell extract", maker<typename Form::CellExtract>(tessellator), [&](auto& e, std::size_t v) -> auto& {
            if (v == 0) return e.extract(factors[v], filter(v));
            if constexpr (std::is_same_v<Form, UnstructuredForm>) {
              return e.extract(list, factors[v], filter(v));
            } else {
              std::vector<KiCellExtractIjk::triplet> cells;
              for (const std::size_t c : list)
                cells.emplace_back(c % 3, c / 3 % 3, c / 9);
              return e.extract(cells, factors[v], filter(v));
            }
          });
    }
  }

  void paths() {
    if constexpr (!std::is_same_v<Mesh, GridMesh<KiVolumeMeshVertexHexahedronIjk, GridTopology::IJK>>) {
      std::vector<Vec3> seeds;
      for (std::size_t n = random().below(6); n > 0; --n)
        seeds.push_back(place());
      const bool isPerCell = random().chance(0.3);
      const double limits[4] = {random().chance(0.3) ? random().number(0.0, 5.0) : 0.0,
                                random().chance(0.3) ? random().number(0.0, 5.0) : 0.0,
                                random().chance(0.3) ? random().number(0.0, 0.2) : 0.0,
                                random().chance(0.3) ? random().number(-0.1, 1.0) : 0.3};
      const std::size_t numSteps = 1 + random().below(200);
      m_case.run(
          std::string(m_kind) + ", streamlines", m_cells,
          [&](bool isParallel) { return Form::Streamline::getNewInstance(m_mesh, isParallel); },
          [&](auto& e, std::size_t v) -> auto& {
            e.setMaxLifeTime(limits[0]);
            e.setMaxLength(limits[1]);
            e.setMinSpeed(limits[2]);
            e.setIntegrationStepLengthFactor(limits[3]);
            e.setMaxStepNumber(numSteps);
            e.setDirection(v == 0 ? KiStreamlineExtractor::FORWARD : KiStreamlineExtractor::BACKWARD);
            const typename Form::template NodeSet<Vec3>& nodes = m_sets.in<Form::template NodeSet>().nodeVectors;
            const typename Form::template CellSet<Vec3>& cells = m_sets.in<Form::template CellSet>().cellVectors;
            return isPerCell ? e.extract(cells, seeds, filter(v)) : e.extract(nodes, seeds, filter(v));
          },
          [this](auto& e, const auto& visit) { m_sets.map(e, visit); });
      std::vector<Vec3> points;
      for (std::size_t n = 0; n < 20; ++n)
        points.push_back(place());
      probe<typename Form::Probe>(m_case, std::string(m_kind) + ", probe", m_mesh, points, filter(1), m_sets, m_cells);
    }
  }

  Case& m_case;
  const char* m_kind;
  const Mesh& m_mesh;
  const Sets& m_sets;
  Counts m_cells;
  const Filter* m_filter;
  std::vector<Vec3> m_places;
};

template <class Form, class Mesh>
void runKind(Case& c, const char* kind, const Mesh& mesh, std::size_t numNodes, std::size_t numCells,
             const Counts& cells) {
  const Counts nodeDims{c.world.counts[0] + 1, c.world.counts[1] + 1, c.world.counts[2] + 1};
  const Sets sets(c.random, c.world, numNodes, nodeDims, numCells, c.world.counts);
  const Filter filter(c.random, numCells, c.world.counts);
  Volumes<Form, Mesh>(c, kind, mesh, sets, cells, c.random.chance(0.5) ? &filter : nullptr).run();
}

} // namespace

void Case::runVolumes() {
  const Counts& n = world.counts;
  const std::size_t numGridNodes = (n[0] + 1) * (n[1] + 1) * (n[2] + 1);
  switch (random.below(6)) {
  case 0:
  default: {
    const ExplicitMesh<KiVolumeMeshUnstructured, VolumeTopology> mesh(world, world.volume);
    const std::size_t numCells = world.volume.nodes.size();
    runKind<UnstructuredForm>(*this, "unstructured", mesh, world.volume.endNode, numCells, {numCells, 0, 0});
    break;
  }
  case 1: {
    const GridMesh<KiVolumeMeshHexahedronIjk, GridTopology::HEXAHEDRA> mesh(world);
    runKind<HexahedronForm>(*this, "hexahedron Ijk", mesh, world.numNodes(), world.numCells(), n);
    break;
  }
  case 2: {
    const GridMesh<KiVolumeMeshVertexHexahedronIjk, GridTopology::IJK> mesh(world);
    runKind<IjkForm>(*this, "vertex hexahedron", mesh, numGridNodes, world.numCells(), n);
    break;
  }
  case 3: {
    const GridMesh<KiVolumeMeshRegular, GridTopology::IJK> mesh(world);
    runKind<RegularForm>(*this, "regular", mesh, numGridNodes, world.numCells(), n);
    break;
  }
  case 4: {
    const GridMesh<KiVolumeMeshRectilinear, GridTopology::IJK> mesh(world);
    runKind<RectilinearForm>(*this, "rectilinear", mesh, numGridNodes, world.numCells(), n);
    break;
  }
  case 5: {
    const GridMesh<KiVolumeMeshCurvilinear, GridTopology::IJK> mesh(world);
    runKind<CurvilinearForm>(*this, "curvilinear", mesh, numGridNodes, world.numCells(), n);
    break;
  }
  }
}

} // namespace fuzz
