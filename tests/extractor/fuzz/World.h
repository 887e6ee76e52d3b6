// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Random.h"

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// Meshes, sets and filters that are wrong in every way that the contract's types allow, but never crash by themselves:
/// a question out of range is answered and counted as an offence.
namespace fuzz {

/// What an extractor must not do: ask for what there is not.
class Offences {
public:
  static void add(const char* what);
  /// The first since the last call; empty when there was none.
  static std::string take();

private:
  static std::mutex s_mutex;
  static std::string s_first;
};

/// All that a mesh of any kind is made of.
struct World {
  /// Nothing yet.
  World() = default;
  explicit World(Random& random);

  bool isRaw = false;    ///< arrays are offered
  bool isFloat = false;  ///< in single precision
  bool isWide = false;   ///< with 64-bit indices
  bool isBroken = false; ///< somewhere on purpose; laws of sound meshes don't hold
  Counts counts{};
  std::vector<double> xyz;
  std::vector<float> xyzFloat;
  std::array<std::vector<double>, 3> axes;
  Vec3 low, high;
  std::vector<std::uint8_t> dead; ///< empty, or one a lattice cell

  /// Explicit cells.
  struct Cells {
    std::vector<std::vector<std::int64_t>> nodes;
    std::vector<std::uint8_t> shapes;
    std::vector<std::vector<std::vector<std::size_t>>> facets; ///< of polyhedra
    std::vector<std::uint8_t> dead;
    std::size_t beginNode = 0;
    std::size_t endNode = 0;
    bool hasNull = false; ///< cell 0 cannot be had
    // The same as arrays.
    std::vector<std::int32_t> connectivity32, offsets32;
    std::vector<std::int64_t> connectivity64, offsets64;
    bool isUniform = false; ///< no offsets are offered
    void makeArrays();
  };
  Cells volume, surface, line;
  std::vector<std::int64_t> hexahedra; ///< eight nodes a lattice cell
  std::size_t hexahedraBeginNode = 0;
  std::size_t hexahedraEndNode = static_cast<std::size_t>(-1); ///< or that of all nodes, if it is less
  std::vector<Vec3> corners;                                   ///< eight a lattice cell

