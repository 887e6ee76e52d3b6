// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoFaceDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailIj<KoFaceDetail>;

/// A picked face with the indices i and j of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoFaceDetailIj : public KoCellDetailIj<KoFaceDetail> {
  NX_DETAIL_HEADER(KoFaceDetailIj);

public:
  KoFaceDetailIj() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoFaceDetailIj(const KoFaceDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailIj(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoFaceDetailIj(*this); }
};
