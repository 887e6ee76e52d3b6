// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/nodes/KoMeshBaseRepresentation.h>
#include <Nyx/actions/NxAction.h>
#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/misc/NxChildList.h>
#include <Nyx/nodes/NxSeparator.h>

NX_NODE_ABSTRACT_SOURCE(KoMeshBaseRepresentation, KoActionNode)

KoMeshBaseRepresentation::KoMeshBaseRepresentation()
    : m_internalGroup(new NxSeparator)
    , m_children(std::make_unique<NxChildList>(this, 1)) {
  NX_NODE_CONSTRUCTOR(KoMeshBaseRepresentation);
  m_children->insert(m_internalGroup, 0);
}

KoMeshBaseRepresentation::~KoMeshBaseRepresentation() = default;

void KoMeshBaseRepresentation::fieldHasChanged(NxField* field) {
  m_isModified = true;
  KoActionNode::fieldHasChanged(field);
}

void KoMeshBaseRepresentation::doAction(NxAction* action) {
  m_children->traverse(action);
  m_isModified = false;
}

void KoMeshBaseRepresentation::write(NxWriteAction* action) {
  NxOutput* output = action->getOutput();
  if (output->getStage() == NxOutput::COUNT_REFS) {
    addWriteReference(output, false);
    if (hasMultipleWriteRefs()) return;
  }
  m_children->traverse(action);
}

bool KoMeshBaseRepresentation::affectsState() const { return false; }

NxChildList* KoMeshBaseRepresentation::getChildren() const { return m_children.get(); }

bool KoMeshBaseRepresentation::isSynchronizingContentOnly() const { return true; }

void KoMeshBaseRepresentation::clear() {}
