// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extractor/MessageLog.h"

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiExtractorCallback.h>
#include <KerrinMesh/KbCellListFilter.h>
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
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

/// Meshes of all volume and surface kinds over one lattice, and plain forms of outputs, for the families that pick
/// faces and edges.
namespace pick {

using Counts = KbIndex<3>;
using Vec3 = KbVec3<double>;

/// A linear function: exact between nodes, whatever the interpolation.
inline double linear(const Vec3& p) { return 1.0 + p[0] + 2.0 * p[1] - 3.0 * p[2]; }

/// Records the calls of an extraction as letters (B e extraction, P p phase, s step); answers no at a chosen question.
class Recorder final : public KiExtractorCallback {
public:
  std::string calls;
  std::array<bool, 3> changes{};
  std::size_t numPhases = 0;
  std::size_t numEmptyPhases = 0; ///< phases that have no step
  std::size_t stopAt = static_cast<std::size_t>(-1);
  std::size_t questions = 0;

  void beginExtract(std::string, bool geometry, bool topology, bool dataSet, std::size_t phases) override {
    calls += 'B';
    changes = {geometry, topology, dataSet};
    numPhases = phases;
  }
  void endExtract() override { calls += 'e'; }
  bool beginPhase(std::size_t, std::string, std::size_t numSteps) override {
    numEmptyPhases += numSteps == 0;
    return ask('P');
  }
  bool endPhase() override { return ask('p'); }
  bool endStep(std::size_t) override { return ask('s'); }
  double getEndStepCallPeriod() override { return 0.0; }
  std::string withoutSteps() const {
    std::string s;
    for (const char c : calls)
      if (c != 's') s += c;
    return s;
  }
  void reset() {
    calls.clear();
    questions = 0;
  }

private:
  bool ask(char call) {
    calls += call;
    return questions++ != stopAt;
  }
};

/// From 0 to 1.
inline std::vector<float> equalSteps(std::size_t count) {
  std::vector<float> x;
  for (std::size_t i = 0; i <= count; ++i)
    x.push_back(static_cast<float>(static_cast<double>(i) / static_cast<double>(std::max<std::size_t>(count, 1))));
  return x;
}

/// The number of each of `count` cells, as values.
inline std::vector<float> numbersOf(std::size_t count) {
  std::vector<float> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0.0f);
  return numbers;
}

/// The lattice arrays, warped where the kind can show it.
struct Lattice {
  Lattice(const Counts& n, double warp, const std::vector<std::uint8_t>& deadCells)
      : counts(n)
      , dead(deadCells)
      , arrays(KbMeshMaker::hexahedra(n, warp, [](const Vec3& p) { return linear(p); }))
      , flat(numbersOf(n[0] * n[1] * n[2])) {}
  Counts counts;
  std::vector<std::uint8_t> dead;
  KbMeshMaker::Arrays arrays;
  std::vector<float> flat; ///< the number of each cell
  Counts nodes() const { return {counts[0] + 1, counts[1] + 1, counts[2] + 1}; }
  std::vector<float> axis(std::size_t a) const { return equalSteps(counts[a]); }
};

/// A form of addressing by so many indices: its sets and filters over a lattice.
template <std::size_t NUM_INDICES, class FilterType, class ScalarSet, class VectorSet, class ListFilter>
struct Form {
  static constexpr bool isStructured = NUM_INDICES > 1;
  using Filter = FilterType;
  using Set = ScalarSet;
  static ScalarSet set(const char* name, DataBinding b, const std::vector<float>& v, const Counts& n) {
    return make<ScalarSet>(name, b, v, n);
  }
  static VectorSet vectors(DataBinding b, const std::vector<float>& v, const Counts& n) {
    return make<VectorSet>("vectors", b, v, n);
  }
  static ListFilter filter(const std::vector<std::size_t>& cells, const Counts& n) {
    std::vector<KbIndex<NUM_INDICES>> list;
    for (const std::size_t c : cells)
      list.push_back(isStructured ? first({c % n[0], c / n[0] % n[1], c / n[0] / n[1]}) : first({c, 0, 0}));
    return ListFilter(list);
  }

private:
  static KbIndex<NUM_INDICES> first(const Counts& index) {
    KbIndex<NUM_INDICES> indices{};
    std::copy_n(index.begin(), NUM_INDICES, indices.begin());
    return indices;
  }
  template <class SetType>
  static SetType make(const char* name, DataBinding b, const std::vector<float>& v, const Counts& n) {
    if constexpr (isStructured)
      return SetType(name, b, v, first(n));
    else
      return SetType(name, b, v);
  }
};
using FormI = Form<1, KiCellFilterI, KbScalarSetI, KbVec3SetI, KbCellListFilterI>;
using FormIj = Form<2, KiCellFilterIj, KbScalarSetIj, KbVec3SetIj, KbCellListFilterIj>;
using FormIjk = Form<3, KiCellFilterIjk, KbScalarSetIjk, KbVec3SetIjk, KbCellListFilterIjk>;

