// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoMappingElement.h>

/// The colour mapping of single values above.
class KERRIN_DATAMAPPING_API KoColorMappingElement : public KoMappingElement<KoColorMappingElement, double> {
  NX_ELEMENT_HEADER(KoColorMappingElement);

public:
  void print(FILE* file) const override;
};
