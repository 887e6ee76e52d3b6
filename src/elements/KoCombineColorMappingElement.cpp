// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoCombineColorMappingElement, NxReplacedElement)

void KoCombineColorMappingElement::print(FILE* file) const {
  fprintf(file, "\t CombineColorMapping: (0x%p)\n", static_cast<const void*>(m_value.mapping));
  fprintf(file, "\t CombineColorMappingTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.timeStamp));
}
