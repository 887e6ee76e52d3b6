// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// Meshes and sets that forward to others by the virtual operations alone and offer no raw arrays: what an
/// application's own classes look like to an extractor.
namespace peer {

/// An unstructured mesh of any dimension, by its mesh, topology and cell interfaces.
template <class MeshInterface, class TopologyInterface, class Cell>
class PlainUnstructuredMesh final : public MeshInterface {
public:
  explicit PlainUnstructuredMesh(const MeshInterface& source)
      : m_topology(source.getTopology())
      , m_geometry(source.getGeometry()) {}
  const TopologyInterface& getTopology() const override { return m_topology; }
  const KiGeometryI& getGeometry() const override { return m_geometry; }

private:
  struct Topology final : TopologyInterface {
    explicit Topology(const TopologyInterface& s)
        : source(s) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    std::size_t getNumCells() const override { return source.getNumCells(); }
    const Cell* getCell(std::size_t cell) const override { return source.getCell(cell); }
    std::size_t getEndNodeId() const override { return source.getEndNodeId(); }
    const TopologyInterface& source;
  };
  struct Geometry final : KiGeometryI {
    explicit Geometry(const KiGeometryI& s)
        : source(s) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    KbVec3<double> getCoord(std::size_t node) const override { return source.getCoord(node); }
    const KiGeometryI& source;
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
      , m_geometry(source.getGeometry()) {}
  const KiTopologyIjk& getTopology() const override { return m_topology; }
  const KiGeometryIjk& getGeometry() const override { return m_geometry; }

private:
  struct Geometry final : KiGeometryIjk {
    explicit Geometry(const KiGeometryIjk& s)
        : source(s) {}
    std::size_t getTimeStamp() const override { return source.getTimeStamp(); }
    KbVec3<double> getCoord(std::size_t i, std::size_t j, std::size_t k) const override {
      return source.getCoord(i, j, k);
    }
    const KiGeometryIjk& source;
  };
  const KiTopologyIjk& m_topology;
  Geometry m_geometry;
};

class PlainScalarSetI final : public KiDataSetI<double> {
public:
  explicit PlainScalarSetI(const KiDataSetI<double>& source)
      : m_source(source) {}
  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  std::string getName() const override { return m_source.getName(); }
  DataBinding getBinding() const override { return m_source.getBinding(); }
  double getMin() const override { return m_source.getMin(); }
  double getMax() const override { return m_source.getMax(); }
  std::size_t getSize() const override { return m_source.getSize(); }
  double get(std::size_t i) const override { return m_source.get(i); }

private:
  const KiDataSetI<double>& m_source;
};

class PlainScalarSetIjk final : public KiDataSetIjk<double> {
public:
  explicit PlainScalarSetIjk(const KiDataSetIjk<double>& source)
      : m_source(source) {}
  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  std::string getName() const override { return m_source.getName(); }
  DataBinding getBinding() const override { return m_source.getBinding(); }
  double getMin() const override { return m_source.getMin(); }
  double getMax() const override { return m_source.getMax(); }
  double get(std::size_t i, std::size_t j, std::size_t k) const override { return m_source.get(i, j, k); }

private:
  const KiDataSetIjk<double>& m_source;
};

} // namespace peer
