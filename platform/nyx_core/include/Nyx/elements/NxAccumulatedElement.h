// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxElement.h>

#include <vector>

class NxNode;

/// An element to whose value nodes add. It matches by the list of the ids of the nodes that have added to it.
class NYX_CORE_API NxAccumulatedElement : public NxElement {
  NX_ELEMENT_ABSTRACT_HEADER(NxAccumulatedElement);

public:
  void init(NxState* state) override;
  /// Takes the node ids over from the element below.
  void push(NxState* state) override;
  void print(FILE* file) const override;
  bool matches(const NxElement* other) const override;
  NxElement* copyMatchInfo() const override;

protected:
  void clearNodeIds() { m_nodeIds.clear(); }
  void addNodeId(const NxNode* node);
  /// Makes the node the only one.
  void setNodeId(const NxNode* node);

private:
  std::vector<uint64_t> m_nodeIds;
};
