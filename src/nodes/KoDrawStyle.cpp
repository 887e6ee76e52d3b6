// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/elements/KoDrawStyleElement.h>
#include <KerrinDataMapping/nodes/KoDrawStyle.h>
#include <Nyx/actions/NxAction.h>

NX_NODE_SOURCE(KoDrawStyle, KoActionNode)

KoDrawStyle::KoDrawStyle() {
  NX_NODE_CONSTRUCTOR(KoDrawStyle);
  NX_NODE_ADD_FIELD(displayFaces, (true));
  NX_NODE_ADD_FIELD(displayEdges, (false));
  NX_NODE_ADD_FIELD(displayPoints, (false));
  NX_NODE_ADD_FIELD(fadingThreshold, (0.f));
}

KoDrawStyle::KoDrawStyle(const KoDrawStyle& other)
    : KoDrawStyle() {
  copyContents(&other, false);
}

KoDrawStyle& KoDrawStyle::operator=(const KoDrawStyle& other) {
  copyContents(&other, false);
  return *this;
}

KoDrawStyle::~KoDrawStyle() = default;

void KoDrawStyle::doAction(NxAction* action) { KoDrawStyleElement::set(action->getState(), this); }
