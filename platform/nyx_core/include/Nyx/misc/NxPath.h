// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRefPtr.h>
#include <Nyx/misc/NxBase.h>
#include <Nyx/misc/NyxCoreExport.h>
#include <Nyx/nodes/NxNode.h>

#include <vector>

class NxFullPath;

/// A chain of nodes from a head down to a tail, each the child of the one before. A path holds a reference on its nodes
/// and does not follow later changes of the graph.
///
/// Children that a node hides (those of a node that is no group) are in a path, but NxPath does not show them: it ends
/// at the node that hides them. The same path seen as NxFullPath shows all.
class NYX_CORE_API NxPath : public NxBase {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId();
  NxType getTypeId() const override;

  /// A path of the head alone; a null head gives an empty path. No reference on the path is taken. Every path is made
  /// here, and every one is an NxFullPath.
  static NxPath* create(NxNode* head = nullptr);
  NxPath* copy() const;

  /// The same path with the hidden nodes shown.
  const NxFullPath* getFullPath() const;
  NxFullPath* getFullPath();

  /// The number of nodes, up to the first that hides its children.
  int getLength() const;
  NxNode* getHead() const { return m_nodes.empty() ? nullptr : m_nodes.front().get(); }
  /// The last node; null for an empty path.
  NxNode* getTail() const;
  /// The node at `index`, 0 being the head; null out of range.
  NxNode* getNode(int index) const;
  NxNode* getNodeFromTail(int index) const { return getNode(getLength() - 1 - index); }
  /// Which child of the node before it the node at `index` is; 0 for the head, -1 out of range.
  int getIndex(int index) const;
  bool containsNode(const NxNode* node) const;

  /// Appends the child at `childIndex` of the last node, hidden or not; posts an error when there is none.
  void append(int childIndex);
  /// Appends a child of the last node; the first node of an empty path may be any. Posts an error otherwise.
  void append(NxNode* child);
  /// Keeps the first `length` nodes.
  void truncate(int length);

  friend NYX_CORE_API bool operator==(const NxPath& a, const NxPath& b);
  friend bool operator!=(const NxPath& a, const NxPath& b) { return !(a == b); }

protected:
  friend class NxAction;
  NxPath() = default;
  ~NxPath() override;
  void appendUnchecked(NxNode* node, int childIndex);

  std::vector<NbRefPtr<NxNode>> m_nodes;
  std::vector<int> m_indices;

private:
  static NxType s_classTypeId;
};

/// A path with the nodes that others hide. Nothing but another view of an NxPath: any path may be cast to it.
class NYX_CORE_API NxFullPath : public NxPath {
public:
  int getLength() const { return static_cast<int>(m_nodes.size()); }
  NxNode* getTail() const { return m_nodes.empty() ? nullptr : m_nodes.back().get(); }
  NxNode* getNode(int index) const;
  NxNode* getNodeFromTail(int index) const { return getNode(getLength() - 1 - index); }
  int getIndex(int index) const;

protected:
  friend class NxPath;
  NxFullPath() = default;
  ~NxFullPath() override;
};
