// SPDX-License-Identifier: BSD-3-Clause
// The clip point family: where line meshes meet a plane.
#include "src/engine/FaceCutter.h"
#include "src/engine/LineExtraction.h"
#include "src/engine/Numbers.h"
#include "src/engine/PointMesh.h"

#include <KerrinExtractor/KiClipPointExtract.h>

#include <algorithm>

namespace {

using Vec3 = KbVec3<double>;

/// A point of a piece on the plane counts as on the side of its normal's back, so that a line that goes through the
/// plane in a node gives one point, and one that stays in the plane gives none.
class ClipPoint final : public kx::LineExtraction {
public:
  using LineExtraction::LineExtraction;

  const KeXPointMeshCurvilinear& extract(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                         const KiCellFilterI* filter, const KiTessellator* tessellator) {
    const kx::PlaneFunction plane(normal, distance);
    update(callback, parametersOf({normal[0], normal[1], normal[2], distance}, tessellator), filter,
           plane.fault() ? plane.fault() : "", NUM_PHASES,
           [&](kx::Run& run, const kx::FlatMesh& mesh, kx::Faults& faults) {
             m_sets.dropUnused(m_points.outputStamp());
             run.phase("cut", 1, [&](std::size_t) { cut(mesh, plane, tessellator, faults); });
           });
    return m_points;
  }

  template <class T>
  const KeXDataSetI<T>* mapSet(KiExtractorCallback* callback, const KiDataSetI<T>& set) {
    return map<T>(
               callback, set, {{&m_sets, m_points.outputStamp(), m_sources.size(), m_sources.size()}},
               [this](const auto& values, std::size_t, std::size_t v) { return m_sources[v].valueAt(values); },
               [this](const auto& values, std::size_t, std::size_t c) { return values(m_points.data().inputCells[c]); })
        .front();
  }

  const KeXPointMeshCurvilinear& output() const { return m_points; }

private:
  void cut(const kx::FlatMesh& mesh, const kx::PlaneFunction& plane, const KiTessellator* tessellator,
           kx::Faults& faults) {
    m_sources.clear();
    std::vector<std::size_t> cells;
    kx::Numbers<kx::NodeEdge> nodesInPlane; // a node where several lines meet gives one point
    const auto position = [&mesh](const kx::Stencil& s) {
      return s.valueAt([&mesh](std::size_t id) { return mesh.points[id]; });
    };
    walk(mesh, tessellator, nullptr, faults,
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
    m_points.data().vertices.resize(3 * m_sources.size());
    m_points.data().inputCells.resize(m_sources.size(), mesh.numCells);
    for (std::size_t v = 0; v < m_sources.size(); ++v) {
      const Vec3 p = position(m_sources[v]);
      for (std::size_t axis = 0; axis < 3; ++axis)
        m_points.data().vertices[3 * v + axis] = static_cast<float>(p[axis]);
      m_points.data().inputCells.set(v, cells[v]);
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

  void clear() override {
    m_points.data().clear();
    m_sources.clear();
  }
  void commit(const kx::InputAddress& address) override { m_points.commit(address); }

  kx::PointMesh m_points;
  std::vector<kx::Stencil> m_sources;
  kx::MappedSets m_sets;
};

class ClipPointExtract final : public KiClipPointExtract {
public:
  template <class Mesh>
  ClipPointExtract(const Mesh& mesh, bool parallel, const KiTessellator* tessellator)
      : m_clip(mesh, parallel, "KiClipPointExtract")
      , m_tessellator(tessellator) {}

  const KeXPointMeshCurvilinear& extract(const Vec3& normal, double distance, const KiCellFilterI* filter) override {
    return m_clip.extract(getExtractorCallback(), normal, distance, filter, m_tessellator);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_clip.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_clip.mapSet(getExtractorCallback(), set);
  }
  const KeXPointMeshCurvilinear& getExtract() const override { return m_clip.output(); }

private:
  ClipPoint m_clip;
  const KiTessellator* m_tessellator;
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
