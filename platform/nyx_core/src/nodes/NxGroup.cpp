// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/nodes/NxGroup.h>

#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/actions/NxSearchAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/io/NxOutput.h>

NX_NODE_SOURCE(NxGroup, NxNode)

NxGroup::NxGroup()
    : m_children(std::make_unique<NxChildList>(this)) {
  NX_NODE_CONSTRUCTOR(NxGroup);
}

NxGroup::~NxGroup() = default;

bool NxGroup::isChildIndex(int index, const char* operation) const {
  if (index >= 0 && index < getNumChildren()) return true;
  NxDebugError::post(operation, "The index %d is not in 0..%d.", index, getNumChildren() - 1);
  return false;
}

void NxGroup::addChild(NxNode* child) {
  if (child)
    m_children->append(child);
  else
    NxDebugError::post("NxGroup::addChild", "A null node cannot be a child.");
}

void NxGroup::insertChild(NxNode* child, int index) { m_children->insert(child, index); }

NxNode* NxGroup::getChild(int index) const {
  return isChildIndex(index, "NxGroup::getChild") ? (*m_children)[index] : nullptr;
}

int NxGroup::getNumChildren() const { return m_children->getLength(); }

int NxGroup::findChild(const NxNode* child) const { return m_children->find(child); }

void NxGroup::removeChild(int index) {
  if (isChildIndex(index, "NxGroup::removeChild")) m_children->remove(index);
}

void NxGroup::removeChild(NxNode* child) {
  const int index = findChild(child);
  if (index >= 0)
    m_children->remove(index);
  else
    NxDebugError::post("NxGroup::removeChild", "The node %p is no child.", static_cast<void*>(child));
}

void NxGroup::removeAllChildren() { m_children->truncate(0); }

void NxGroup::replaceChild(int index, NxNode* child) {
  if (isChildIndex(index, "NxGroup::replaceChild")) m_children->set(index, child);
}

void NxGroup::replaceChild(NxNode* former, NxNode* child) {
  const int index = findChild(former);
  if (index >= 0)
    m_children->set(index, child);
  else
    NxDebugError::post("NxGroup::replaceChild", "The node %p is no child.", static_cast<void*>(former));
}

bool NxGroup::affectsState() const {
  for (int i = 0; i < getNumChildren(); ++i)
    if ((*m_children)[i]->affectsState()) return true;
  return false;
}

NxChildList* NxGroup::getChildren() const { return m_children.get(); }

void NxGroup::copyContents(const NxFieldContainer* from, bool copyConnections) {
  NxNode::copyContents(from, copyConnections);
  const auto* const group = static_cast<const NxGroup*>(from);
  removeAllChildren();
  for (int i = 0; i < group->getNumChildren(); ++i)
    if (NxNode* child = (*group->m_children)[i]->copyThroughConnection()) addChild(child);
}

void NxGroup::doAction(NxAction* action) { m_children->traverse(action); }

void NxGroup::GLRender(NxGLRenderAction* action) { doAction(action); }

void NxGroup::callback(NxCallbackAction* action) { doAction(action); }

void NxGroup::getBoundingBox(NxGetBoundingBoxAction* action) { doAction(action); }

void NxGroup::getMatrix(NxGetMatrixAction* action) {
  // Below the end of the path, and without one, the matrices of children are none of the group's.
  if (action->getPathCode() == NxAction::IN_PATH || action->getPathCode() == NxAction::OFF_PATH) doAction(action);
}

void NxGroup::handleEvent(NxHandleEventAction* action) { doAction(action); }

void NxGroup::pick(NxPickAction* action) { doAction(action); }

void NxGroup::rayPick(NxRayPickAction* action) { doAction(action); }

void NxGroup::search(NxSearchAction* action) {
  NxNode::search(action);
  if (!action->hasTerminated()) doAction(action);
}

void NxGroup::write(NxWriteAction* action) {
  NxOutput* const output = action->getOutput();
  if (output->getStage() == NxOutput::COUNT_REFS) {
    addWriteReference(output);
    if (!hasMultipleWriteRefs()) m_children->traverse(action);
  } else if (!output->writeHeader(this)) {
    writeFields(*output);
    m_children->traverse(action);
    output->writeFooter();
  }
}

void NxGroup::getPrimitiveCount(NxGetPrimitiveCountAction* action) { doAction(action); }

void NxGroup::distribute(NxDistributeAction* action) { doAction(action); }
