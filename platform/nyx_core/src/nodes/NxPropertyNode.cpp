// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxPropertyNode.h>

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>

NX_NODE_ABSTRACT_SOURCE(NxPropertyNode, NxNode)

NxPropertyNode::NxPropertyNode() { NX_NODE_CONSTRUCTOR(NxPropertyNode); }
NxPropertyNode::~NxPropertyNode() = default;

void NxPropertyNode::GLRender(NxGLRenderAction* action) { doAction(action); }
void NxPropertyNode::callback(NxCallbackAction* action) { doAction(action); }
void NxPropertyNode::getBoundingBox(NxGetBoundingBoxAction* action) { doAction(action); }
void NxPropertyNode::getMatrix(NxGetMatrixAction* action) { doAction(action); }
void NxPropertyNode::handleEvent(NxHandleEventAction* action) { doAction(action); }
void NxPropertyNode::pick(NxPickAction* action) { doAction(action); }
void NxPropertyNode::rayPick(NxRayPickAction* action) { doAction(action); }
void NxPropertyNode::getPrimitiveCount(NxGetPrimitiveCountAction* action) { doAction(action); }
void NxPropertyNode::distribute(NxDistributeAction* action) { doAction(action); }
