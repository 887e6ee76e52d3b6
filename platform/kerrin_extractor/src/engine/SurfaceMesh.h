// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "ExtractedGeometry.h"
#include "InputAddress.h"

#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>

#include <cstdint>
#include <memory>

namespace kx {

/// The arrays of an extracted surface, written by the polygonisers.
struct SurfaceData {
  Array<std::int32_t> indices; ///< all polygons, -1 behind each
  Array<float> vertices;
  /// Vertex v lies on the input edge (edgeBegins[v], edgeEnds[v]) at weights[v] from its begin. Empty for families
  /// whose vertices have sources of another form.
  IndexArray edgeBegins;
  IndexArray edgeEnds;
  Array<float> weights;
  IndexArray inputCells;

  std::size_t numCells() const { return inputCells.size(); }
  std::size_t numVertices() const { return vertices.size() / 3; }
  void clear();
  /// The value at a vertex of an edge from those at the nodes. A vertex on its begin takes that value alone, even where
  /// the other end has none.
  template <class Values>
  auto valueOnEdge(const Values& values, std::size_t vertex) const {
    const auto a = values(edgeBegins[vertex]);
    const auto weight = static_cast<double>(weights[vertex]);
    return weight == 0.0 ? a : a + (values(edgeEnds[vertex]) - a) * weight;
  }
};

/// The surface mesh that extractors yield. Geometry and topology are views of one `SurfaceData`, whose arrays exist
/// once.
class SurfaceMesh final : public KeXSurfaceMeshUnstructured {
public:
  SurfaceMesh();
  ~SurfaceMesh() override;
  const KeXSurfaceTopologyExplicitI& getTopology() const override;
  const KeXGeometryExplicit& getGeometry() const override;
  KeXSurfaceMeshUnstructured* getNewClone() const override;

  SurfaceData& data() { return m_data; }
  const SurfaceData& data() const { return m_data; }
  /// Takes new time stamps after the arrays have been rewritten.
  void commit(const InputAddress& input);
  std::size_t outputStamp() const;

private:
  class Topology;

  SurfaceMesh(const SurfaceMesh& other);

  SurfaceData m_data;
  std::unique_ptr<Topology> m_topology;
  ExtractedGeometry m_geometry;
};

} // namespace kx
