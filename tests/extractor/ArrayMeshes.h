// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Small meshes over plain memory, each in two forms: one that offers its arrays, and one that has nothing but the
/// virtual operations, as an application's own classes would.
namespace arrays {

enum class Access { RAW, VIRTUAL };

struct NoArrays {};
template <Access A>
using RawBase = std::conditional_t<A == Access::RAW, KiRawArrays, NoArrays>;

template <class T>
KiRawArray raw(const T* data, std::size_t size) {
  constexpr KiRawArray::Type type = std::is_same_v<T, float>          ? KiRawArray::FLOAT32
                                    : std::is_same_v<T, double>       ? KiRawArray::FLOAT64
                                    : std::is_same_v<T, std::uint8_t> ? KiRawArray::UINT8
                                    : sizeof(T) == 4                  ? KiRawArray::INT32
                                                                      : KiRawArray::INT64;
  KiRawArray array;
  array.data = data;
  array.size = size;
  array.type = type;
  return array;
}

struct Stamped {
  std::size_t stamp = KxTimeStamp::getTimeStamp();
  void touch() { stamp = KxTimeStamp::getTimeStamp(); }
};

template <class T>
struct Span {
  const T* data = nullptr;
  std::size_t size = 0;
  Span() = default;
  Span(const T* d, std::size_t s)
      : data(d)
      , size(s) {}
  Span(const std::vector<T>& v)
      : data(v.data())
      , size(v.size()) {} // NOLINT(google-explicit-constructor)
};

template <Access A, class Real>
class Geometry final : public KiGeometryI, public KiGeometryIjk, public RawBase<A>, public Stamped {
public:
  Geometry(Span<Real> coordinates, std::array<std::size_t, 3> nodes = {})
      : m_xyz(coordinates)
      , m_nodes(nodes) {}
  std::size_t getTimeStamp() const override { return stamp; }
  KbVec3<double> getCoord(std::size_t n) const override {
    const Real* p = m_xyz.data + 3 * n;
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
  KbVec3<double> getCoord(std::size_t i, std::size_t j, std::size_t k) const override {
    return getCoord(i + m_nodes[0] * (j + m_nodes[1] * k));
  }
  KiRawArray getRawArray(KiRawArrays::Role role) const {
    return role == KiRawArrays::COORDINATES ? raw(m_xyz.data, m_xyz.size) : KiRawArray{};
  }

private:
  Span<Real> m_xyz;
  std::array<std::size_t, 3> m_nodes;
};

/// Explicit cells; `offsets` may be empty when all cells have one shape. Polyhedra take their faces from `facets`.
template <class Index>
struct CellArrays {
  Span<Index> connectivity;
  Span<Index> offsets;
  Span<std::uint8_t> shapes;
  std::size_t numCells = 0;
  std::size_t numNodes = 0;
  Span<std::uint8_t> dead;
  std::vector<std::vector<std::vector<std::size_t>>> facets;
};

/// A cell that reads its nodes in place.
template <class Index>
class CellOf final : public KiVolumeCell {
public:
  Shape shape = HEXAHEDRON;
  std::size_t numNodes = 0;
  const Index* nodes = nullptr;
  const std::vector<std::vector<std::size_t>>* facets = nullptr;

