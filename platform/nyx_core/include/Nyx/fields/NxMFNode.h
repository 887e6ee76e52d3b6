// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxMField.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <vector>

class NxNode;

/// A field that holds any number of nodes, none of them null. It keeps a reference on each, and a change of a node is
/// a change of the container.
class NYX_CORE_API NxMFNode : public NxMField {
public:
  using ValueType = NxNode*;
  NX_FIELD_HEADER(NxMFNode, NxMField);

public:
  ~NxMFNode() override;

  NxNode* operator[](int index) const { return m_nodes[static_cast<size_t>(index)]; }
  /// Makes `node` the only one; null empties the field.
  void setValue(NxNode* node);
  void addNode(NxNode* node);
  void removeNode(int index);
  void removeAllNodes();
  /// The index of a node, or -1.
  int findNode(const NxNode* node) const;

  void copyFrom(const NxField& field) override;
  bool isSame(const NxField& field) const override;
  void fixCopy() override;
  void countWriteReferences(NxOutput* output) const override;
  void writeValue(NxOutput& output) const override;

protected:
  bool readText(NxTextScanner& scanner) override;
  void writeText(std::string& text) const override;

private:
  void hold(std::vector<NxNode*> nodes);

  std::vector<NxNode*> m_nodes;
};
