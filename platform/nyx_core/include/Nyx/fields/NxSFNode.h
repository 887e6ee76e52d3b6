// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxField.h>
#include <Nyx/fields/NxFieldClass.h>
#include <Nyx/fields/NxSField.h>
#include <Nyx/misc/NyxCoreExport.h>

class NxNode;

/// A field that holds one node, or null. It keeps a reference on the node, and a change of the node is a change of the
/// container.
class NYX_CORE_API NxSFNode : public NxSField {
public:
  using ValueType = NxNode*;
  NX_FIELD_HEADER(NxSFNode, NxSField);

public:
  ~NxSFNode() override;

  NxNode* getValue() const { return m_value; }
  void setValue(NxNode* node);

  void copyFrom(const NxField& field) override;
  bool isSame(const NxField& field) const override;
  void fixCopy() override;
  void countWriteReferences(NxOutput* output) const override;
  void writeValue(NxOutput& output) const override;

protected:
  bool readText(NxTextScanner& scanner) override;
  void writeText(std::string& text) const override;

private:
  void hold(NxNode* node);

  NxNode* m_value = nullptr;
};
