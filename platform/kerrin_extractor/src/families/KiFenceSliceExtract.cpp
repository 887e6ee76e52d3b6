// SPDX-License-Identifier: BSD-3-Clause
// Sections of volume meshes by a curtain.
#include "PickShell.h"
#include "src/engine/FenceCutter.h"
#include "src/engine/PartFilter.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>

#include <array>
#include <optional>
#include <type_traits>

namespace {

using Vec3 = KbVec3<double>;

class Fence {
public:
  template <class Mesh>
  Fence(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator = nullptr)
      : m_product(mesh, parallel, name)
      , m_tessellator(tessellator)
      , m_partFilter(m_tessellation) {}

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const Vec3& direction,
                                            const std::vector<Vec3>& polyline, const Filter* filter) {
    const kx::Curtain curtain(direction, polyline);
    kx::Request request;
    request.add(direction).add(m_tessellator);
    for (const Vec3& p : polyline)
      request.add(p);
    request.fault = curtain.fault();
    if (request.fault.empty() && polyline.empty()) request.fault = "the polyline is empty";
    const auto numPhases = [&](const kx::MeshView& mesh) {
      const bool subdivides = isCurved(mesh) && m_stamps != stampsOf(mesh);
      return kx::FenceCutter::NUM_PHASES + (subdivides ? kx::Tessellation::NUM_PHASES : 0);
    };
    return m_product.update(callback, filter, std::move(request), numPhases,
                            [&](kx::Run& run, const kx::MeshView& mesh, kx::SurfaceData& data, kx::Faults& faults) {
                              m_points.clear();
                              if constexpr (std::is_same_v<Filter, KiCellFilterI>)
                                if (isCurved(mesh)) return cutCurved(run, mesh, curtain, filter, data, faults);
                              m_cutter.cut(run, mesh, curtain, data, m_sources, faults);
                            });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set, [this](const auto& values, std::size_t vertex) {
      return m_points.size() > 0 ? m_points.valueAt(values, vertex) : m_sources[vertex].valueAt(values);
    });
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  using Stamps = std::array<std::size_t, 3>;

  bool isCurved(const kx::MeshView& mesh) const { return m_tessellator && kx::hasQuadraticCells(mesh); }
  Stamps stampsOf(const kx::MeshView& mesh) const {
    return {mesh.topologyStamp, mesh.geometryStamp, m_tessellator->getTimeStamp()};
  }

  /// Cuts the subdivided mesh; sets are mapped by the shape functions of the cells.
  void cutCurved(kx::Run& run, const kx::MeshView& mesh, const kx::Curtain& curtain, const KiCellFilterI* filter,
                 kx::SurfaceData& data, kx::Faults& faults) {
    if (const Stamps stamps = stampsOf(mesh); m_stamps != stamps) {
      m_stamps.reset();
      kx::MeshView all = mesh;
      all.setFilter(static_cast<const KiCellFilterI*>(nullptr));
      m_tessellation.build(run, all, *m_tessellator, nullptr, faults);
      m_stamps = stamps;
    }
    kx::MeshView parts(m_tessellation.mesh());
    parts.setFilter(m_partFilter.show(filter));
    m_cutter.cut(run, parts, curtain, data, m_sources, faults);
    const std::vector<std::size_t> cells = m_tessellation.nameSources(data);
    kx::CellForm form;
    kx::Blend blend;
    for (std::size_t v = 0; v < m_sources.size(); ++v) {
      const kx::Stencil& source = m_sources[v];
      if (cells[v] == kx::Tessellation::NO_CELL || !m_tessellation.loadForm(mesh, cells[v], form)) {
        m_points.add(source.nodes.data(), source.weights.data(), source.nodes.size());
        continue;
      }
      const kx::NodeBlends& nodes = m_tessellation.blends();
      const Vec3 guess = source.valueAt([&](std::size_t node) { return nodes.positionIn(form, node); });
      const Vec3 place = source.valueAt([&](std::size_t node) { return parts.points[node]; });
      form.blendAt(form.nearPosition(mesh.points, place, guess), blend);
      m_points.add(blend);
    }
  }

  kx::Product<kx::MeshView, kx::SurfaceMesh> m_product;
  kx::FenceCutter m_cutter;
  std::vector<kx::Stencil> m_sources; ///< of the output's vertices
  const KiTessellator* m_tessellator;
  std::optional<Stamps> m_stamps; ///< of what was subdivided
  kx::Tessellation m_tessellation;
  kx::PartFilter m_partFilter;
  kx::BlendList m_points; ///< of the output's vertices where cells were subdivided
};

/// Adds `extract` to a shell of either form.
template <class Shell, class Filter>
class FenceSlice final : public Shell {
public:
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(const Vec3& direction, const std::vector<Vec3>& polyline,
                                            const Filter* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), direction, polyline, filter);
  }
};

using FenceSliceI = FenceSlice<kx::PickShell<KiFenceSliceExtractUnstructured, Fence, KiDataSetI>, KiCellFilterI>;
using FenceSliceIjk = FenceSlice<kx::PickShell<KiFenceSliceExtractIjk, Fence, KiDataSetIjk>, KiCellFilterIjk>;
using FenceSliceHexahedronIjk =
    FenceSlice<kx::PickShellHexahedronIjk<KiFenceSliceExtractHexahedronIjk, Fence>, KiCellFilterIjk>;

} // namespace

KiFenceSliceExtractUnstructured* KiFenceSliceExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                                 bool parallel,
                                                                                 KiTessellator* tessellator) {
  return new FenceSliceI(mesh, parallel, "KiFenceSliceExtractUnstructured", tessellator);
}
KiFenceSliceExtractHexahedronIjk*
KiFenceSliceExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel, KiTessellator*) {
  return new FenceSliceHexahedronIjk(mesh, parallel, "KiFenceSliceExtractHexahedronIjk");
}
KiFenceSliceExtractIjk* KiFenceSliceExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh,
                                                               bool parallel, KiTessellator*) {
  return new FenceSliceIjk(mesh, parallel, "KiFenceSliceExtractIjk");
}
KiFenceSliceExtractIjk* KiFenceSliceExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                               KiTessellator*) {
  return new FenceSliceIjk(mesh, parallel, "KiFenceSliceExtractIjk");
}
KiFenceSliceExtractIjk* KiFenceSliceExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                               KiTessellator*) {
  return new FenceSliceIjk(mesh, parallel, "KiFenceSliceExtractIjk");
}
KiFenceSliceExtractIjk* KiFenceSliceExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                               KiTessellator*) {
  return new FenceSliceIjk(mesh, parallel, "KiFenceSliceExtractIjk");
}
