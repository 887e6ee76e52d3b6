// SPDX-License-Identifier: BSD-3-Clause
// Plane sections of volume meshes, sampled on a square grid.
#include "PickShell.h"
#include "src/engine/PlaneSampler.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiGridPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiGridPlaneSliceExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

class GridPlane {
public:
  template <class Mesh>
  GridPlane(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name)
      , m_locator(mesh) {}

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const Vec3& normal, double distance,
                                            double step, const Filter* filter) {
    const kx::PlaneGrid grid(normal, distance, step);
    kx::Request request;
    request.add(normal).add(distance).add(step);
    request.fault = grid.fault();
    const kx::Changes changes = m_locator.getChanges();
    const std::size_t numPhases = m_locator.numPhases(changes) + kx::PlaneSampler::NUM_PHASES;
    return m_product.update(callback, filter, std::move(request), numPhases,
                            [&](kx::Run& run, const kx::MeshView&, kx::SurfaceData& data, kx::Faults& faults) {
                              m_locator.update(run, changes, faults);
                              m_locator.setFilter(filter);
                              kx::PlaneSampler::sample(run, m_locator, grid, data, m_sources, faults);
                            });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set,
                         [this](const auto& values, std::size_t vertex) { return m_sources.valueAt(values, vertex); });
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  kx::Product<kx::MeshView, kx::SurfaceMesh> m_product;
  kx::VolumeLocator m_locator;
  kx::NodeWeights m_sources; ///< of the output's vertices
};

/// Adds `extract` to a shell of either form.
template <class Shell, class Filter>
class GridPlaneSlice final : public Shell {
public:
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(const Vec3& normal, double distance, double step,
                                            const Filter* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), normal, distance, step, filter);
  }
};

using GridPlaneSliceI =
    GridPlaneSlice<kx::PickShell<KiGridPlaneSliceExtractUnstructured, GridPlane, KiDataSetI>, KiCellFilterI>;
using GridPlaneSliceIjk =
    GridPlaneSlice<kx::PickShell<KiGridPlaneSliceExtractIjk, GridPlane, KiDataSetIjk>, KiCellFilterIjk>;
using GridPlaneSliceHexahedronIjk =
    GridPlaneSlice<kx::PickShellHexahedronIjk<KiGridPlaneSliceExtractHexahedronIjk, GridPlane>, KiCellFilterIjk>;

} // namespace

KiGridPlaneSliceExtractUnstructured*
KiGridPlaneSliceExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                    KiTessellator*) {
  return new GridPlaneSliceI(mesh, parallel, "KiGridPlaneSliceExtractUnstructured");
}
KiGridPlaneSliceExtractHexahedronIjk*
KiGridPlaneSliceExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                     KiTessellator*) {
  return new GridPlaneSliceHexahedronIjk(mesh, parallel, "KiGridPlaneSliceExtractHexahedronIjk");
}
KiGridPlaneSliceExtractIjk* KiGridPlaneSliceExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                                       KiTessellator*) {
  return new GridPlaneSliceIjk(mesh, parallel, "KiGridPlaneSliceExtractIjk");
}
KiGridPlaneSliceExtractIjk* KiGridPlaneSliceExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh,
                                                                       bool parallel, KiTessellator*) {
  return new GridPlaneSliceIjk(mesh, parallel, "KiGridPlaneSliceExtractIjk");
}
KiGridPlaneSliceExtractIjk* KiGridPlaneSliceExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh,
                                                                       bool parallel, KiTessellator*) {
  return new GridPlaneSliceIjk(mesh, parallel, "KiGridPlaneSliceExtractIjk");
}
