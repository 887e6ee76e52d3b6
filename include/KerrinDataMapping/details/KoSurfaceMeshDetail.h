// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoMeshRepresentationDetail.h>

class KeXSurfaceMeshUnstructured;

/// An extracted surface mesh and the values on it.
class KERRIN_DATAMAPPING_API KoSurfaceMeshDetail : public KoMeshRepresentationDetail {
  NX_DETAIL_HEADER(KoSurfaceMeshDetail);

public:
  using ExtractedMesh = KeXSurfaceMeshUnstructured;

  KoSurfaceMeshDetail() = default;
  KoSurfaceMeshDetail(const KeXSurfaceMeshUnstructured* mesh, const ExtractedSets& sets);

  NxDetail* copy() const override { return new KoSurfaceMeshDetail(*this); }

  const KeXSurfaceMeshUnstructured* getExtractedMesh() const { return m_extractedMesh; }

private:
  const KeXSurfaceMeshUnstructured* m_extractedMesh = nullptr;
};
