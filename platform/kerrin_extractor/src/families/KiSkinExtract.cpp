// SPDX-License-Identifier: BSD-3-Clause
// The skin family: the faces of open cells that no other open cell shares.
#include "PickShell.h"
#include "src/engine/BoxSkin.h"
#include "src/engine/FaceWriter.h"
#include "src/engine/Product.h"
#include "src/engine/StructuredSkin.h"
#include "src/engine/UnstructuredSkin.h"

#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>

namespace {

using kx::MeshView;
using kx::SurfaceData;

/// The skin of a mesh of any kind, with its cell ranges.
class Skin {
public:
  template <class Mesh>
  Skin(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name) {}

  template <class Bound>
  void addRange(const Bound& min, const Bound& max) {
    m_ranges.add(min, max);
  }
  void clearRanges() { m_ranges.clear(); }

  template <class Filter>
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const Filter* filter) {
    const auto numPhases = [this](const MeshView& mesh) {
      if (!mesh.isStructured) return kx::UnstructuredSkin::NUM_PHASES + kx::FaceWriter::NUM_PHASES;
      if (kx::BoxSkin::find(mesh, m_ranges)) return kx::BoxSkin::NUM_PHASES;
      return kx::StructuredSkin::numPhases(mesh) + kx::FaceWriter::NUM_PHASES;
    };
    return m_product.update(callback, filter, m_ranges.values(), numPhases,
                            [this](kx::Run& run, const MeshView& mesh, SurfaceData& data, kx::Faults& faults) {
                              const std::optional<kx::IndexBox> box = kx::BoxSkin::find(mesh, m_ranges);
                              if (box && kx::BoxSkin::write(run, mesh, *box, data)) return;
                              kx::FaceList faces;
                              if (mesh.isStructured)
                                kx::StructuredSkin::find(run, mesh, m_ranges, faces);
                              else
                                kx::UnstructuredSkin::find(run, mesh, m_ranges, faces, faults);
                              kx::FaceWriter::write(run, mesh, faces, data, faults);
                            });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set, kx::FaceWriter::valueAt(m_product.output().data()));
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  kx::Product<MeshView, kx::SurfaceMesh> m_product;
  kx::CellRanges m_ranges;
};

/// Adds the cell ranges, with ends given as `Bound`, and `extract` to a shell of any form.
template <class Shell, class Bound, class Filter>
class SkinExtract : public Shell {
public:
  using Shell::Shell;
  void addCellRange(Bound min, Bound max) override { this->m_state.addRange(min, max); }
  void clearCellRanges() override { this->m_state.clearRanges(); }
  const KeXSurfaceMeshUnstructured& extract(const Filter* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), filter);
  }
};

class SkinUnstructured final
    : public SkinExtract<kx::PickShell<KiSkinExtractUnstructured, Skin, KiDataSetI>, std::size_t, KiCellFilterI> {
public:
  using SkinExtract::SkinExtract;
  const KeXLineMeshUnstructured* extractLines(const KiCellFilterI*) override { return nullptr; }
  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI*) override { return nullptr; }
};

template <class Shell>
using SkinStructured = SkinExtract<Shell, const KbVec3<std::size_t>&, KiCellFilterIjk>;
using SkinIjk = SkinStructured<kx::PickShell<KiSkinExtractIjk, Skin, KiDataSetIjk>>;
using SkinHexahedronIjk = SkinStructured<kx::PickShellHexahedronIjk<KiSkinExtractHexahedronIjk, Skin>>;

} // namespace

KiSkinExtractUnstructured* KiSkinExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                     bool parallel, KiTessellator*) {
  return new SkinUnstructured(mesh, parallel, "KiSkinExtractUnstructured");
}
KiSkinExtractHexahedronIjk* KiSkinExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                       bool parallel, KiTessellator*) {
  return new SkinHexahedronIjk(mesh, parallel, "KiSkinExtractHexahedronIjk");
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                   KiTessellator*) {
  return new SkinIjk(mesh, parallel, "KiSkinExtractIjk");
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel, "KiSkinExtractIjk");
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel, "KiSkinExtractIjk");
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel, "KiSkinExtractIjk");
}
