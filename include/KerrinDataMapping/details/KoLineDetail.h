// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoCellDetail.h>
#include <KerrinDataMapping/details/KoLineMeshDetail.h>
#include <Nyx/details/NxLineDetail.h>

// Exported once for all: a template argument that is imported would hide the instance.
extern template class KERRIN_DATAMAPPING_API KoCellDetail<NxLineDetail, KoLineMeshDetail>;

/// A picked line of an extracted mesh, and the data values at the picked point.
class KERRIN_DATAMAPPING_API KoLineDetail : public KoCellDetail<NxLineDetail, KoLineMeshDetail> {
  NX_DETAIL_HEADER(KoLineDetail);

public:
  KoLineDetail() = default;
  /// `lineMapping` may be null when the extracted mesh has no dead cells.
  KoLineDetail(const NxLineDetail* detail, const KoLineMeshDetail* representationDetail,
               const std::vector<std::size_t>* lineMapping);

  NxDetail* copy() const override { return new KoLineDetail(*this); }
};
