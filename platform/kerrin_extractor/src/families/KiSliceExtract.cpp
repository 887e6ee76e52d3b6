// SPDX-License-Identifier: BSD-3-Clause
// Sections by planes, spheres and cylinders: each family is its function of space; the three forms of the contract are
// written once.
#include "CutShell.h"
#include "src/engine/KnownFunctions.h"

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

/// Adds `extract` to a shell of any form: `P` are the parameters of the family, from which `Function` is made.
template <class Shell, class Filter, class Function, class... P>
class Slice : public Shell {
public:
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(P... parameters, const Filter* filter) override {
    return this->m_state.cutByFunction(this->getExtractorCallback(), Function(parameters...), filter);
  }
};

template <class Base, class Function, class... P>
using SliceI = Slice<kx::CutShellI<Base>, KiCellFilterI, Function, P...>;
template <class Base, class Function, class... P>
using SliceIjk = Slice<kx::CutShellIjk<Base>, KiCellFilterIjk, Function, P...>;
template <class Base, class Function, class... P>
using SliceHexahedronIjk = Slice<kx::CutShellHexahedronIjk<Base>, KiCellFilterIjk, Function, P...>;

class PlaneSliceUnstructured final
    : public SliceI<KiPlaneSliceExtractUnstructured, kx::PlaneFunction, const Vec3&, double> {
public:
  using Slice::Slice;
  const KeXLineMeshUnstructured* extractLines(const Vec3& normal, double distance,
                                              const KiCellFilterI* filter) override {
    extract(normal, distance, filter);
    return m_state.traceLines(getExtractorCallback());
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

/// Shells of structured meshes take no tessellator.
template <class Extractor, class Mesh>
Extractor* make(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator) {
  if constexpr (std::is_same_v<Mesh, KiVolumeMeshUnstructured>)
    return new Extractor(mesh, parallel, name, tessellator);
  else
    return new Extractor(mesh, parallel, name);
}

} // namespace

// Every class and mesh kind of the contract, each made by the class of its name above.
#define KX_MAKE(Class, Mesh)                                                                                           \
  Ki##Class* Ki##Class::getNewInstance(const Mesh& mesh, bool parallel, KiTessellator* tessellator) {                  \
    return make<Class##Made>(mesh, parallel, "Ki" #Class, tessellator);                                                \
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
