// SPDX-License-Identifier: BSD-3-Clause
// The clip point family: where line meshes meet a plane.
#include "PickShell.h"
#include "src/engine/FaceCutter.h"
#include "src/engine/LineCells.h"
#include "src/engine/Numbers.h"
#include "src/engine/PlaneFunction.h"
#include "src/engine/PointMesh.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiClipPointExtract.h>

namespace {

using Vec3 = KbVec3<double>;

/// A point of a piece on the plane counts as on the side of its normal's back, so that a line that goes through the
/// plane in a node gives one point, and one that stays in the plane gives none.
class ClipPoint {
public:
  template <class Mesh>
  ClipPoint(const Mesh& mesh, bool parallel, const KiTessellator* tessellator)
      : m_product(mesh, parallel, "KiClipPointExtract")
      , m_tessellator(tessellator) {}

  const KeXPointMeshCurvilinear& extract(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                         const KiCellFilterI* filter) {
    const kx::PlaneFunction plane(normal, distance);
    kx::Request request;
    request.add(normal).add(distance).add(m_tessellator);
    if (plane.fault()) request.fault = plane.fault();
    return m_product.update(callback, filter, std::move(request), 1,
                            [&](kx::Run& run, const kx::FlatMesh& mesh, kx::PointData& data, kx::Faults& faults) {
                              run.phase("cut", 1, [&](std::size_t) { cut(mesh, plane, data, faults); });
                            });
  }

  template <class T>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const KiDataSetI<T>& set) {
    return m_product.map(callback, set,
                         [this](const auto& values, std::size_t vertex) { return m_sources[vertex].valueAt(values); });
  }

  const KeXPointMeshCurvilinear& output() const { return m_product.output(); }

private:
  void cut(const kx::FlatMesh& mesh, const kx::PlaneFunction& plane, kx::PointData& data, kx::Faults& faults) {
    m_sources.clear();
    std::vector<std::size_t> cells;
    kx::Numbers<kx::NodeEdge> nodesInPlane; // a node where several lines meet gives one point
    const auto position = [&mesh](const kx::Stencil& s) {
      return s.valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
    };
    visitLineCells(mesh, m_tessellator, nullptr, faults,
                   [&](std::size_t cell, const kx::CellNodeList&, const std::vector<kx::Stencil>& points) {
                     for (std::size_t p = 0; p + 1 < points.size(); ++p) {
                       const double a = plane(position(points[p]));
                       const double b = plane(position(points[p + 1]));
                       if ((a >= 0.0) == (b >= 0.0)) continue;
                       if (a == 0.0 || b == 0.0) {
                         const kx::Stencil& point = points[a == 0.0 ? p : p + 1];
                         const std::size_t node = point.nodes[0];
                         if (point.weights[0] == 1.0) {
                           const std::size_t numKnown = nodesInPlane.keys().size();
                           if (nodesInPlane.numberOf({node, node}) < numKnown) continue;
                         }
                       }
                       m_sources.push_back(between(points[p], points[p + 1], a / (a - b)));
                       cells.push_back(cell);
                     }
                   });
    data.vertices.resize(3 * m_sources.size());
    data.inputCells.resize(m_sources.size(), mesh.numCells);
    for (std::size_t v = 0; v < m_sources.size(); ++v) {
      const Vec3 p = position(m_sources[v]);
      kx::setPosition(data.vertices, v, p);
      data.inputCells.set(v, cells[v]);
    }
  }

  /// A point on the chord between two points of one cell.
  static kx::Stencil between(const kx::Stencil& a, const kx::Stencil& b, double weight) {
    kx::Stencil result;
    std::size_t used = 0;
    const auto add = [&](std::size_t node, double share) {
      if (share == 0.0) return;
      std::size_t slot = 0;
      while (slot < used && result.nodes[slot] != node)
        ++slot;
      if (slot == used) result.nodes[used++] = node;
      result.weights[slot] += share;
    };
    for (std::size_t i = 0; i < 3; ++i)
      add(a.nodes[i], (1.0 - weight) * a.weights[i]);
    for (std::size_t i = 0; i < 3; ++i)
      add(b.nodes[i], weight * b.weights[i]);
    return result;
  }

  kx::Product<kx::FlatMesh, kx::PointMesh> m_product;
  std::vector<kx::Stencil> m_sources; ///< of the points
  const KiTessellator* m_tessellator;
};

class ClipPointExtract final : public kx::PickShell<KiClipPointExtract, ClipPoint, KiDataSetI> {
public:
  using PickShell::PickShell;
  const KeXPointMeshCurvilinear& extract(const Vec3& normal, double distance, const KiCellFilterI* filter) override {
    return m_state.extract(getExtractorCallback(), normal, distance, filter);
  }
};

} // namespace

KiClipPointExtract* KiClipPointExtract::getNewInstance(const KiLineMeshUnstructured& mesh, bool parallel,
                                                       KiTessellator* tessellator) {
  return new ClipPointExtract(mesh, parallel, tessellator);
}
KiClipPointExtract* KiClipPointExtract::getNewInstance(const KiLineMeshRegular& mesh, bool parallel,
                                                       KiTessellator* tessellator) {
  return new ClipPointExtract(mesh, parallel, tessellator);
}
KiClipPointExtract* KiClipPointExtract::getNewInstance(const KiLineMeshCurvilinear& mesh, bool parallel,
                                                       KiTessellator* tessellator) {
  return new ClipPointExtract(mesh, parallel, tessellator);
}