  Shape getShape() const override { return shape; }
  std::size_t getNumNodes() const override { return numNodes; }
  std::size_t getNodeIndex(std::size_t local) const override { return static_cast<std::size_t>(nodes[local]); }
  std::size_t getNumFacets() const override {
    return shape == POLYHEDRON && facets ? facets->size() : KiVolumeCell::getNumFacets();
  }
  void getFacet(std::size_t f, std::vector<std::size_t>& local) const override {
    if (shape == POLYHEDRON && facets)
      local = (*facets)[f];
    else
      KiVolumeCell::getFacet(f, local);
  }
};

template <Access A, class Index>
class Topology final : public KiVolumeTopologyExplicitI, public RawBase<A>, public Stamped {
public:
  explicit Topology(CellArrays<Index> cells)
      : m_cells(std::move(cells)) {}
  std::size_t getTimeStamp() const override { return stamp; }
  std::size_t getNumCells() const override { return m_cells.numCells; }
  std::size_t getEndNodeId() const override { return m_cells.numNodes; }
  bool hasDeadCells() const override { return m_cells.dead.size > 0; }
  bool isDead(std::size_t c) const override { return m_cells.dead.size > 0 && m_cells.dead.data[c] != 0; }
  const KiVolumeCell* getCell(std::size_t c) const override {
    if (c >= m_cells.numCells) return nullptr;
    thread_local CellOf<Index> cell;
    const std::size_t stride = m_cells.connectivity.size / m_cells.numCells;
    const std::size_t begin = m_cells.offsets.size > 0 ? static_cast<std::size_t>(m_cells.offsets.data[c]) : c * stride;
    const std::size_t end =
        m_cells.offsets.size > 0 ? static_cast<std::size_t>(m_cells.offsets.data[c + 1]) : begin + stride;
    cell.shape = static_cast<KiVolumeCell::Shape>(m_cells.shapes.data[m_cells.shapes.size == 1 ? 0 : c]);
    cell.numNodes = end - begin;
    cell.nodes = m_cells.connectivity.data + begin;
    cell.facets = c < m_cells.facets.size() ? &m_cells.facets[c] : nullptr;
    return &cell;
  }
  KiRawArray getRawArray(KiRawArrays::Role role) const {
    switch (role) {
    case KiRawArrays::CONNECTIVITY:
      return raw(m_cells.connectivity.data, m_cells.connectivity.size);
    case KiRawArrays::OFFSETS:
      return m_cells.offsets.size > 0 ? raw(m_cells.offsets.data, m_cells.offsets.size) : KiRawArray{};
    case KiRawArrays::SHAPES:
      return raw(m_cells.shapes.data, m_cells.shapes.size);
    case KiRawArrays::DEAD:
      return m_cells.dead.size > 0 ? raw(m_cells.dead.data, m_cells.dead.size) : KiRawArray{};
    default:
      return {};
    }
  }

private:
  CellArrays<Index> m_cells;
};

template <Access A, class Index, class Real>
class UnstructuredMesh final : public KiVolumeMeshUnstructured {
public:
  UnstructuredMesh(Span<Real> coordinates, CellArrays<Index> cells)
      : geometry(coordinates)
      , topology(std::move(cells)) {}
  const KiVolumeTopologyExplicitI& getTopology() const override { return topology; }
  const KiGeometryI& getGeometry() const override { return geometry; }
  Geometry<A, Real> geometry;
  Topology<A, Index> topology;
};

using Counts = std::array<std::size_t, 3>;

/// (i, j, k) cells; as a hexahedron topology it also lists the nodes.
template <Access A>
class GridTopology final : public KiHexahedronTopologyExplicitIjk, public RawBase<A>, public Stamped {
public:
  GridTopology(Counts cells, Span<std::uint8_t> dead, Span<std::int32_t> connectivity = {}, std::size_t numNodes = 0)
      : m_cells(cells)
      , m_dead(dead)
      , m_connectivity(connectivity)
      , m_numNodes(numNodes) {}
  std::size_t getTimeStamp() const override { return stamp; }
  std::size_t getNumCellsI() const override { return m_cells[0]; }
  std::size_t getNumCellsJ() const override { return m_cells[1]; }
  std::size_t getNumCellsK() const override { return m_cells[2]; }
  bool hasDeadCells() const override { return m_dead.size > 0; }
  bool isDead(std::size_t i, std::size_t j, std::size_t k) const override {
    return m_dead.size > 0 && m_dead.data[flat(i, j, k)] != 0;
  }
  void getCellNodeIds(std::size_t i, std::size_t j, std::size_t k, std::size_t ids[8]) const override {
    for (std::size_t c = 0; c < 8; ++c)
      ids[c] = static_cast<std::size_t>(m_connectivity.data[8 * flat(i, j, k) + c]);
  }
  std::size_t getEndNodeId() const override { return m_numNodes; }
  KiRawArray getRawArray(KiRawArrays::Role role) const {
    if (role == KiRawArrays::DEAD && m_dead.size > 0) return raw(m_dead.data, m_dead.size);
    if (role == KiRawArrays::CONNECTIVITY && m_connectivity.size > 0)
      return raw(m_connectivity.data, m_connectivity.size);
    return {};
  }

private:
  std::size_t flat(std::size_t i, std::size_t j, std::size_t k) const { return i + m_cells[0] * (j + m_cells[1] * k); }
  Counts m_cells;
  Span<std::uint8_t> m_dead;
  Span<std::int32_t> m_connectivity;
  std::size_t m_numNodes;
};

class RegularGeometry final : public KiGeometryRegular, public Stamped {
public:
  RegularGeometry(const KbVec3<double>& low, const KbVec3<double>& high)
      : m_low(low)
      , m_high(high) {}
  std::size_t getTimeStamp() const override { return stamp; }
  KbVec3<double> getMin() const override { return m_low; }
  KbVec3<double> getMax() const override { return m_high; }

private:
  KbVec3<double> m_low;
  KbVec3<double> m_high;
};

template <Access A>
class RegularMesh final : public KiVolumeMeshRegular {
public:
  RegularMesh(Counts cells, const KbVec3<double>& low, const KbVec3<double>& high, Span<std::uint8_t> dead = {})
      : topology(cells, dead)
      , geometry(low, high) {}
  const KiTopologyIjk& getTopology() const override { return topology; }
  const KiGeometryRegular& getGeometry() const override { return geometry; }
  GridTopology<A> topology;
  RegularGeometry geometry;
};

class RectilinearGeometry final : public KiVolumeGeometryRectilinear, public Stamped {
public:
  explicit RectilinearGeometry(std::array<std::vector<double>, 3> axes)
      : m_axes(std::move(axes)) {}
  std::size_t getTimeStamp() const override { return stamp; }
  double getX(std::size_t i) const override { return m_axes[0][i]; }
  double getY(std::size_t j) const override { return m_axes[1][j]; }
  double getZ(std::size_t k) const override { return m_axes[2][k]; }

private:
  std::array<std::vector<double>, 3> m_axes;
};

template <Access A>
class RectilinearMesh final : public KiVolumeMeshRectilinear {
public:
  RectilinearMesh(Counts cells, std::array<std::vector<double>, 3> axes, Span<std::uint8_t> dead = {})
      : topology(cells, dead)
      , geometry(std::move(axes)) {}
  const KiTopologyIjk& getTopology() const override { return topology; }
  const KiVolumeGeometryRectilinear& getGeometry() const override { return geometry; }
  GridTopology<A> topology;
  RectilinearGeometry geometry;
};

template <Access A, class Real>
class CurvilinearMesh final : public KiVolumeMeshCurvilinear {
public:
  CurvilinearMesh(Counts cells, Span<Real> coordinates, Span<std::uint8_t> dead = {})
      : topology(cells, dead)
      , geometry(coordinates, {cells[0] + 1, cells[1] + 1, cells[2] + 1}) {}
  const KiTopologyIjk& getTopology() const override { return topology; }
  const KiGeometryIjk& getGeometry() const override { return geometry; }
  GridTopology<A> topology;
  Geometry<A, Real> geometry;
};

template <Access A, class Real>
class HexahedronIjkMesh final : public KiVolumeMeshHexahedronIjk {
public:
  HexahedronIjkMesh(Counts cells, Span<Real> coordinates, Span<std::int32_t> connectivity, Span<std::uint8_t> dead = {})
      : topology(cells, dead, connectivity, coordinates.size / 3)
      , geometry(coordinates) {}
  const KiHexahedronTopologyExplicitIjk& getTopology() const override { return topology; }
  const KiGeometryI& getGeometry() const override { return geometry; }
  GridTopology<A> topology;
  Geometry<A, Real> geometry;
};

/// Corners by a function of the cell and the corner number.
class CornerGeometry final : public KiGeometryHexahedronIjk, public Stamped {
public:
  using Corner = std::function<KbVec3<double>(std::size_t, std::size_t, std::size_t, std::size_t)>;
  explicit CornerGeometry(Corner corner)
      : m_corner(std::move(corner)) {}
  std::size_t getTimeStamp() const override { return stamp; }
  void getCellCorners(std::size_t i, std::size_t j, std::size_t k, KbVec3<double> corners[8]) const override {
    for (std::size_t c = 0; c < 8; ++c)
      corners[c] = m_corner(i, j, k, c);
  }

private:
  Corner m_corner;
};

class CornerMesh final : public KiVolumeMeshVertexHexahedronIjk {
public:
  CornerMesh(Counts cells, CornerGeometry::Corner corner, Span<std::uint8_t> dead = {})
      : topology(cells, dead)
      , geometry(std::move(corner)) {}
  const KiTopologyIjk& getTopology() const override { return topology; }
  const KiGeometryHexahedronIjk& getGeometry() const override { return geometry; }
  GridTopology<Access::VIRTUAL> topology;
  CornerGeometry geometry;
};

/// A data set of doubles or triples over an array of `Real`, in both forms of addressing.
template <Access A, class Real, class T = double>
class Set final : public KiDataSetI<T>, public KiDataSetIjk<T>, public RawBase<A>, public Stamped {
public:
  Set(std::string name, DataBinding binding, Span<Real> values, Counts counts = {})
      : m_name(std::move(name))
      , m_binding(binding)
      , m_values(values)
      , m_counts(counts) {}
  std::size_t getTimeStamp() const override { return stamp; }
  std::string getName() const override { return m_name; }
  DataBinding getBinding() const override { return m_binding; }
  T getMin() const override { return T(0); }
  T getMax() const override { return T(0); }
  std::size_t getSize() const override { return m_values.size / components; }
  T get(std::size_t i) const override {
    const Real* p = m_values.data + components * i;
    if constexpr (components == 1)
      return static_cast<double>(p[0]);
    else
      return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }
  T get(std::size_t i, std::size_t j, std::size_t k) const override {
    return get(i + m_counts[0] * (j + m_counts[1] * k));
  }
  KiRawArray getRawArray(KiRawArrays::Role role) const {
    return role == KiRawArrays::VALUES ? raw(m_values.data, m_values.size) : KiRawArray{};
  }

private:
  static constexpr std::size_t components = std::is_same_v<T, double> ? 1 : 3;
  std::string m_name;
  DataBinding m_binding;
  Span<Real> m_values;
  Counts m_counts;
};

} // namespace arrays
