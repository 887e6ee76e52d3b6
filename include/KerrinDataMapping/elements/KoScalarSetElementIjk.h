// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KiDataSetIjk.h>

/// The scalar sets of the form Ijk above.
class KERRIN_DATAMAPPING_API KoScalarSetElementIjk : public KoSetElement<KoScalarSetElementIjk, KiDataSetIjk<double>> {
  NX_ELEMENT_HEADER(KoScalarSetElementIjk);
};
