// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxWriteAction.h>

#include <Nyx/io/NxOutput.h>
#include <Nyx/nodes/NxNode.h>

NX_ACTION_SOURCE(NxWriteAction, NxAction)

NxWriteAction::NxWriteAction()
    : m_own(std::make_unique<NxOutput>())
    , m_output(m_own.get()) {}

NxWriteAction::NxWriteAction(NxOutput* output)
    : m_output(output) {}

NxWriteAction::~NxWriteAction() = default;

void NxWriteAction::beginTraversal(NxNode* root) {
  m_output->setStage(NxOutput::COUNT_REFS);
  traverse(root);
  m_output->setStage(NxOutput::WRITE);
  m_output->writeFileHeader();
  traverse(root);
  m_output->setStage(NxOutput::COUNT_REFS);
}

void NxWriteAction::callNode(NxNode* node) { node->write(this); }
