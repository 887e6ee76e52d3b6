// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "World.h"

#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractCurvilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRectilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>

#include <tuple>
#include <type_traits>

/// The mesh kinds over a world, and in which form each takes its filters and sets.
namespace fuzz {

/// How a family's interfaces address nodes and cells. `COLUMN` is the place of its class among those of a family.
template <std::size_t COLUMN_, class Filter_, template <class> class NodeSet_, template <class> class CellSet_>
struct Form {
  static constexpr std::size_t COLUMN = COLUMN_;
  using Filter = Filter_;
  template <class T>
  using NodeSet = NodeSet_<T>;
  template <class T>
  using CellSet = CellSet_<T>;
};
using FormI = Form<0, KiCellFilterI, KiDataSetI, KiDataSetI>;
using FormIj = Form<1, KiCellFilterIj, KiDataSetIj, KiDataSetIj>;
using FormHexahedronIjk = Form<1, KiCellFilterIjk, KiDataSetI, KiDataSetIjk>;
using FormIjk = Form<2, KiCellFilterIjk, KiDataSetIjk, KiDataSetIjk>;

/// The class that serves a form: `Classes` are those of a family, the one for unstructured meshes first.
template <class Form, class... Classes>
using ClassOf = std::tuple_element_t<Form::COLUMN, std::tuple<Classes...>>;

/// A kind of explicit cells: those of a world that `CELLS` points to.
template <class Interface, class Topology, World::Cells World::*CELLS>
struct ExplicitKind {
  using Mesh = ExplicitMesh<Interface, Topology>;
  using Form = FormI;
  static Mesh make(const World& world) { return Mesh(world, world.*CELLS); }
  static std::size_t numNodes(const World& world) { return (world.*CELLS).endNode; }
  static Counts cells(const World& world) { return {(world.*CELLS).nodes.size(), 0, 0}; }
};

/// A kind of structured cells.
template <class Interface, GridTopology::Form GRID, class FormType>
struct GridKind {
  using Mesh = GridMesh<Interface, GRID>;
  using Form = FormType;
  static Mesh make(const World& world) { return Mesh(world); }
  static std::size_t numNodes(const World& world) {
    if (GRID == GridTopology::HEXAHEDRA) return world.numNodes();
    const Counts n = nodeCounts(cells(world));
    return n[0] * n[1] * n[2];
  }
  /// Numbers of cells; 0 along axes that the kind has not.
  static Counts cells(const World& world) {
    Counts n = world.counts;
    if (GRID == GridTopology::IJ || GRID == GridTopology::I) n[2] = 0;
    if (GRID == GridTopology::I) n[1] = 0;
    return n;
  }
  static Counts nodeCounts(const Counts& cells) { return {cells[0] + 1, cells[1] + 1, cells[2] + 1}; }
};

struct VolumeUnstructured : ExplicitKind<KiVolumeMeshUnstructured, VolumeTopology, &World::volume> {
  static constexpr const char* NAME = "unstructured volume";
};
struct VolumeHexahedronIjk : GridKind<KiVolumeMeshHexahedronIjk, GridTopology::HEXAHEDRA, FormHexahedronIjk> {
  static constexpr const char* NAME = "hexahedron Ijk";
  using LogicalSlice = KiLogicalSliceExtractHexahedronIjk;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtractHexahedronIjk;
};
struct VolumeVertexHexahedronIjk : GridKind<KiVolumeMeshVertexHexahedronIjk, GridTopology::IJK, FormIjk> {
  static constexpr const char* NAME = "vertex hexahedron";
};
struct VolumeRegular : GridKind<KiVolumeMeshRegular, GridTopology::IJK, FormIjk> {
  static constexpr const char* NAME = "regular volume";
  using LogicalSlice = KiLogicalSliceExtractRegular;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtract;
};
struct VolumeRectilinear : GridKind<KiVolumeMeshRectilinear, GridTopology::IJK, FormIjk> {
  static constexpr const char* NAME = "rectilinear volume";
  using LogicalSlice = KiLogicalSliceExtractRectilinear;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtract;
};
struct VolumeCurvilinear : GridKind<KiVolumeMeshCurvilinear, GridTopology::IJK, FormIjk> {
  static constexpr const char* NAME = "curvilinear volume";
  using LogicalSlice = KiLogicalSliceExtractCurvilinear;
  using InterpolatedSlice = KiInterpolatedLogicalSliceExtract;
};
struct SurfaceUnstructured : ExplicitKind<KiSurfaceMeshUnstructured, SurfaceTopology, &World::surface> {
  static constexpr const char* NAME = "unstructured surface";
};
struct SurfaceRegular : GridKind<KiSurfaceMeshRegular, GridTopology::IJ, FormIj> {
  static constexpr const char* NAME = "regular surface";
};
struct SurfaceRectilinear : GridKind<KiSurfaceMeshRectilinear, GridTopology::IJ, FormIj> {
  static constexpr const char* NAME = "rectilinear surface";
};
struct SurfaceCurvilinear : GridKind<KiSurfaceMeshCurvilinear, GridTopology::IJ, FormIj> {
  static constexpr const char* NAME = "curvilinear surface";
};
struct LineUnstructured : ExplicitKind<KiLineMeshUnstructured, LineTopology, &World::line> {
  static constexpr const char* NAME = "unstructured line";
};
struct LineRegular : GridKind<KiLineMeshRegular, GridTopology::I, FormI> {
  static constexpr const char* NAME = "regular line";
};
struct LineCurvilinear : GridKind<KiLineMeshCurvilinear, GridTopology::I, FormI> {
  static constexpr const char* NAME = "curvilinear line";
};

using VolumeKinds = std::tuple<VolumeUnstructured, VolumeHexahedronIjk, VolumeVertexHexahedronIjk, VolumeRegular,
                               VolumeRectilinear, VolumeCurvilinear>;
using SurfaceKinds = std::tuple<SurfaceUnstructured, SurfaceRegular, SurfaceRectilinear, SurfaceCurvilinear>;
using LineKinds = std::tuple<LineUnstructured, LineRegular, LineCurvilinear>;

template <class K, class Kinds>
inline constexpr bool IS_AMONG = false;
template <class K, class... Kinds>
inline constexpr bool IS_AMONG<K, std::tuple<Kinds...>> = (std::is_same_v<K, Kinds> || ...);

/// Calls `visit(Kind())` for each kind of a list.
template <class Kinds, class Visit>
void forEachKind(const Visit& visit) {
  std::apply([&](const auto&... kinds) { (visit(kinds), ...); }, Kinds());
}

} // namespace fuzz