/// A kind of mesh with the forms of its sets. `Arrays` is `Lattice` or `SurfaceLattice`.
template <class Arrays, class Cells, class Nodes>
struct KindOn : Arrays {
  using Arrays::Arrays;
  using CellForm = Cells;
  using NodeForm = Nodes;
};
struct Unstructured : KindOn<Lattice, FormI, FormI> {
  explicit Unstructured(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.03, deadCells)
      , mesh(arrays.coordinates, arrays.cells(), dead) {}
  KbVolumeMeshUnstructured mesh;
};
struct HexahedronIjk : KindOn<Lattice, FormIjk, FormI> {
  explicit HexahedronIjk(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.03, deadCells)
      , mesh(n, arrays.coordinates, arrays.connectivity, dead) {}
  KbVolumeMeshHexahedronIjk mesh;
};
struct VertexHexahedronIjk : KindOn<Lattice, FormIjk, FormIjk> {
  explicit VertexHexahedronIjk(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.0, deadCells)
      , coord(makeCoord())
      , zcorn(makeZcorn())
      , mesh(n, coord, zcorn, dead) {}
  std::vector<float> coord;
  std::vector<float> zcorn;
  KbVolumeMeshVertexHexahedronIjk mesh;

private:
  std::vector<float> makeCoord() const {
    std::vector<float> c;
    const auto x = axis(0);
    const auto y = axis(1);
    for (const float b : y)
      for (const float a : x)
        c.insert(c.end(), {a, b, 0.0f, a, b, 1.0f});
    return c;
  }
  std::vector<float> makeZcorn() const {
    std::vector<float> z;
    const auto levels = axis(2);
    for (std::size_t k = 0; k < 2 * counts[2]; ++k)
      z.insert(z.end(), 4 * counts[0] * counts[1], levels[(k + 1) / 2]);
    return z;
  }
};
struct Regular : KindOn<Lattice, FormIjk, FormIjk> {
  explicit Regular(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.0, deadCells)
      , mesh(n, {0, 0, 0}, {1, 1, 1}, dead) {}
  KbVolumeMeshRegular mesh;
};
struct Rectilinear : KindOn<Lattice, FormIjk, FormIjk> {
  explicit Rectilinear(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.0, deadCells)
      , x(axis(0))
      , y(axis(1))
      , z(axis(2))
      , mesh(x, y, z, dead) {}
  std::vector<float> x, y, z;
  KbVolumeMeshRectilinear mesh;
};
struct Curvilinear : KindOn<Lattice, FormIjk, FormIjk> {
  explicit Curvilinear(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, 0.03, deadCells)
      , mesh(n, arrays.coordinates, dead) {}
  KbVolumeMeshCurvilinear mesh;
};

/// A surface lattice with as many cells as a volume of these counts: its layers lie side by side.
struct SurfaceLattice {
  SurfaceLattice(const Counts& n, bool isFlat, const std::vector<std::uint8_t>& deadCells)
      : counts{n[0], n[1] * n[2], 1}
      , dead(deadCells)
      , arrays(KbMeshMaker::quadrangles({counts[0], counts[1]}, linear))
      , flat(numbersOf(counts[0] * counts[1])) {
    for (std::size_t v = 0; isFlat && v < arrays.values.size(); ++v) {
      float* p = arrays.coordinates.data() + 3 * v;
      p[2] = 0.0f;
      arrays.values[v] = static_cast<float>(linear({static_cast<double>(p[0]), static_cast<double>(p[1]), 0.0}));
    }
  }
  Counts counts;
  std::vector<std::uint8_t> dead;
  KbMeshMaker::Arrays arrays;
  std::vector<float> flat; ///< the number of each cell
  Counts nodes() const { return {counts[0] + 1, counts[1] + 1, 1}; }
  KbIndex<2> cells() const { return {counts[0], counts[1]}; }
  std::vector<float> axis(std::size_t a) const { return equalSteps(counts[a]); }
};
struct SurfaceUnstructured : KindOn<SurfaceLattice, FormI, FormI> {
  explicit SurfaceUnstructured(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, false, deadCells)
      , mesh(arrays.coordinates, arrays.cells(), dead) {}
  KbSurfaceMeshUnstructured mesh;
};
struct SurfaceRegular : KindOn<SurfaceLattice, FormIj, FormIj> {
  explicit SurfaceRegular(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, true, deadCells)
      , mesh(cells(), {0, 0, 0}, {1, 1, 0}, dead) {}
  KbSurfaceMeshRegular mesh;
};
struct SurfaceRectilinear : KindOn<SurfaceLattice, FormIj, FormIj> {
  explicit SurfaceRectilinear(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, true, deadCells)
      , x(axis(0))
      , y(axis(1))
      , mesh(x, y, 0.0, dead) {}
  std::vector<float> x, y;
  KbSurfaceMeshRectilinear mesh;
};
struct SurfaceCurvilinear : KindOn<SurfaceLattice, FormIj, FormIj> {
  explicit SurfaceCurvilinear(const Counts& n, const std::vector<std::uint8_t>& deadCells = {})
      : KindOn(n, false, deadCells)
      , mesh(cells(), arrays.coordinates, dead) {}
  KbSurfaceMeshCurvilinear mesh;
};

