// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoMappingElement.h>

#include <vector>

/// The colour mapping above that makes one colour of the values of several sets.
class KERRIN_DATAMAPPING_API KoCombineColorMappingElement
    : public KoMappingElement<KoCombineColorMappingElement, std::vector<double>> {
  NX_ELEMENT_HEADER(KoCombineColorMappingElement);

public:
  void print(FILE* file) const override;
};
