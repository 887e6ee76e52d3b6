// SPDX-License-Identifier: BSD-3-Clause
// Unstructured surface meshes as polygons, their edges and their points.
#include "PickShell.h"
#include "SurfacePolygons.h"
#include "src/engine/LineMesh.h"
#include "src/engine/OutlineTracer.h"
#include "src/engine/PointMesh.h"

#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KxSurfaceExtractFactory.h>

namespace {

using kx::FlatMesh;

/// A point mesh in the form of a product's output.
class PointOutput {
public:
  kx::PointMesh& data() { return m_mesh; }
  const kx::PointMesh& data() const { return m_mesh; }
  void commit(const kx::InputAddress& input) { m_mesh.commit(input); }
  std::size_t outputStamp() const { return m_mesh.outputStamp(); }

private:
  kx::PointMesh m_mesh;
};

class SurfaceUnstructured final : public kx::PickShell<KiSurfaceExtractUnstructured, kx::SurfacePolygons, KiDataSetI> {
public:
  SurfaceUnstructured(const KiSurfaceMeshUnstructured& mesh, bool parallel)
      : PickShell(mesh, parallel, "KiSurfaceExtractUnstructured")
      , m_lines(mesh, parallel, "KiSurfaceExtractUnstructured")
      , m_points(mesh, parallel, "KiSurfaceExtractUnstructured") {}

  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterI* filter) override {
    return m_state.extract(getExtractorCallback(), filter);
  }
  const KeXSurfaceMeshUnstructured& extract(KiTessellator*, const KiCellFilterI* filter) override {
    return extract(filter);
  }
  const KeXLineMeshUnstructured* extractLines(KiTessellator*, const KiCellFilterI* filter) override {
    return &m_lines.update(getExtractorCallback(), filter, {},
                           kx::SurfaceWriter::NUM_PHASES + kx::OutlineTracer::NUM_PHASES,
                           [](kx::Run& run, const FlatMesh& mesh, kx::LineData& data, kx::Faults& faults) {
                             kx::SurfaceData surface;
                             kx::SurfaceWriter::write(run, mesh, surface, faults);
                             kx::IndexArray nodes;
                             kx::OutlineTracer::trace(run, surface, {}, mesh.numCells, mesh.endNode, {data, nodes},
                                                      kx::OutlineTracer::Selection::ALL);
                           });
  }
  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) override {
    m_points.update(getExtractorCallback(), filter, {}, kx::SurfaceWriter::NUM_PHASES,
                    [](kx::Run& run, const FlatMesh& mesh, kx::PointMesh& points, kx::Faults& faults) {
                      kx::SurfaceData surface;
                      kx::SurfaceWriter::write(run, mesh, surface, faults);
                      points.vertices().resize(surface.vertices.size());
                      std::copy_n(surface.vertices.data(), surface.vertices.size(), points.vertices().data());
                      points.inputCells().resize(surface.numVertices(), mesh.numCells);
                      std::size_t polygon = surface.numCells();
                      for (std::size_t n = surface.indices.size(); n-- > 0;) { // backwards: the first cell stays
                        if (surface.indices[n] < 0)
                          --polygon;
                        else
                          points.inputCells().set(static_cast<std::size_t>(surface.indices[n]),
                                                  surface.inputCells[polygon]);
                      }
                    });
    return &m_points.output().data();
  }

private:
  kx::Product<FlatMesh, kx::LineMesh> m_lines;
  kx::Product<FlatMesh, PointOutput> m_points;
};

} // namespace

KiSurfaceExtractUnstructured* KiSurfaceExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator*) {
  return new SurfaceUnstructured(mesh, parallel);
}

KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshCurvilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshRectilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshRegular& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractUnstructured* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshUnstructured& mesh,
                                                                      bool parallel, KiTessellator* tessellator) {
  return KiSurfaceExtractUnstructured::getNewInstance(mesh, parallel, tessellator);
}
