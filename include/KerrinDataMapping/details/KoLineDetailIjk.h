// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoLineDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailIjk<KoLineDetail>;

/// A picked line with the indices i, j and k of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoLineDetailIjk : public KoCellDetailIjk<KoLineDetail> {
  NX_DETAIL_HEADER(KoLineDetailIjk);

public:
  KoLineDetailIjk() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoLineDetailIjk(const KoLineDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailIjk(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoLineDetailIjk(*this); }
};
