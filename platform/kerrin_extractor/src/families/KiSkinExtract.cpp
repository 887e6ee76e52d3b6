// SPDX-License-Identifier: BSD-3-Clause
// The skin family: the faces of open cells that no other open cell shares.
#include "FacesOfMesh.h"
#include "FacesProduct.h"
#include "PickShell.h"
#include "src/engine/BoxSkin.h"
#include "src/engine/FaceWriter.h"
#include "src/engine/Product.h"
#include "src/engine/StructuredSkin.h"

#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>

namespace {

using kx::MeshView;
using kx::SurfaceData;

/// The skin of a structured mesh of any kind, with its cell ranges.
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
      if (kx::BoxSkin::find(mesh, m_ranges)) return kx::BoxSkin::NUM_PHASES;
      return kx::StructuredSkin::numPhases(mesh) + kx::FaceWriter::NUM_PHASES;
    };
    return m_product.update(callback, filter, m_ranges.values(), numPhases,
                            [this](kx::Run& run, const MeshView& mesh, SurfaceData& data, kx::Faults& faults) {
                              const std::optional<kx::IndexBox> box = kx::BoxSkin::find(mesh, m_ranges);
                              if (box && kx::BoxSkin::write(run, mesh, *box, data)) return;
                              kx::FaceList faces;
                              kx::StructuredSkin::find(run, mesh, m_ranges, faces);
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

/// The same on an unstructured mesh.
class SkinParts {
public:
  SkinParts(const KiVolumeMeshUnstructured& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : m_parts(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  void addRange(std::size_t min, std::size_t max) { m_parts.faces().ranges.add(min, max); }
  void clearRanges() { m_parts.faces().ranges.clear(); }
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, const KiCellFilterI* filter) {
    return m_parts.extract(callback, m_tessellator, filter);
  }
  const KeXLineMeshUnstructured* extractLines(KiExtractorCallback* callback, const KiCellFilterI* filter) {
    if (!isSubdivided()) return nullptr;
    return &m_parts.extractLines(callback, m_tessellator, filter, kx::OutlineTracer::Selection::ALL);
  }
  const KeXPointMeshCurvilinear* extractPoints(KiExtractorCallback* callback, const KiCellFilterI* filter) {
    return isSubdivided() ? &m_parts.extractPoints(callback, true, filter) : nullptr;
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_parts.map(callback, set);
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_parts.output(); }

private:
  bool isSubdivided() { return m_tessellator && m_parts.hasQuadraticCells(); }

  kx::FacesProduct<kx::SkinAsFaces> m_parts;
  const KiTessellator* m_tessellator;
};

class SkinUnstructured final
    : public SkinExtract<kx::PickShell<KiSkinExtractUnstructured, SkinParts, KiDataSetI>, std::size_t, KiCellFilterI> {
public:
  using SkinExtract::SkinExtract;
  const KeXLineMeshUnstructured* extractLines(const KiCellFilterI* filter) override {
    return m_state.extractLines(getExtractorCallback(), filter);
  }
  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) override {
    return m_state.extractPoints(getExtractorCallback(), filter);
  }
};

template <class Shell>
using SkinStructured = SkinExtract<Shell, const KbVec3<std::size_t>&, KiCellFilterIjk>;
using SkinIjk = SkinStructured<kx::PickShell<KiSkinExtractIjk, Skin, KiDataSetIjk>>;
using SkinHexahedronIjk = SkinStructured<kx::PickShellHexahedronIjk<KiSkinExtractHexahedronIjk, Skin>>;

} // namespace

KiSkinExtractUnstructured* KiSkinExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                     bool parallel, KiTessellator* tessellator) {
  return new SkinUnstructured(mesh, parallel, "KiSkinExtractUnstructured", tessellator);
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
