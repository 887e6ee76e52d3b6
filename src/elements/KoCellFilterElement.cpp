// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoCellFilterElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoCellFilterElement, NxReplacedElement)

void KoCellFilterElement::set(NxState* state, NxNode* node, CellFilterType type, const KiCellFilter* filter) {
  KoCellFilterElementValue* value = getWritable(state, node);
  if (!value) return;
  value->filter = filter;
  value->timeStamp = filter ? filter->getTimeStamp() : static_cast<std::size_t>(-1);
  value->type = type;
}

const KiCellFilter* KoCellFilterElement::getCellFilter(NxState* state, CellFilterType& type) {
  const KoCellFilterElementValue* value = getReadable(state);
  type = value ? value->type : CELL_FILTER_NONE;
  return value ? value->filter : nullptr;
}

void KoCellFilterElement::print(FILE* file) const {
  fprintf(file, "\t CellFilter: (0x%p)\n", static_cast<const void*>(m_value.filter));
  fprintf(file, "\t CellFilterType: %d\n", static_cast<int>(m_value.type));
  fprintf(file, "\t CellFilterTimeStamp: %llu\n", static_cast<unsigned long long>(m_value.timeStamp));
}
