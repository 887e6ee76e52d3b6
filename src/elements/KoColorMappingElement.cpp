// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoColorMappingElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoColorMappingElement, NxReplacedElement)

void KoColorMappingElement::print(FILE* file) const {
  fprintf(file, "\t ColorMapping: (0x%p)\n", static_cast<const void*>(m_value.mapping));
  fprintf(file, "\t ColorMappingTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.timeStamp));
}
