// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KiTypedDataSet.h>

/// The scalar sets of any form above.
class KERRIN_DATAMAPPING_API KoScalarSetElement : public KoSetElement<KoScalarSetElement, KiTypedDataSet<double>> {
  NX_ELEMENT_HEADER(KoScalarSetElement);
};
