// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NyxCoreExport.h>

#include <cstddef>
#include <vector>

class NxAction;
class NxNode;

/// The children of a node. The list holds a reference on each child and makes the owner hear of its changes; every
/// change of the list notifies the owner. A null child or an index out of range posts an error, and nothing changes.
class NYX_CORE_API NxChildList {
public:
  /// The owner must outlive the list. `size` is the number of children to make room for.
  explicit NxChildList(NxNode* owner, int size = 0);
  ~NxChildList();
  NxChildList(const NxChildList&) = delete;
  NxChildList& operator=(const NxChildList&) = delete;

  int getLength() const { return static_cast<int>(m_nodes.size()); }
  /// The child at `index`, which must lie in 0..getLength()-1.
  NxNode* operator[](int index) const { return m_nodes[static_cast<size_t>(index)]; }
  /// The index of the first occurrence, or -1.
  int find(const NxNode* node) const;

  void append(NxNode* node) { insert(node, getLength()); }
  void insert(NxNode* node, int index);
  void set(int index, NxNode* node);
  void remove(int index);
  /// Keeps the first `length` children.
  void truncate(int length);

  /// Lets the action walk the children in order; of a path, those that it leads through and those before them that
  /// change the state.
  void traverse(NxAction* action);
  /// Walks the children first..last only.
  void traverse(NxAction* action, int first, int last);

private:
  void acquire(NxNode* node);
  void release(NxNode* node);
  bool isInRange(int index, int end, const char* operation) const;

  NxNode* m_owner;
  std::vector<NxNode*> m_nodes;
};
