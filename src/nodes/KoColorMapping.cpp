// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoColorMappingElement.h>
#include <KerrinDataMapping/nodes/KoColorMapping.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoColorMapping, KoActionNode)

KoColorMapping::KoColorMapping() { NX_NODE_CONSTRUCTOR(KoColorMapping); }

KoColorMapping::~KoColorMapping() = default;

void KoColorMapping::doAction(NxAction* action) {
  if (m_colorMapping) KoColorMappingElement::set(action->getState(), this, m_colorMapping);
}
