// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinMesh/KbDataSet.h>

/// Meshes and sets that offer the virtual operations alone and no raw arrays: what an application's own classes look
/// like to an extractor. Values and positions come from the arrays of the sources, as an application reads its own.
namespace peer {

/// The float triples behind a geometry of kerrin_mesh.
inline const KbVec3<float>* coordinatesOf(const KiGeometry& geometry) {
  const KiRawArray array = dynamic_cast<const KiRawArrays&>(geometry).getRawArray(KiRawArrays::COORDINATES);
  return static_cast<const KbVec3<float>*>(array.data);
}

/// An unstructured mesh of cells of one shape, by its mesh, topology and cell interfaces. Each thread looks at its
/// cells through one object, which `getCell` sets to the cell.
template <class MeshInterface, class TopologyInterface, class Cell>
class PlainUnstructuredMesh final : public MeshInterface {
public:
  explicit PlainUnstructuredMesh(const MeshInterface& source)
      : m_topology(source.getTopology())
      , m_geometry(source.getGeometry()) {}
  const TopologyInterface& getTopology() const override { return m_topology; }
  const KiGeometryI& getGeometry() const override { return m_geometry; }

private:
  static KiRawArray connectivityOf(const TopologyInterface& source) {
    return dynamic_cast<const KiRawArrays&>(source).getRawArray(KiRawArrays::CONNECTIVITY);
  }
  struct CellView final : Cell {
    std::size_t getNumNodes() const override { return numNodes; }
    std::size_t getNodeIndex(std::size_t i) const override { return static_cast<std::size_t>(nodes[i]); }
    typename Cell::Shape getShape() const override { return shape; }
    const std::int64_t* nodes;
    std::size_t numNodes;
    typename Cell::Shape shape;
  };
  struct Topology final : TopologyInterface {
    explicit Topology(const TopologyInterface& s)
        : source(s)
        , nodes(static_cast<const std::int64_t*>(connectivityOf(s).data))
        , numCells(s.getNumCells())
        , numNodes(connectivityOf(s).size / numCells)
        , shape(s.getCell(0)->getShape()) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    std::size_t getNumCells() const override { return numCells; }
    const Cell* getCell(std::size_t cell) const override {
      thread_local CellView view;
      view.nodes = nodes + cell * numNodes;
      view.numNodes = numNodes;
      view.shape = shape;
      return &view;
    }
    std::size_t getEndNodeId() const override { return source.getEndNodeId(); }
    const TopologyInterface& source;
    const std::int64_t* nodes;
    std::size_t numCells;
    std::size_t numNodes;
    typename Cell::Shape shape;
  };
  struct Geometry final : KiGeometryI {
    explicit Geometry(const KiGeometryI& s)
        : source(s)
        , coordinates(coordinatesOf(s)) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    KbVec3<double> getCoord(std::size_t node) const override { return KbVec3<double>(coordinates[node]); }
    const KiGeometryI& source;
    const KbVec3<float>* coordinates;
  };
  Topology m_topology;
  Geometry m_geometry;
};

using PlainVolumeMesh = PlainUnstructuredMesh<KiVolumeMeshUnstructured, KiVolumeTopologyExplicitI, KiVolumeCell>;
using PlainSurfaceMesh = PlainUnstructuredMesh<KiSurfaceMeshUnstructured, KiSurfaceTopologyExplicitI, KiSurfaceCell>;

class PlainCurvilinearMesh final : public KiVolumeMeshCurvilinear {
public:
  explicit PlainCurvilinearMesh(const KiVolumeMeshCurvilinear& source)
      : m_topology(source.getTopology())
      , m_geometry(source.getGeometry(), source.getTopology()) {}
  const KiTopologyIjk& getTopology() const override { return m_topology; }
  const KiGeometryIjk& getGeometry() const override { return m_geometry; }

private:
  struct Geometry final : KiGeometryIjk {
    Geometry(const KiGeometryIjk& s, const KiTopologyIjk& cells)
        : source(s)
        , coordinates(coordinatesOf(s))
        , numI(cells.getNumCellsI() + 1)
        , numJ(cells.getNumCellsJ() + 1) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    KbVec3<double> getCoord(std::size_t i, std::size_t j, std::size_t k) const override {
      return KbVec3<double>(coordinates[i + numI * (j + numJ * k)]);
    }
    const KiGeometryIjk& source;
    const KbVec3<float>* coordinates;
    std::size_t numI;
    std::size_t numJ;
  };
  const KiTopologyIjk& m_topology;
  Geometry m_geometry;
};

/// What the sets below have in common; `Source` is a set of kerrin_mesh over floats.
template <class T, class Interface, class Source>
class PlainSet : public Interface {
public:
  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  std::string getName() const override { return m_source.getName(); }
  DataBinding getBinding() const override { return m_source.getBinding(); }
  T getMin() const override { return m_source.getMin(); }
  T getMax() const override { return m_source.getMax(); }

protected:
  explicit PlainSet(const Interface& source)
      : m_source(dynamic_cast<const Source&>(source))
      , m_values(static_cast<const float*>(m_source.getRawArray(KiRawArrays::VALUES).data)) {}
  T at(std::size_t i) const {
    if constexpr (std::is_same_v<T, double>)
      return static_cast<double>(m_values[i]);
    else
      return T(KbVec3<float>(m_values[3 * i], m_values[3 * i + 1], m_values[3 * i + 2]));
  }
  const Source& m_source;

private:
  const float* m_values;
};

template <class T>
class PlainSetI final : public PlainSet<T, KiDataSetI<T>, KbDataSet<T, 1>> {
public:
  explicit PlainSetI(const KiDataSetI<T>& source)
      : PlainSet<T, KiDataSetI<T>, KbDataSet<T, 1>>(source)
      , m_size(source.getSize()) {}
  std::size_t getSize() const override { return m_size; }
  T get(std::size_t i) const override { return this->at(i); }

private:
  std::size_t m_size;
};

template <class T>
class PlainSetIjk final : public PlainSet<T, KiDataSetIjk<T>, KbDataSet<T, 3>> {
public:
  explicit PlainSetIjk(const KiDataSetIjk<T>& source)
      : PlainSet<T, KiDataSetIjk<T>, KbDataSet<T, 3>>(source)
      , m_numI(this->m_source.getCounts()[0])
      , m_numJ(this->m_source.getCounts()[1]) {}
  T get(std::size_t i, std::size_t j, std::size_t k) const override { return this->at(i + m_numI * (j + m_numJ * k)); }

private:
  std::size_t m_numI;
  std::size_t m_numJ;
};

using PlainScalarSetI = PlainSetI<double>;
using PlainScalarSetIjk = PlainSetIjk<double>;

} // namespace peer
