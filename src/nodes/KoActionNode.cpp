// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>

NX_NODE_ABSTRACT_SOURCE(KoActionNode, NxNode)

KoActionNode::KoActionNode() { NX_NODE_CONSTRUCTOR(KoActionNode); }

KoActionNode::~KoActionNode() = default;

void KoActionNode::GLRender(NxGLRenderAction* action) { doAction(action); }
void KoActionNode::callback(NxCallbackAction* action) { doAction(action); }
void KoActionNode::getBoundingBox(NxGetBoundingBoxAction* action) { doAction(action); }
void KoActionNode::getMatrix(NxGetMatrixAction* action) { doAction(action); }
void KoActionNode::handleEvent(NxHandleEventAction* action) { doAction(action); }
void KoActionNode::pick(NxPickAction* action) { doAction(action); }
void KoActionNode::rayPick(NxRayPickAction* action) { doAction(action); }
void KoActionNode::search(NxSearchAction* action) { NxNode::search(action); }
void KoActionNode::write(NxWriteAction* action) { NxNode::write(action); }
void KoActionNode::getPrimitiveCount(NxGetPrimitiveCountAction* action) { doAction(action); }
void KoActionNode::distribute(NxDistributeAction* action) { doAction(action); }
