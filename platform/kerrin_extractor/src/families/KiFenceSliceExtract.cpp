// SPDX-License-Identifier: BSD-3-Clause
// Sections of volume meshes by a curtain.
#include "PickShell.h"
#include "src/engine/FenceCutter.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>

#include <bit>

namespace {

using Vec3 = KbVec3<double>;

class Fence {
public:
  template <class Mesh>
  Fence(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name) {}

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const Vec3& direction,
                                            const std::vector<Vec3>& polyline, const Filter* filter) {
    std::vector<std::size_t> parameters;
    const auto add = [&parameters](const Vec3& v) {
      for (std::size_t axis = 0; axis < 3; ++axis)
        parameters.push_back(std::bit_cast<std::size_t>(v[axis]));
    };
    add(direction);
    for (const Vec3& p : polyline)
      add(p);
    const kx::Curtain curtain(direction, polyline);
    const bool isEmpty = curtain.numSegments() == 0;
    return m_product.update(callback, filter, std::move(parameters), isEmpty ? 0 : kx::FenceCutter::NUM_PHASES,
                            [&](kx::Run& run, const kx::MeshView& mesh, kx::SurfaceData& data, kx::Faults& faults) {
                              if (!isEmpty) {
                                m_cutter.cut(run, mesh, curtain, data, m_sources, faults);
                                return;
                              }
                              faults.post(curtain.fault().empty() ? "the polyline is empty" : curtain.fault());
                              data.clear();
                            });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set,
                         [this](const auto& values, std::size_t vertex) { return m_sources[vertex].valueAt(values); });
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  kx::Product<kx::MeshView, kx::SurfaceMesh> m_product;
  kx::FenceCutter m_cutter;
  std::vector<kx::Stencil> m_sources; ///< of the output's vertices
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
                                                                                 bool parallel, KiTessellator*) {
  return new FenceSliceI(mesh, parallel, "KiFenceSliceExtractUnstructured");
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
