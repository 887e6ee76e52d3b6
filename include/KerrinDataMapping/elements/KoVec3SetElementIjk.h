// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSetIjk.h>

/// The vector sets of the form Ijk above.
class KERRIN_DATAMAPPING_API KoVec3SetElementIjk
    : public KoSetElement<KoVec3SetElementIjk, KiDataSetIjk<KbVec3<double>>> {
  NX_ELEMENT_HEADER(KoVec3SetElementIjk);
};
