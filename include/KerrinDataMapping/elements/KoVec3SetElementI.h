// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSetI.h>

/// The vector sets of the form I above.
class KERRIN_DATAMAPPING_API KoVec3SetElementI : public KoSetElement<KoVec3SetElementI, KiDataSetI<KbVec3<double>>> {
  NX_ELEMENT_HEADER(KoVec3SetElementI);
};
