// SPDX-License-Identifier: BSD-3-Clause
// The outline family: the feature edges of the skin of a volume mesh, or of a surface mesh.
#include "FacesOfMesh.h"
#include "FacesProduct.h"
#include "PickShell.h"
#include "src/engine/FaceWriter.h"
#include "src/engine/LineMesh.h"
#include "src/engine/OutlineTracer.h"
#include "src/engine/Product.h"
#include "src/engine/StructuredSkin.h"
#include "src/engine/SurfaceWriter.h"

#include <KerrinExtractor/KiOutlineExtractHexahedronIjk.h>
#include <KerrinExtractor/KiOutlineExtractIj.h>
#include <KerrinExtractor/KiOutlineExtractIjk.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>

#include <array>
#include <type_traits>

namespace {

using kx::FlatMesh;
using kx::LineData;
using kx::MeshView;

/// The polygons whose edges are looked at, and where they lie.
struct SkinOfMesh {
  static std::size_t numPhases(const MeshView& mesh) { return kx::StructuredSkin::numPhases(mesh); }

  kx::OutlineTracer::Rules rules;
  std::unique_ptr<kx::PolygonSource> polygons;

  SkinOfMesh(kx::Run& run, const MeshView& mesh, kx::Faults& faults) {
    kx::StructuredSkin::find(run, mesh, {}, m_faces);
    polygons = kx::FaceWriter::polygons(mesh, m_faces, faults);
    rules.sideOf = [this, &mesh](std::size_t polygon) { return sideOfFace(mesh.cellDims, m_faces[polygon]); };
  }
  SkinOfMesh(const SkinOfMesh&) = delete;
  SkinOfMesh& operator=(const SkinOfMesh&) = delete;

private:
  /// The face's number plus one if the face is on the index box.
  static std::uint8_t sideOfFace(const kx::Dims& cells, kx::FaceRef ref) {
    const std::array<std::size_t, 3> index = cells.split(ref.cell);
    const std::array<std::size_t, 3> counts{cells.i, cells.j, cells.k};
    for (std::size_t axis = 0; axis < 3; ++axis)
      for (std::size_t side = 0; side < 2; ++side)
        if (ref.face == kx::HEXAHEDRON_FACE[axis][side])
          return index[axis] == side * (counts[axis] - 1) ? static_cast<std::uint8_t>(ref.face + 1) : std::uint8_t{0};
    return 0;
  }

  kx::FaceList m_faces;
};

/// A surface mesh has no inner edges between the sides of its index box.
struct PolygonsOfMesh {
  static std::size_t numPhases(const FlatMesh&) { return 0; }

  kx::OutlineTracer::Rules rules;
  std::unique_ptr<kx::PolygonSource> polygons;

  PolygonsOfMesh(kx::Run&, const FlatMesh& mesh, kx::Faults& faults)
      : polygons(kx::SurfaceWriter::polygons(mesh, faults)) {}
};

template <class View>
class Outline {
public:
  template <class Mesh>
  Outline(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name) {}

  template <class Filter>
  const KeXLineMeshUnstructured& extract(KiExtractorCallback* callback, const Filter* filter) {
    using Input = std::conditional_t<std::is_same_v<View, MeshView>, SkinOfMesh, PolygonsOfMesh>;
    const auto numPhases = [](const View& mesh) { return Input::numPhases(mesh) + kx::OutlineTracer::NUM_PHASES; };
    return m_product.update(
        callback, filter, {}, numPhases, [this](kx::Run& run, const View& mesh, LineData& data, kx::Faults& faults) {
          const Input input(run, mesh, faults);
          kx::OutlineTracer::trace(run, *input.polygons, input.rules, mesh.numCells, {data, m_nodes}, faults);
        });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set,
                         [this](const auto& values, std::size_t vertex) { return values(m_nodes[vertex]); });
  }
  const KeXLineMeshUnstructured& output() const { return m_product.output(); }

private:
  kx::Product<View, kx::LineMesh> m_product;
  kx::IndexArray m_nodes; ///< the input node of each vertex
};

