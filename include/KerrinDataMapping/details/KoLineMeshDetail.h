// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoMeshRepresentationDetail.h>

class KeXLineMeshUnstructured;

/// An extracted line mesh and the values on it.
class KERRIN_DATAMAPPING_API KoLineMeshDetail : public KoMeshRepresentationDetail {
  NX_DETAIL_HEADER(KoLineMeshDetail);

public:
  using ExtractedMesh = KeXLineMeshUnstructured;

  KoLineMeshDetail() = default;
  KoLineMeshDetail(const KeXLineMeshUnstructured* mesh, const ExtractedSets& sets);

  NxDetail* copy() const override { return new KoLineMeshDetail(*this); }

  const KeXLineMeshUnstructured* getExtractedMesh() const { return m_extractedMesh; }

private:
  const KeXLineMeshUnstructured* m_extractedMesh = nullptr;
};
