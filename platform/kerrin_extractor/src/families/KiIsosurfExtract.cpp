// SPDX-License-Identifier: BSD-3-Clause
// The isosurface family: one shell per form of the contract over the same cutter.
#include "CutShell.h"

#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

namespace {

/// Adds `extract` to a shell of any form.
template <class Shell, template <class> class Set, class Filter>
class Isosurf : public Shell {
public:
  using Shell::extract;
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(double isovalue, const Set<double>& isoSet, const Filter* filter) override {
    return this->m_state.cutBySet(this->getExtractorCallback(), isovalue, isoSet, filter);
  }
};

class IsosurfUnstructured final
    : public Isosurf<kx::CutShellI<KiIsosurfExtractUnstructured>, KiDataSetI, KiCellFilterI> {
public:
  using Isosurf::Isosurf;
  const KeXLineMeshUnstructured* extractLines(double isovalue, const KiDataSetI<double>& isoSet,
                                              const KiCellFilterI* filter) override {
    extract(isovalue, isoSet, filter);
    return m_state.traceLines(getExtractorCallback());
  }
};

using IsosurfIjk = Isosurf<kx::CutShellIjk<KiIsosurfExtractIjk>, KiDataSetIjk, KiCellFilterIjk>;
/// Sets to cut by have two forms.
using IsosurfHexahedronIjk =
    Isosurf<Isosurf<kx::CutShellHexahedronIjk<KiIsosurfExtractHexahedronIjk>, KiDataSetIjk, KiCellFilterIjk>,
            KiDataSetI, KiCellFilterIjk>;

} // namespace

KiIsosurfExtractUnstructured* KiIsosurfExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator* tessellator) {
  return new IsosurfUnstructured(mesh, parallel, "KiIsosurfExtractUnstructured", tessellator);
}
KiIsosurfExtractHexahedronIjk* KiIsosurfExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                             bool parallel, KiTessellator*) {
  return new IsosurfHexahedronIjk(mesh, parallel, "KiIsosurfExtractHexahedronIjk");
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel, "KiIsosurfExtractIjk");
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel, "KiIsosurfExtractIjk");
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel, "KiIsosurfExtractIjk");
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel, "KiIsosurfExtractIjk");
}