/// Adds `extract` to a shell of any form.
template <class Shell, class Filter>
class OutlineExtract final : public Shell {
public:
  using Shell::Shell;
  const KeXLineMeshUnstructured& extract(const Filter* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), filter);
  }
};

/// The outline of an unstructured mesh of the faces `Faces`.
template <class Faces>
class OutlineParts {
public:
  template <class Mesh>
  OutlineParts(const Mesh& mesh, bool parallel, const char* name, const KiTessellator* tessellator)
      : m_parts(mesh, parallel, name)
      , m_tessellator(tessellator) {}

  const KeXLineMeshUnstructured& extract(KiExtractorCallback* callback, const KiCellFilterI* filter) {
    return m_parts.extractLines(callback, m_tessellator, filter, kx::OutlineTracer::Selection::FEATURES);
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_parts.map(callback, set);
  }
  const KeXLineMeshUnstructured& output() const { return m_parts.lines(); }

private:
  kx::FacesProduct<Faces> m_parts;
  const KiTessellator* m_tessellator;
};

template <class Faces>
using UnstructuredOutline =
    OutlineExtract<kx::PickShell<KiOutlineExtractUnstructured, OutlineParts<Faces>, KiDataSetI>, KiCellFilterI>;
using IjOutline = OutlineExtract<kx::PickShell<KiOutlineExtractIj, Outline<FlatMesh>, KiDataSetIj>, KiCellFilterIj>;
using IjkOutline = OutlineExtract<kx::PickShell<KiOutlineExtractIjk, Outline<MeshView>, KiDataSetIjk>, KiCellFilterIjk>;
using HexahedronOutline =
    OutlineExtract<kx::PickShellHexahedronIjk<KiOutlineExtractHexahedronIjk, Outline<MeshView>>, KiCellFilterIjk>;

} // namespace

KiOutlineExtractUnstructured* KiOutlineExtractUnstructured::getNewInstance(const KiVolumeMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator* tessellator) {
  return new UnstructuredOutline<kx::SkinAsFaces>(mesh, parallel, "KiOutlineExtractUnstructured", tessellator);
}
KiOutlineExtractUnstructured* KiOutlineExtractUnstructured::getNewInstance(const KiSurfaceMeshUnstructured& mesh,
                                                                           bool parallel, KiTessellator* tessellator) {
  return new UnstructuredOutline<kx::CellsAsFaces>(mesh, parallel, "KiOutlineExtractUnstructured", tessellator);
}
KiOutlineExtractHexahedronIjk* KiOutlineExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh,
                                                                             bool parallel, KiTessellator*) {
  return new HexahedronOutline(mesh, parallel, "KiOutlineExtractHexahedronIjk");
}
KiOutlineExtractIjk* KiOutlineExtractIjk::getNewInstance(const KiVolumeMeshVertexHexahedronIjk& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IjkOutline(mesh, parallel, "KiOutlineExtractIjk");
}
KiOutlineExtractIjk* KiOutlineExtractIjk::getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IjkOutline(mesh, parallel, "KiOutlineExtractIjk");
}
KiOutlineExtractIjk* KiOutlineExtractIjk::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IjkOutline(mesh, parallel, "KiOutlineExtractIjk");
}
KiOutlineExtractIjk* KiOutlineExtractIjk::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel,
                                                         KiTessellator*) {
  return new IjkOutline(mesh, parallel, "KiOutlineExtractIjk");
}
KiOutlineExtractIj* KiOutlineExtractIj::getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel,
                                                       KiTessellator*) {
  return new IjOutline(mesh, parallel, "KiOutlineExtractIj");
}
KiOutlineExtractIj* KiOutlineExtractIj::getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel,
                                                       KiTessellator*) {
  return new IjOutline(mesh, parallel, "KiOutlineExtractIj");
}
KiOutlineExtractIj* KiOutlineExtractIj::getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel,
                                                       KiTessellator*) {
  return new IjOutline(mesh, parallel, "KiOutlineExtractIj");
}
