// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/fields/NxMFNode.h>

#include <Nyx/actions/NxWriteAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/io/NxOutput.h>
#include <Nyx/nodes/NxNode.h>

#include <algorithm>

NxMFNode::~NxMFNode() { hold({}); }

void NxMFNode::hold(std::vector<NxNode*> nodes) {
  for (NxNode* node : nodes) {
    node->ref();
    node->getAuditors().append(this);
  }
  m_nodes.swap(nodes);
  m_num = static_cast<int>(m_nodes.size());
  for (NxNode* former : nodes) {
    former->getAuditors().remove(this);
    former->unref();
  }
}

void NxMFNode::setValue(NxNode* node) {
  hold(node ? std::vector<NxNode*>{node} : std::vector<NxNode*>());
  valueChanged();
}

void NxMFNode::addNode(NxNode* node) {
  if (!node) {
    NxDebugError::post("NxMFNode::addNode", "A null node cannot be a value.");
    return;
  }
  std::vector<NxNode*> nodes = m_nodes;
  nodes.push_back(node);
  hold(std::move(nodes));
  valueChanged();
}

void NxMFNode::removeNode(int index) {
  if (index < 0 || index >= m_num) {
    NxDebugError::post("NxMFNode::removeNode", "The index %d is not in 0..%d.", index, m_num - 1);
    return;
  }
  std::vector<NxNode*> nodes = m_nodes;
  nodes.erase(nodes.begin() + index);
  hold(std::move(nodes));
  valueChanged();
}

void NxMFNode::removeAllNodes() { setValue(nullptr); }

int NxMFNode::findNode(const NxNode* node) const {
  const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
  return found == m_nodes.end() ? -1 : static_cast<int>(found - m_nodes.begin());
}

void NxMFNode::copyFrom(const NxField& field) {
  hold(static_cast<const NxMFNode&>(field).m_nodes);
  valueChanged();
  copyFlags(field);
}

bool NxMFNode::isSame(const NxField& field) const {
  return field.getTypeId() == getTypeId() && m_nodes == static_cast<const NxMFNode&>(field).m_nodes;
}

void NxMFNode::fixCopy() {
  std::vector<NxNode*> copies;
  for (const NxNode* node : m_nodes)
    copies.push_back(node->copyThroughConnection());
  hold(std::move(copies));
}

void NxMFNode::countWriteReferences(NxOutput* output) const {
  NxWriteAction action(output);
  for (NxNode* node : m_nodes)
    node->write(&action);
}

void NxMFNode::writeValue(NxOutput& output) const {
  output.write("[");
  output.endLine();
  countWriteReferences(&output); // In this stage of the output the same call writes the nodes.
  output.write("]");
}

bool NxMFNode::readText(NxTextScanner&) { return false; }

void NxMFNode::writeText(std::string& text) const {
  text += "[ ";
  for (const NxNode* node : m_nodes)
    text += std::string(node->getTypeId().getName().getString()) + " ";
  text += "]";
}
