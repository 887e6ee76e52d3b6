// SPDX-License-Identifier: BSD-3-Clause
// The isosurface family: one shell per form of the contract over the same cutter.
#include "src/engine/TessellatedCutter.h"

#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

class IsosurfUnstructured final : public KiIsosurfExtractUnstructured {
public:
  IsosurfUnstructured(const KiVolumeMeshUnstructured& mesh, bool parallel, const KiTessellator* tessellator)
      : m_cutter(mesh, parallel, "KiIsosurfExtractUnstructured", tessellator) {}

  const KeXSurfaceMeshUnstructured& extract(double isovalue, const KiDataSetI<double>& isoSet,
                                            const KiCellFilterI* filter) override {
    return m_cutter.cutBySet(getExtractorCallback(), isovalue, isoSet, filter);
  }
  const KeXLineMeshUnstructured* extractLines(double isovalue, const KiDataSetI<double>& isoSet,
                                              const KiCellFilterI* filter) override {
    extract(isovalue, isoSet, filter);
    return m_cutter.traceLines(getExtractorCallback());
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_cutter.output(); }

private:
  kx::TessellatedCutter m_cutter;
};

class IsosurfIjk final : public KiIsosurfExtractIjk {
public:
  template <class Mesh>
  IsosurfIjk(const Mesh& mesh, bool parallel)
      : m_cutter(mesh, parallel, "KiIsosurfExtractIjk") {}

  const KeXSurfaceMeshUnstructured& extract(double isovalue, const KiDataSetIjk<double>& isoSet,
                                            const KiCellFilterIjk* filter) override {
    return m_cutter.cutBySet(getExtractorCallback(), isovalue, isoSet, filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetIjk<Vec3>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_cutter.output(); }

private:
  kx::SurfaceCutter m_cutter;
};

class IsosurfHexahedronIjk final : public KiIsosurfExtractHexahedronIjk {
public:
  IsosurfHexahedronIjk(const KiVolumeMeshHexahedronIjk& mesh, bool parallel)
      : m_cutter(mesh, parallel, "KiIsosurfExtractHexahedronIjk") {}

  const KeXSurfaceMeshUnstructured& extract(double isovalue, const KiDataSetIjk<double>& isoSet,
                                            const KiCellFilterIjk* filter) override {
    return m_cutter.cutBySet(getExtractorCallback(), isovalue, isoSet, filter);
  }
  const KeXSurfaceMeshUnstructured& extract(double isovalue, const KiDataSetI<double>& isoSet,
                                            const KiCellFilterIjk* filter) override {
    return m_cutter.cutBySet(getExtractorCallback(), isovalue, isoSet, filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetIjk<Vec3>& set) override {
    return m_cutter.mapSet(getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_cutter.output(); }

private:
  kx::SurfaceCutter m_cutter;
};

} // namespace

KiIsosurfExtractUnstructured* KiIsosurfExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator* tessellator) {
  return new IsosurfUnstructured(mesh, parallel, tessellator);
}
KiIsosurfExtractHexahedronIjk* KiIsosurfExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                             bool parallel, KiTessellator*) {
  return new IsosurfHexahedronIjk(mesh, parallel);
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel);
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel);
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel);
}
KiIsosurfExtractIjk* KiIsosurfExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IsosurfIjk(mesh, parallel);
}
