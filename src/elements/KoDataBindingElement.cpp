// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoDataBindingElement.h>

#include <cstdio>

NX_ELEMENT_SOURCE(KoDataBindingElement, NxReplacedElement)

void KoDataBindingElement::set(NxState* state, NxNode* node, DataBinding binding) {
  if (KoDataBindingElementValue* value = getWritable(state, node)) value->binding = binding;
}

DataBinding KoDataBindingElement::getDataBinding(NxState* state) {
  const KoDataBindingElementValue* value = getReadable(state);
  return value ? value->binding : DataBinding::AUTO;
}

void KoDataBindingElement::print(FILE* file) const {
  fprintf(file, "\t DataBinding: %d\n", static_cast<int>(m_value.binding));
}
