// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoSetElement.h>
#include <KerrinExtractor/KiTypedDataSet.h>

#include <string>

/// The string sets of any form above.
class KERRIN_DATAMAPPING_API KoStringSetElement : public KoSetElement<KoStringSetElement, KiTypedDataSet<std::string>> {
  NX_ELEMENT_HEADER(KoStringSetElement);
};
