// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KiDataSetI.h>

/// The scalar sets of the form I above.
class KERRIN_DATAMAPPING_API KoScalarSetElementI : public KoSetElement<KoScalarSetElementI, KiDataSetI<double>> {
  NX_ELEMENT_HEADER(KoScalarSetElementI);
};
