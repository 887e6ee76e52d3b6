// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/misc/NxChildList.h>
#include <Nyx/misc/NyxCoreExport.h>
#include <Nyx/nodes/NxNode.h>

#include <memory>

/// A node with children, which every action walks in order. What the children put into the traversal state is seen by
/// the nodes after the group.
///
/// An index out of range posts an error; nothing changes.
class NYX_CORE_API NxGroup : public NxNode {
  NX_NODE_HEADER(NxGroup);

public:
  NxGroup();

  /// Appends a child; null posts an error.
  void addChild(NxNode* child);
  /// Inserts before the child at `index`; an index equal to the number of children appends.
  void insertChild(NxNode* child, int index);
  /// Null for an index out of range.
  NxNode* getChild(int index) const;
  int getNumChildren() const;
  /// The index of the first occurrence, or -1.
  int findChild(const NxNode* child) const;
  void removeChild(int index);
  void removeChild(NxNode* child);
  void removeAllChildren();
  void replaceChild(int index, NxNode* child);
  void replaceChild(NxNode* former, NxNode* child);

  bool isGroup() const override { return true; }
  bool affectsState() const override;
  NxChildList* getChildren() const override;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;

  void doAction(NxAction* action) override;
  void GLRender(NxGLRenderAction* action) override;
  void callback(NxCallbackAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;
  void getMatrix(NxGetMatrixAction* action) override;
  void handleEvent(NxHandleEventAction* action) override;
  void pick(NxPickAction* action) override;
  void rayPick(NxRayPickAction* action) override;
  void search(NxSearchAction* action) override;
  void write(NxWriteAction* action) override;
  void getPrimitiveCount(NxGetPrimitiveCountAction* action) override;
  void distribute(NxDistributeAction* action) override;

protected:
  ~NxGroup() override;

private:
  bool isChildIndex(int index, const char* operation) const;

  std::unique_ptr<NxChildList> m_children;
};
