// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoLineDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailI<KoLineDetail>;

/// A picked line with the flat index of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoLineDetailI : public KoCellDetailI<KoLineDetail> {
  NX_DETAIL_HEADER(KoLineDetailI);

public:
  KoLineDetailI() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoLineDetailI(const KoLineDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailI(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoLineDetailI(*this); }
};
