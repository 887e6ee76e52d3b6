// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KiDataSetIj.h>

/// The scalar sets of the form Ij above.
class KERRIN_DATAMAPPING_API KoScalarSetElementIj : public KoSetElement<KoScalarSetElementIj, KiDataSetIj<double>> {
  NX_ELEMENT_HEADER(KoScalarSetElementIj);
};
