// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/elements/NxAccumulatedElement.h>

#include <Nyx/nodes/NxNode.h>

#include <cinttypes>

NX_ELEMENT_ABSTRACT_SOURCE(NxAccumulatedElement, NxElement)

void NxAccumulatedElement::init(NxState* state) {
  NxElement::init(state);
  clearNodeIds();
}

void NxAccumulatedElement::push(NxState* state) {
  NxElement::push(state);
  m_nodeIds = static_cast<const NxAccumulatedElement*>(getNextInStack())->m_nodeIds;
}

void NxAccumulatedElement::print(FILE* file) const {
  NxElement::print(file);
  for (uint64_t id : m_nodeIds)
    std::fprintf(file, "\t NodeId: %" PRIu64 "\n", id);
}

bool NxAccumulatedElement::matches(const NxElement* other) const {
  return m_nodeIds == static_cast<const NxAccumulatedElement*>(other)->m_nodeIds;
}

NxElement* NxAccumulatedElement::copyMatchInfo() const {
  auto* const copy = static_cast<NxAccumulatedElement*>(createSame());
  copy->m_nodeIds = m_nodeIds;
  return copy;
}

void NxAccumulatedElement::addNodeId(const NxNode* node) { m_nodeIds.push_back(node->getNodeId()); }

void NxAccumulatedElement::setNodeId(const NxNode* node) {
  clearNodeIds();
  addNodeId(node);
}
