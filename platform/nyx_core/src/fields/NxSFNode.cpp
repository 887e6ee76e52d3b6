// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxSFNode.h>

#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/nodes/NxNode.h>

#include <utility>

NxSFNode::~NxSFNode() { hold(nullptr); }

void NxSFNode::hold(NxNode* node) {
  if (node) {
    node->ref();
    node->getAuditors().append(this);
  }
  if (NxNode* former = std::exchange(m_value, node)) {
    former->getAuditors().remove(this);
    former->unref();
  }
}

void NxSFNode::setValue(NxNode* node) {
  if (!isNewValueAccepted(node)) return;
  hold(node);
  valueChanged();
}

void NxSFNode::copyFrom(const NxField& field) {
  hold(static_cast<const NxSFNode&>(field).m_value);
  valueChanged();
  copyFlags(field);
}

bool NxSFNode::isSame(const NxField& field) const {
  return field.getTypeId() == getTypeId() && m_value == static_cast<const NxSFNode&>(field).m_value;
}

void NxSFNode::fixCopy() {
  if (m_value) hold(m_value->copyThroughConnection());
}

void NxSFNode::countWriteReferences(NxOutput* output) const {
  if (!m_value) return;
  NxWriteAction action(output);
  m_value->write(&action);
}

void NxSFNode::writeValue(NxOutput& output) const {
  if (m_value)
    countWriteReferences(&output); // In this stage of the output the same call writes the node.
  else
    output.write(get());
}

bool NxSFNode::readText(NxTextScanner&) { return false; }

void NxSFNode::writeText(std::string& text) const {
  text += m_value ? m_value->getTypeId().getName().getString() : "NULL";
}
