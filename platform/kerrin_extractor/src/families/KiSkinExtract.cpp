// SPDX-License-Identifier: BSD-3-Clause
// The skin family: the faces of open cells that no other open cell shares.
#include "src/engine/FaceWriter.h"
#include "src/engine/Product.h"
#include "src/engine/StructuredSkin.h"
#include "src/engine/UnstructuredSkin.h"

#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;
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
    return m_product.update(callback, filter, m_ranges.values(),
                            kx::FaceWriter::NUM_PHASES + kx::UnstructuredSkin::NUM_PHASES,
                            [this](kx::Run& run, const MeshView& mesh, SurfaceData& data, kx::Faults& faults) {
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
static_assert(kx::StructuredSkin::NUM_PHASES == kx::UnstructuredSkin::NUM_PHASES);

class SkinUnstructured final : public KiSkinExtractUnstructured {
public:
  SkinUnstructured(const KiVolumeMeshUnstructured& mesh, bool parallel)
      : m_skin(mesh, parallel, "KiSkinExtractUnstructured") {}

  void addCellRange(std::size_t min, std::size_t max) override { m_skin.addRange(min, max); }
  void clearCellRanges() override { m_skin.clearRanges(); }
  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterI* filter) override {
    return m_skin.extract(getExtractorCallback(), filter);
  }
  const KeXLineMeshUnstructured* extractLines(const KiCellFilterI*) override { return nullptr; }
  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI*) override { return nullptr; }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_skin.map(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_skin.map(getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_skin.output(); }

private:
  Skin m_skin;
};

/// The operations that both structured forms have.
template <class Base>
class SkinStructured : public Base {
public:
  using Bounds = KbVec3<std::size_t>;
  template <class Mesh>
  SkinStructured(const Mesh& mesh, bool parallel, const char* name)
      : m_skin(mesh, parallel, name) {}

  void addCellRange(const Bounds& min, const Bounds& max) override { m_skin.addRange(min, max); }
  void clearCellRanges() override { m_skin.clearRanges(); }
  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterIjk* filter) override {
    return m_skin.extract(this->getExtractorCallback(), filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) override {
    return m_skin.map(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetIjk<Vec3>& set) override {
    return m_skin.map(this->getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_skin.output(); }

protected:
  Skin m_skin;
};

class SkinIjk final : public SkinStructured<KiSkinExtractIjk> {
public:
  template <class Mesh>
  SkinIjk(const Mesh& mesh, bool parallel)
      : SkinStructured(mesh, parallel, "KiSkinExtractIjk") {}
};

class SkinHexahedronIjk final : public SkinStructured<KiSkinExtractHexahedronIjk> {
public:
  SkinHexahedronIjk(const KiVolumeMeshHexahedronIjk& mesh, bool parallel)
      : SkinStructured(mesh, parallel, "KiSkinExtractHexahedronIjk") {}

  using SkinStructured::extractScalarSet;
  using SkinStructured::extractVec3Set;
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_skin.map(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_skin.map(getExtractorCallback(), set);
  }
};

} // namespace

KiSkinExtractUnstructured* KiSkinExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                     bool parallel, KiTessellator*) {
  return new SkinUnstructured(mesh, parallel);
}
KiSkinExtractHexahedronIjk* KiSkinExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                       bool parallel, KiTessellator*) {
  return new SkinHexahedronIjk(mesh, parallel);
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                   KiTessellator*) {
  return new SkinIjk(mesh, parallel);
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel);
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel);
}
KiSkinExtractIjk* KiSkinExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel, KiTessellator*) {
  return new SkinIjk(mesh, parallel);
}
