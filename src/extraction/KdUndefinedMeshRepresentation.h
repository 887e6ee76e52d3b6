// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extraction/KdMeshRepresentation.h"

class KoMeshRepresentation;

/// The driver for no mesh or an unsupported one: it keeps the node empty.
class KdUndefinedMeshRepresentation final : public virtual KdMeshRepresentation {
public:
  explicit KdUndefinedMeshRepresentation(KoMeshRepresentation& node)
      : m_node(node) {}

  KiBaseExtractor* getExtractor() override { return nullptr; }
  MeshType getMeshType() const override { return UNDEFINED_MESH_TYPE; }
  void doExtract(NxState* state, const KiMesh* mesh) override;
  void rayPick(NxRayPickAction*) override {}
  const KiTypedDataSet<double>* extractScalarSet(NxState*, std::size_t) override { return nullptr; }
  const KiTypedDataSet<double>* extractScalarSet(const KiTypedDataSet<double>*) override { return nullptr; }
  void clear() override {}
  bool prepareClear() override { return true; }
  const KiMesh* getExtractedMesh(MeshType& type) const override;
  const KiTypedDataSet<KbVec3<double>>* extractVec3Set(NxState*, std::size_t) override { return nullptr; }

private:
  KoMeshRepresentation& m_node;
};
