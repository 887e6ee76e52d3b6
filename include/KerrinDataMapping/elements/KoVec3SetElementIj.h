// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSetIj.h>

/// The vector sets of the form Ij above.
class KERRIN_DATAMAPPING_API KoVec3SetElementIj : public KoSetElement<KoVec3SetElementIj, KiDataSetIj<KbVec3<double>>> {
  NX_ELEMENT_HEADER(KoVec3SetElementIj);
};
