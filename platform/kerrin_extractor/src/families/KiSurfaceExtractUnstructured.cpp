// SPDX-License-Identifier: BSD-3-Clause
// Unstructured surface meshes as polygons, their edges and their points.
#include "FacesOfMesh.h"
#include "FacesProduct.h"

#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedSurfaceExtract.h>
#include <KerrinExtractor/KxSurfaceExtractFactory.h>

namespace {

using Vec3 = KbVec3<double>;

/// The operations that both classes have.
template <class Interface>
class SurfaceShell : public Interface {
public:
  SurfaceShell(const KiSurfaceMeshUnstructured& mesh, bool parallel, const char* name)
      : m_parts(mesh, parallel, name) {}

  const KeXSurfaceMeshUnstructured& extract(KiTessellator* tessellator, const KiCellFilterI* filter) override {
    return m_parts.extract(this->getExtractorCallback(), tessellator, filter);
  }
  const KeXLineMeshUnstructured* extractLines(KiTessellator* tessellator, const KiCellFilterI* filter) override {
    return &m_parts.extractLines(this->getExtractorCallback(), tessellator, filter, kx::OutlineTracer::Selection::ALL);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_parts.map(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_parts.map(this->getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_parts.output(); }

protected:
  kx::FacesProduct<kx::CellsAsFaces> m_parts;
};

class SurfaceUnstructured final : public SurfaceShell<KiSurfaceExtractUnstructured> {
public:
  SurfaceUnstructured(const KiSurfaceMeshUnstructured& mesh, bool parallel, KiTessellator* tessellator)
      : SurfaceShell(mesh, parallel, "KiSurfaceExtractUnstructured")
      , m_tessellator(tessellator) {}

  using SurfaceShell::extract;
  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterI* filter) override {
    return extract(m_tessellator, filter);
  }
  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) override {
    return &m_parts.extractPoints(getExtractorCallback(), m_tessellator != nullptr, filter);
  }

private:
  KiTessellator* m_tessellator;
};

class TessellatedSurface final : public SurfaceShell<KiTessellatedSurfaceExtract> {
public:
  TessellatedSurface(const KiSurfaceMeshUnstructured& mesh, bool parallel)
      : SurfaceShell(mesh, parallel, "KiTessellatedSurfaceExtract") {}

  const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) override {
    return &m_parts.extractPoints(getExtractorCallback(), true, filter);
  }
};

} // namespace

KiSurfaceExtractUnstructured* KiSurfaceExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator* tessellator) {
  return new SurfaceUnstructured(mesh, parallel, tessellator);
}

KiTessellatedSurfaceExtract* KiTessellatedSurfaceExtract::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                         bool parallel) {
  return new TessellatedSurface(mesh, parallel);
}

KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshCurvilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshRectilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshRegular& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractIj* KxSurfaceExtractFactory::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel) {
  return KiSurfaceExtractIj::getNewInstance(mesh, parallel, nullptr);
}
KiSurfaceExtractUnstructured* KxSurfaceExtractFactory::getNewInstance(const KeXSurfaceMeshUnstructured& mesh,
                                                                      bool parallel, KiTessellator* tessellator) {
  return KiSurfaceExtractUnstructured::getNewInstance(mesh, parallel, tessellator);
}
