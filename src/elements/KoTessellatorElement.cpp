// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinExtractor/KiTessellator.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoTessellatorElement, NxReplacedElement)

void KoTessellatorElement::set(NxState* state, NxNode* node, KiTessellator* tessellator, std::size_t nodeTimeStamp) {
  const std::size_t stamp = tessellator ? tessellator->getTimeStamp() : static_cast<std::size_t>(-1);
  if (KoTessellatorElementValue* value = getWritable(state, node)) *value = {tessellator, stamp, nodeTimeStamp};
}

KiTessellator* KoTessellatorElement::getTessellator(NxState* state, std::size_t& timeStamp) {
  const KoTessellatorElementValue* value = getReadable(state);
  timeStamp = value ? value->nodeTimeStamp : static_cast<std::size_t>(-1);
  return value ? value->tessellator : nullptr;
}

void KoTessellatorElement::print(FILE* file) const {
  fprintf(file, "\t Tessellator: (0x%p)\n", static_cast<const void*>(m_value.tessellator));
  fprintf(file, "\t TessellatorTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.tessellatorTimeStamp));
  fprintf(file, "\t KoTessellatorTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.nodeTimeStamp));
}
