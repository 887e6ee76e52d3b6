// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoFaceDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailIjk<KoFaceDetail>;

/// A picked face with the indices i, j and k of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoFaceDetailIjk : public KoCellDetailIjk<KoFaceDetail> {
  NX_DETAIL_HEADER(KoFaceDetailIjk);

public:
  KoFaceDetailIjk() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoFaceDetailIjk(const KoFaceDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailIjk(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoFaceDetailIjk(*this); }
};
