// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoTessellatorElement.h>
#include <KerrinDataMapping/nodes/KoTessellator.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoTessellator, KoActionNode)

KoTessellator::KoTessellator() { NX_NODE_CONSTRUCTOR(KoTessellator); }

KoTessellator::~KoTessellator() = default;

void KoTessellator::setTessellator(KiTessellator* tessellator) {
  m_tessellator = tessellator;
  m_timeStamp = KxTimeStamp::getTimeStamp();
  touch();
}

KiTessellator* KoTessellator::getTessellator() { return m_tessellator; }

void KoTessellator::doAction(NxAction* action) {
  KoTessellatorElement::set(action->getState(), this, getTessellator(), m_timeStamp);
}

void KoTessellator::copyContents(const NxFieldContainer* from, bool copyConnections) {
  KoActionNode::copyContents(from, copyConnections);
  const auto& other = *static_cast<const KoTessellator*>(from);
  m_tessellator = other.m_tessellator;
  m_timeStamp = other.m_timeStamp;
}