  std::size_t numNodes() const { return xyz.size() / 3; }
  std::size_t numCells() const { return counts[0] * counts[1] * counts[2]; }

private:
  void addNode(const Vec3& p) { xyz.insert(xyz.end(), {p[0], p[1], p[2]}); }
  void makeNodes(Random& random);
  void makeVolume(Random& random);
  void makeSurface(Random& random);
  void makeLine(Random& random);
  void makeHexahedra(Random& random);
  void finish(Random& random, Cells& cells, std::size_t maxNodes);
  std::size_t node(std::size_t i, std::size_t j, std::size_t k) const {
    return i + (counts[0] + 1) * (j + (counts[1] + 1) * k);
  }
};

/// Answers every question about positions.
class Geometry final : public KiGeometryI,
                       public KiGeometryIj,
                       public KiGeometryIjk,
                       public KiGeometryRegular,
                       public KiVolumeGeometryRectilinear,
                       public KiSurfaceGeometryRectilinear,
                       public KiGeometryHexahedronIjk,
                       public KiRawArrays {
public:
  explicit Geometry(const World& world)
      : m_world(world) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  Vec3 getCoord(std::size_t node) const override;
  Vec3 getCoord(std::size_t i, std::size_t j) const override { return getCoord(i, j, 0); }
  Vec3 getCoord(std::size_t i, std::size_t j, std::size_t k) const override;
  Vec3 getMin() const override { return m_world.low; }
  Vec3 getMax() const override { return m_world.high; }
  double getX(std::size_t i) const override { return onAxis(0, i); }
  double getY(std::size_t j) const override { return onAxis(1, j); }
  double getZ(std::size_t k) const override { return onAxis(2, k); }
  void getCellCorners(std::size_t i, std::size_t j, std::size_t k, Vec3 corners[8]) const override;
  KiRawArray getRawArray(Role role) const override;

private:
  double onAxis(std::size_t axis, std::size_t i) const;
  const World& m_world;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// Answers every question about structured cells.
class GridTopology final : public KiHexahedronTopologyExplicitIjk,
                           public KiTopologyIj,
                           public KiTopologyI,
                           public KiRawArrays {
public:
  enum Form { IJK, IJ, I, HEXAHEDRA };
  GridTopology(const World& world, Form form)
      : m_world(world)
      , m_form(form) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool hasDeadCells() const override { return !m_world.dead.empty(); }
  std::size_t getNumCells() const override { return m_world.counts[0]; }
  std::size_t getNumCellsI() const override { return m_world.counts[0]; }
  std::size_t getNumCellsJ() const override { return m_world.counts[1]; }
  std::size_t getNumCellsK() const override { return m_world.counts[2]; }
  bool isDead(std::size_t i) const override { return isDead(i, 0, 0); }
  bool isDead(std::size_t i, std::size_t j) const override { return isDead(i, j, 0); }
  bool isDead(std::size_t i, std::size_t j, std::size_t k) const override;
  void getCellNodeIds(std::size_t i, std::size_t j, std::size_t k, std::size_t ids[8]) const override;
  std::size_t getBeginNodeId() const override { return m_world.hexahedraBeginNode; }
  std::size_t getEndNodeId() const override { return std::min(m_world.hexahedraEndNode, m_world.numNodes()); }
  KiRawArray getRawArray(Role role) const override;

private:
  const World& m_world;
  Form m_form;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// Explicit cells of one dimension: `Interface` is the topology, `Cell` its cell's class.
template <class Interface, class Cell>
class CellTopology final : public Interface, public KiRawArrays {
public:
  explicit CellTopology(const World& world, const World::Cells& cells)
      : m_world(world)
      , m_cells(cells) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  std::size_t getNumCells() const override { return m_cells.nodes.size(); }
  bool hasDeadCells() const override { return !m_cells.dead.empty(); }
  bool isDead(std::size_t cell) const override {
    if (cell < m_cells.nodes.size()) return !m_cells.dead.empty() && m_cells.dead[cell] != 0;
    Offences::add("isDead of a cell that is not there");
    return false;
  }
  std::size_t getBeginNodeId() const override { return m_cells.beginNode; }
  std::size_t getEndNodeId() const override { return m_cells.endNode; }
  const Cell* getCell(std::size_t index) const override {
    if (index >= m_cells.nodes.size()) {
      Offences::add("getCell of a cell that is not there");
      return nullptr;
    }
    if (index == 0 && m_cells.hasNull) return nullptr;
    thread_local Cell cell;
    cell.cells = &m_cells;
    cell.index = index;
    return &cell;
  }
  KiRawArray getRawArray(Role role) const override;

private:
  const World& m_world;
  const World::Cells& m_cells;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

template <class Interface>
class CellBase : public Interface {
public:
  const World::Cells* cells = nullptr;
  std::size_t index = 0;
  std::size_t getNumNodes() const override { return cells->nodes[index].size(); }
  std::size_t getNodeIndex(std::size_t local) const override {
    if (local < getNumNodes()) return static_cast<std::size_t>(cells->nodes[index][local]);
    Offences::add("getNodeIndex of a node that the cell does not have");
    return 0;
  }
};
class VolumeCell final : public CellBase<KiVolumeCell> {
public:
  Shape getShape() const override { return static_cast<Shape>(cells->shapes[index]); }
  std::size_t getNumFacets() const override {
    return getShape() == POLYHEDRON ? cells->facets[index].size() : KiVolumeCell::getNumFacets();
  }
  void getFacet(std::size_t facet, std::vector<std::size_t>& local) const override;
};
class SurfaceCell final : public CellBase<KiSurfaceCell> {
public:
  Shape getShape() const override { return static_cast<Shape>(cells->shapes[index]); }
};
class LineCell final : public CellBase<KiLineCell> {};

using VolumeTopology = CellTopology<KiVolumeTopologyExplicitI, VolumeCell>;
using SurfaceTopology = CellTopology<KiSurfaceTopologyExplicitI, SurfaceCell>;
using LineTopology = CellTopology<KiLineTopologyExplicitI, LineCell>;

/// A mesh over explicit cells.
template <class Interface, class Topology>
class ExplicitMesh final : public Interface {
public:
  ExplicitMesh(const World& world, const World::Cells& cells)
      : m_topology(world, cells)
      , m_geometry(world) {}
  const Topology& getTopology() const override { return m_topology; }
  const Geometry& getGeometry() const override { return m_geometry; }

private:
  Topology m_topology;
  Geometry m_geometry;
};

/// A mesh over structured cells.
template <class Interface, GridTopology::Form FORM>
class GridMesh final : public Interface {
public:
  explicit GridMesh(const World& world)
      : m_topology(world, FORM)
      , m_geometry(world) {}
  const GridTopology& getTopology() const override { return m_topology; }
  const Geometry& getGeometry() const override { return m_geometry; }

private:
  GridTopology m_topology;
  Geometry m_geometry;
};

/// A set in all forms.
template <class T>
class Set final : public KiDataSetI<T>, public KiDataSetIj<T>, public KiDataSetIjk<T>, public KiRawArrays {
public:
  /// For `size` values; `dims` address them in the structured forms.
  Set(Random& random, const World& world, DataBinding binding, std::size_t size, const Counts& dims);
  /// With these values, offered as an array or not.
  Set(DataBinding binding, const Counts& dims, std::vector<double> values, bool isRaw);
  std::size_t getTimeStamp() const override { return m_stamp; }
  std::string getName() const override { return "set"; }
  DataBinding getBinding() const override { return m_binding; }
  T getMin() const override { return T(-1.0); }
  T getMax() const override { return T(1.0); }
  std::size_t getSize() const override { return m_values.size() / COMPONENTS; }
  T get(std::size_t i) const override;
  T get(std::size_t i, std::size_t j) const override { return get(i, j, 0); }
  T get(std::size_t i, std::size_t j, std::size_t k) const override;
  KiRawArray getRawArray(Role role) const override;

private:
  static constexpr std::size_t COMPONENTS = std::is_same_v<T, double> ? 1 : 3;
  T at(std::size_t i) const;
  DataBinding m_binding;
  Counts m_dims;
  bool m_isRaw;
  bool m_isFloat;
  std::vector<double> m_values;
  std::vector<float> m_floats;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

/// Refuses some cells, in all forms.
class Filter final : public KiCellFilterI, public KiCellFilterIj, public KiCellFilterIjk {
public:
  Filter(Random& random, std::size_t numCells, const Counts& counts);
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t cell) const override;
  bool acceptCell(std::size_t i, std::size_t j) const override { return acceptCell(i, j, 0); }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override;

private:
  std::uint64_t m_salt;
  std::size_t m_numCells;
  Counts m_counts;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

template <class T>
KiRawArray rawArray(const std::vector<T>& values, KiRawArray::Type type) {
  KiRawArray array;
  array.data = values.data();
  array.size = values.size();
  array.type = type;
  return array;
}

template <class Interface, class Cell>
KiRawArray CellTopology<Interface, Cell>::getRawArray(Role role) const {
  if (!m_world.isRaw) return {};
  switch (role) {
  case CONNECTIVITY:
    return m_world.isWide ? rawArray(m_cells.connectivity64, KiRawArray::INT64)
                          : rawArray(m_cells.connectivity32, KiRawArray::INT32);
  case OFFSETS:
    if (m_cells.isUniform) return {};
    return m_world.isWide ? rawArray(m_cells.offsets64, KiRawArray::INT64)
                          : rawArray(m_cells.offsets32, KiRawArray::INT32);
  case SHAPES: {
    KiRawArray shapes = rawArray(m_cells.shapes, KiRawArray::UINT8);
    if (m_cells.isUniform && shapes.size > 1) shapes.size = 1;
    return shapes;
  }
  case DEAD:
    return m_cells.dead.empty() ? KiRawArray{} : rawArray(m_cells.dead, KiRawArray::UINT8);
  default:
    return {};
  }
}

} // namespace fuzz
