// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/details/KoLineDetail.h>

extern template class KERRIN_DATAMAPPING_API KoCellDetailIj<KoLineDetail>;

/// A picked line with the indices i and j of the application's cell that it came from.
class KERRIN_DATAMAPPING_API KoLineDetailIj : public KoCellDetailIj<KoLineDetail> {
  NX_DETAIL_HEADER(KoLineDetailIj);

public:
  KoLineDetailIj() = default;
  /// Specialises `detail` for the mesh that `meshDetail` tells of.
  KoLineDetailIj(const KoLineDetail& detail, const KoMeshDetail& meshDetail)
      : KoCellDetailIj(detail, meshDetail) {}

  NxDetail* copy() const override { return new KoLineDetailIj(*this); }
};
