// SPDX-License-Identifier: BSD-3-Clause
// Structured surface meshes as polygons.
#include "PickShell.h"
#include "SurfacePolygons.h"

#include <KerrinExtractor/KiSurfaceExtractIj.h>

namespace {

class SurfaceIj final : public kx::PickShell<KiSurfaceExtractIj, kx::SurfacePolygons, KiDataSetIj> {
public:
  using PickShell::PickShell;
  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterIj* filter) override {
    return m_state.extract(getExtractorCallback(), filter);
  }
};

} // namespace

KiSurfaceExtractIj* KiSurfaceExtractIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                                       KiTessellator*) {
  return new SurfaceIj(mesh, parallel, "KiSurfaceExtractIj");
}
KiSurfaceExtractIj* KiSurfaceExtractIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                                       KiTessellator*) {
  return new SurfaceIj(mesh, parallel, "KiSurfaceExtractIj");
}
KiSurfaceExtractIj* KiSurfaceExtractIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                                       KiTessellator*) {
  return new SurfaceIj(mesh, parallel, "KiSurfaceExtractIj");
}
