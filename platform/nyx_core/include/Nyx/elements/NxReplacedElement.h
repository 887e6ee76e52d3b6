// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxElement.h>

class NxNode;

/// An element whose value is set as a whole: the nearest `set` wins. By itself it matches by the id of the node that
/// has set it, so that any change of that node counts.
class NYX_CORE_API NxReplacedElement : public NxElement {
  NX_ELEMENT_ABSTRACT_HEADER(NxReplacedElement);

public:
  void init(NxState* state) override;
  void print(FILE* file) const override;
  bool matches(const NxElement* other) const override;
  NxElement* copyMatchInfo() const override;

  /// The id that the node had when it set the value; 0 for the first value.
  uint64_t getNodeId() const { return m_nodeId; }

protected:
  /// As NxElement::getElement, and notes the node that sets the value; a null node stands for none.
  static NxElement* getElement(NxState* state, NxType type, int stackIndex, const NxNode* node);

private:
  uint64_t m_nodeId = 0;
};
