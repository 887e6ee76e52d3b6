// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoFaceDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailI<KoFaceDetail>;

/// A picked face with the flat index of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoFaceDetailI : public KoCellDetailI<KoFaceDetail> {
  NX_DETAIL_HEADER(KoFaceDetailI);

public:
  KoFaceDetailI() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoFaceDetailI(const KoFaceDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailI(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoFaceDetailI(*this); }
};
