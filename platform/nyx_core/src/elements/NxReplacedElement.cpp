// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/elements/NxReplacedElement.h>

#include <Nyx/nodes/NxNode.h>

#include <cinttypes>

NX_ELEMENT_ABSTRACT_SOURCE(NxReplacedElement, NxElement)

void NxReplacedElement::init(NxState* state) {
  NxElement::init(state);
  m_nodeId = 0;
}

void NxReplacedElement::print(FILE* file) const {
  NxElement::print(file);
  std::fprintf(file, "\t NodeId: %" PRIu64 "\n", m_nodeId);
}

bool NxReplacedElement::matches(const NxElement* other) const {
  return m_nodeId == static_cast<const NxReplacedElement*>(other)->m_nodeId;
}

NxElement* NxReplacedElement::copyMatchInfo() const {
  auto* const copy = static_cast<NxReplacedElement*>(createSame());
  copy->m_nodeId = m_nodeId;
  return copy;
}

NxElement* NxReplacedElement::getElement(NxState* state, NxType type, int stackIndex, const NxNode* node) {
  NxElement* const element = NxElement::getElement(state, type, stackIndex);
  if (element) static_cast<NxReplacedElement*>(element)->m_nodeId = node ? node->getNodeId() : 0;
  return element;
}
