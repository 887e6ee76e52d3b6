// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoCellDetail.h>
#include <KerrinDataMapping/details/KoSurfaceMeshDetail.h>
#include <Nyx/details/NxFaceDetail.h>

// Exported once for all: a template argument that is imported would hide the instance.
extern template class KERRIN_DATAMAPPING_API KoCellDetail<NxFaceDetail, KoSurfaceMeshDetail>;

/// A picked face of an extracted mesh, and the data values at the picked point.
class KERRIN_DATAMAPPING_API KoFaceDetail : public KoCellDetail<NxFaceDetail, KoSurfaceMeshDetail> {
  NX_DETAIL_HEADER(KoFaceDetail);

public:
  KoFaceDetail() = default;
  /// `facetMapping` may be null when the extracted mesh has no dead cells.
  KoFaceDetail(const NxFaceDetail* detail, const KoSurfaceMeshDetail* representationDetail,
               const std::vector<std::size_t>* facetMapping);

  NxDetail* copy() const override { return new KoFaceDetail(*this); }
};