/// A kind of mesh with the extractor that serves it, for typed tests.
template <class K, class E>
struct KindOf {
  using Kind = K;
  using Extractor = E;
};

/// An output surface in plain form.
struct Surface {
  std::vector<Vec3> vertices;
  std::vector<std::vector<std::size_t>> polygons;

  explicit Surface(const KeXSurfaceMeshUnstructured& mesh) {
    for (std::size_t v = 0; v < mesh.getGeometry().getNumNodes(); ++v)
      vertices.push_back(mesh.getGeometry().getCoord(v));
    const KiBuffer& buffer = *mesh.getTopology().getIndexBuffer();
    const auto* index = static_cast<const std::int32_t*>(buffer.getData());
    polygons.emplace_back();
    for (std::size_t n = 0; n < buffer.getByteSize() / sizeof(std::int32_t); ++n) {
      if (index[n] >= 0)
        polygons.back().push_back(static_cast<std::size_t>(index[n]));
      else
        polygons.emplace_back();
    }
    polygons.pop_back();
  }

  Vec3 vectorArea(std::size_t p) const {
    const std::vector<std::size_t>& ids = polygons[p];
    Vec3 sum;
    for (std::size_t c = 1; c + 1 < ids.size(); ++c)
      sum += (vertices[ids[c]] - vertices[ids[0]]).cross(vertices[ids[c + 1]] - vertices[ids[0]]);
    return sum * 0.5;
  }
  double area() const {
    double sum = 0.0;
    for (std::size_t p = 0; p < polygons.size(); ++p)
      sum += vectorArea(p).length();
    return sum;
  }
  /// By the divergence theorem; positive when the normals of a closed surface point outwards.
  double volume() const {
    double sum = 0.0;
    for (const std::vector<std::size_t>& ids : polygons)
      for (std::size_t c = 1; c + 1 < ids.size(); ++c)
        sum += vertices[ids[0]].dot(vertices[ids[c]].cross(vertices[ids[c + 1]])) / 6.0;
    return sum;
  }
  /// Edges that are not run through once in each direction.
  std::size_t numOpenEdges() const {
    std::map<std::pair<std::size_t, std::size_t>, int> edges;
    for (const std::vector<std::size_t>& ids : polygons)
      for (std::size_t c = 0; c < ids.size(); ++c) {
        const std::size_t a = ids[c];
        const std::size_t b = ids[(c + 1) % ids.size()];
        edges[std::minmax(a, b)] += a < b ? 1 : -1;
      }
    std::size_t open = 0;
    for (const auto& [edge, balance] : edges)
      open += balance != 0;
    return open;
  }
};

/// All bytes of an output: indices, vertices and input cells.
template <class Mesh>
std::string bytesOf(const Mesh& mesh) {
  std::string bytes;
  for (const KiBuffer* b : {mesh.getTopology().getIndexBuffer(), mesh.getGeometry().getVertexBuffer()})
    if (b->getByteSize() > 0) bytes.append(static_cast<const char*>(b->getData()), b->getByteSize());
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c)
    bytes += ' ' + std::to_string(mesh.getTopology().getInputCellIndexI(c)) + ' ' +
             std::to_string(mesh.getTopology().getInputCellIndexJ(c)) + ' ' +
             std::to_string(mesh.getTopology().getInputCellIndexK(c));
  return bytes;
}

/// The flat number of the input cell of an output cell.
template <class Mesh>
std::size_t inputCell(const Mesh& mesh, std::size_t cell, const Counts& n) {
  const auto& t = mesh.getTopology();
  if (!t.hasStructuredInputCells()) return t.getInputCellIndexI(cell);
  const std::size_t k = t.getInputCellIndexK(cell);
  return t.getInputCellIndexI(cell) +
         n[0] * (t.getInputCellIndexJ(cell) + n[1] * (k == KeXTopologyI::UNDEFINED_INDEX ? 0 : k));
}

} // namespace pick
