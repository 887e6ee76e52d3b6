// SPDX-License-Identifier: BSD-3-Clause
// Sections by planes, spheres and cylinders: each family is its function of space; the three forms of the contract are
// written once.
#include "src/engine/TessellatedCutter.h"

#include <KerrinExtractor/KiCylinderSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractIjk.h>
#include <KerrinExtractor/KiCylinderSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSphereSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractIjk.h>
#include <KerrinExtractor/KiSphereSliceExtractUnstructured.h>

namespace {

using Vec3 = KbVec3<double>;

/// A contract class over flat cells: `P` are its parameters, from which `Function` is made.
template <class Base, class Function, class... P>
class SliceI : public Base {
public:
  SliceI(const KiVolumeMeshUnstructured& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : m_cutter(mesh, parallel, name, tessellator) {}

  const KeXSurfaceMeshUnstructured& extract(P... parameters, const KiCellFilterI* filter) override {
    return m_cutter.cutByFunction(this->getExtractorCallback(), Function(parameters...), filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return m_cutter.mapSet(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return m_cutter.mapSet(this->getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_cutter.output(); }

protected:
  kx::TessellatedCutter m_cutter;
};

/// The same over cells addressed by (i, j, k).
template <class Base, class Function, class... P>
class SliceIjk : public Base {
public:
  template <class Mesh>
  SliceIjk(const Mesh& mesh, bool parallel, const char* name, const KiTessellator*)
      : m_cutter(mesh, parallel, name) {}

  const KeXSurfaceMeshUnstructured& extract(P... parameters, const KiCellFilterIjk* filter) override {
    return m_cutter.cutByFunction(this->getExtractorCallback(), Function(parameters...), filter);
  }
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) override {
    return m_cutter.mapSet(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetIjk<Vec3>& set) override {
    return m_cutter.mapSet(this->getExtractorCallback(), set);
  }
  const KeXSurfaceMeshUnstructured& getExtract() const override { return m_cutter.output(); }

protected:
  kx::SurfaceCutter m_cutter;
};

/// With flat nodes besides.
template <class Base, class Function, class... P>
class SliceHexahedronIjk final : public SliceIjk<Base, Function, P...> {
public:
  using SliceIjk<Base, Function, P...>::SliceIjk;
  using SliceIjk<Base, Function, P...>::extractScalarSet;
  using SliceIjk<Base, Function, P...>::extractVec3Set;

  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) override {
    return this->m_cutter.mapSet(this->getExtractorCallback(), set);
  }
  const KeXDataSetI<Vec3>* extractVec3Set(const KiDataSetI<Vec3>& set) override {
    return this->m_cutter.mapSet(this->getExtractorCallback(), set);
  }
};

class PlaneSliceUnstructured final
    : public SliceI<KiPlaneSliceExtractUnstructured, kx::PlaneFunction, const Vec3&, double> {
public:
  using SliceI::SliceI;
  const KeXLineMeshUnstructured* extractLines(const Vec3& normal, double distance,
                                              const KiCellFilterI* filter) override {
    extract(normal, distance, filter);
    return m_cutter.traceLines(getExtractorCallback());
  }
};

using SphereSliceUnstructured = SliceI<KiSphereSliceExtractUnstructured, kx::SphereFunction, const Vec3&, double>;
using CylinderSliceUnstructured =
    SliceI<KiCylinderSliceExtractUnstructured, kx::CylinderFunction, const Vec3&, double, const Vec3&>;
using PlaneSliceIjk = SliceIjk<KiPlaneSliceExtractIjk, kx::PlaneFunction, const Vec3&, double>;
using SphereSliceIjk = SliceIjk<KiSphereSliceExtractIjk, kx::SphereFunction, const Vec3&, double>;
using CylinderSliceIjk = SliceIjk<KiCylinderSliceExtractIjk, kx::CylinderFunction, const Vec3&, double, const Vec3&>;
using PlaneSliceHexahedronIjk =
    SliceHexahedronIjk<KiPlaneSliceExtractHexahedronIjk, kx::PlaneFunction, const Vec3&, double>;
using SphereSliceHexahedronIjk =
    SliceHexahedronIjk<KiSphereSliceExtractHexahedronIjk, kx::SphereFunction, const Vec3&, double>;
using CylinderSliceHexahedronIjk =
    SliceHexahedronIjk<KiCylinderSliceExtractHexahedronIjk, kx::CylinderFunction, const Vec3&, double, const Vec3&>;

} // namespace

// Every class and mesh kind of the contract, each made by the class of its name above.
#define KX_MAKE(Class, Mesh)                                                                                           \
  Ki##Class* Ki##Class::getNewInstance(const Mesh& mesh, bool parallel, KiTessellator* tessellator) {                  \
    return new Class##Made(mesh, parallel, "Ki" #Class, tessellator);                                                  \
  }
#define KX_MAKE_FAMILY(Family)                                                                                         \
  using Family##ExtractUnstructuredMade = Family##Unstructured;                                                        \
  using Family##ExtractIjkMade = Family##Ijk;                                                                          \
  using Family##ExtractHexahedronIjkMade = Family##HexahedronIjk;                                                      \
  KX_MAKE(Family##ExtractUnstructured, KiVolumeMeshUnstructured)                                                       \
  KX_MAKE(Family##ExtractHexahedronIjk, KiVolumeMeshHexahedronIjk)                                                     \
  KX_MAKE(Family##ExtractIjk, KiVolumeMeshVertexHexahedronIjk)                                                         \
  KX_MAKE(Family##ExtractIjk, KiVolumeMeshRegular)                                                                     \
  KX_MAKE(Family##ExtractIjk, KiVolumeMeshRectilinear)                                                                 \
  KX_MAKE(Family##ExtractIjk, KiVolumeMeshCurvilinear)

KX_MAKE_FAMILY(PlaneSlice)
KX_MAKE_FAMILY(SphereSlice)
KX_MAKE_FAMILY(CylinderSlice)

#undef KX_MAKE_FAMILY
#undef KX_MAKE
