// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "display/KdSurfaceMesh.h"
#include "extraction/KdMeshRepresentationFor.h"

#include <KerrinDataMapping/nodes/KoMeshSurfaceRepresentation.h>

/// The driver of an extract that yields a surface, shown by the node's surface display.
template <class Extract>
class KdMeshSurfaceRepresentation : public KdMeshRepresentationFor<Extract> {
  using Base = KdMeshRepresentationFor<Extract>;

public:
  bool prepareClear() override {
    this->clear();
    m_surface.clear();
    return true;
  }

  const KiMesh* getExtractedMesh(MeshType& type) const override {
    type = SURFACE_UNSTRUCTURED;
    return this->getExtract() ? this->getExtract()->getExtract() : nullptr;
  }

  void rayPick(NxRayPickAction* action) override { m_surface.fillPickedPoints(action); }

protected:
  KdMeshSurfaceRepresentation(KoMeshSurfaceRepresentation& node, std::string name)
      : Base(node, std::move(name))
      , m_surface(node.getSurfaceDisplay()) {
    constexpr MeshType type = Base::Traits::MESH_TYPE;
    m_surface.setUseSinglePassOutline(type != VOLUME_UNSTRUCTURED && type != SURFACE_UNSTRUCTURED);
  }

  void display(NxState* state, const typename Base::ColorSets& colorSets,
               const typename Base::Traits::CellFilter* cellFilter) override {
    this->getExtractionThread().extract(state, colorSets, cellFilter);
    typename KdExtractionThread<Extract>::ExtractedSets extractedSets;
    const auto* mesh = this->getExtractionThread().getResult(extractedSets);
    m_surface.setSurfaceMesh(state, mesh, extractedSets);
  }

private:
  KdSurfaceMesh& m_surface;
};
