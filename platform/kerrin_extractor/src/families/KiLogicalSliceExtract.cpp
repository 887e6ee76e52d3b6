// SPDX-License-Identifier: BSD-3-Clause
// The logical slices: faces of one layer of cells, and the surface at a fractional position between node layers.
#include "PickShell.h"
#include "src/engine/FaceWriter.h"
#include "src/engine/LayerSurface.h"
#include "src/engine/Product.h"

#include <KerrinExtractor/KiInterpolatedLogicalSliceExtract.h>
#include <KerrinExtractor/KiInterpolatedLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractCurvilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiLogicalSliceExtractRectilinear.h>
#include <KerrinExtractor/KiLogicalSliceExtractRegular.h>

namespace {

using kx::MeshView;
using kx::SurfaceData;

/// The slices of a mesh of any structured kind.
class Slice {
public:
  template <class Mesh>
  Slice(const Mesh& mesh, bool parallel, const char* name)
      : m_product(mesh, parallel, name) {}

  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, KiMesh::Dimension axis, std::size_t index,
                                            bool isUpper, const KiCellFilterIjk* filter) {
    return m_product.update(callback, filter, kx::Request({static_cast<std::size_t>(axis), index, isUpper}),
                            kx::FaceWriter::NUM_PHASES,
                            [&](kx::Run& run, const MeshView& mesh, SurfaceData& data, kx::Faults& faults) {
                              const auto a = static_cast<std::size_t>(axis);
                              const std::vector<std::size_t> cells = kx::openCellsOfLayer(mesh, a, index);
                              kx::FaceList faces;
                              faces.resize(cells.size());
                              for (std::size_t f = 0; f < cells.size(); ++f)
                                faces[f] = {cells[f], kx::HEXAHEDRON_FACE[a][isUpper]};
                              kx::FaceWriter::write(run, mesh, faces, data, faults);
                            });
  }
  const KeXSurfaceMeshUnstructured& extract(KiExtractorCallback* callback, KiMesh::Dimension axis, double value,
                                            const KiCellFilterIjk* filter) {
    kx::Request request({static_cast<std::size_t>(axis)});
    request.add(value);
    return m_product.update(callback, filter, std::move(request), kx::LayerSurface::NUM_PHASES,
                            [&](kx::Run& run, const MeshView& mesh, SurfaceData& data, kx::Faults& faults) {
                              kx::LayerSurface::write(run, mesh, static_cast<std::size_t>(axis), value, data, faults);
                            });
  }
  template <class T, template <class> class Set>
  const KeXDataSetI<T>* map(KiExtractorCallback* callback, const Set<T>& set) {
    return m_product.map(callback, set, kx::LayerSurface::valueAt(m_product.output().data()));
  }
  const KeXSurfaceMeshUnstructured& output() const { return m_product.output(); }

private:
  kx::Product<MeshView, kx::SurfaceMesh> m_product;
};

/// Adds `extract` to a shell of either form.
template <class Shell>
class LogicalSlice final : public Shell {
public:
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(KiMesh::Dimension axis, std::size_t index, bool upperVertex,
                                            const KiCellFilterIjk* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), axis, index, upperVertex, filter);
  }
};
template <class Shell>
class InterpolatedSlice final : public Shell {
public:
  using Shell::Shell;
  const KeXSurfaceMeshUnstructured& extract(KiMesh::Dimension axis, double value,
                                            const KiCellFilterIjk* filter) override {
    return this->m_state.extract(this->getExtractorCallback(), axis, value, filter);
  }
};

template <class Base>
using Ijk = kx::PickShell<Base, Slice, KiDataSetIjk>;
template <class Base>
using Hexahedron = kx::PickShellHexahedronIjk<Base, Slice>;

} // namespace

KiLogicalSliceExtractRegular* KiLogicalSliceExtractRegular::getNewInstance(const KiVolumeMeshRegular& mesh,
                                                                           bool parallel, KiTessellator*) {
  return new LogicalSlice<Ijk<KiLogicalSliceExtractRegular>>(mesh, parallel, "KiLogicalSliceExtractRegular");
}
KiLogicalSliceExtractRectilinear* KiLogicalSliceExtractRectilinear::getNewInstance(const KiVolumeMeshRectilinear& mesh,
                                                                                   bool parallel, KiTessellator*) {
  return new LogicalSlice<Ijk<KiLogicalSliceExtractRectilinear>>(mesh, parallel, "KiLogicalSliceExtractRectilinear");
}
KiLogicalSliceExtractCurvilinear* KiLogicalSliceExtractCurvilinear::getNewInstance(const KiVolumeMeshCurvilinear& mesh,
                                                                                   bool parallel, KiTessellator*) {
  return new LogicalSlice<Ijk<KiLogicalSliceExtractCurvilinear>>(mesh, parallel, "KiLogicalSliceExtractCurvilinear");
}
KiLogicalSliceExtractHexahedronIjk*
KiLogicalSliceExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                   KiTessellator*) {
  return new LogicalSlice<Hexahedron<KiLogicalSliceExtractHexahedronIjk>>(mesh, parallel,
                                                                          "KiLogicalSliceExtractHexahedronIjk");
}

namespace {

template <class Mesh>
KiInterpolatedLogicalSliceExtract* newInterpolated(const Mesh& mesh, bool parallel) {
  return new InterpolatedSlice<Ijk<KiInterpolatedLogicalSliceExtract>>(mesh, parallel,
                                                                       "KiInterpolatedLogicalSliceExtract");
}

} // namespace

KiInterpolatedLogicalSliceExtract* KiInterpolatedLogicalSliceExtract::getNewInstance(const KiVolumeMeshRegular& mesh,
                                                                                     bool parallel, KiTessellator*) {
  return newInterpolated(mesh, parallel);
}
KiInterpolatedLogicalSliceExtract*
KiInterpolatedLogicalSliceExtract::getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel, KiTessellator*) {
  return newInterpolated(mesh, parallel);
}
KiInterpolatedLogicalSliceExtract*
KiInterpolatedLogicalSliceExtract::getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel, KiTessellator*) {
  return newInterpolated(mesh, parallel);
}
KiInterpolatedLogicalSliceExtractHexahedronIjk*
KiInterpolatedLogicalSliceExtractHexahedronIjk::getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel,
                                                               KiTessellator*) {
  return new InterpolatedSlice<Hexahedron<KiInterpolatedLogicalSliceExtractHexahedronIjk>>(
      mesh, parallel, "KiInterpolatedLogicalSliceExtractHexahedronIjk");
}
