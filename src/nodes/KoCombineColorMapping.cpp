// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoCombineColorMappingElement.h>
#include <KerrinDataMapping/nodes/KoCombineColorMapping.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoCombineColorMapping, KoActionNode)

KoCombineColorMapping::KoCombineColorMapping() { NX_NODE_CONSTRUCTOR(KoCombineColorMapping); }

KoCombineColorMapping::~KoCombineColorMapping() = default;

void KoCombineColorMapping::setColorMapping(const Mapping* mapping) {
  m_colorMapping = mapping;
  touch();
}

void KoCombineColorMapping::doAction(NxAction* action) {
  if (m_colorMapping) KoCombineColorMappingElement::set(action->getState(), this, m_colorMapping);
}

void KoCombineColorMapping::copyContents(const NxFieldContainer* from, bool copyConnections) {
  KoActionNode::copyContents(from, copyConnections);
  m_colorMapping = static_cast<const KoCombineColorMapping*>(from)->m_colorMapping;
}
