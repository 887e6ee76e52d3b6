// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRenderEngineMode.h>
#include <Nyx/fields/NxFieldContainer.h>
#include <Nyx/misc/NyxCoreExport.h>
#include <Nyx/nodes/NxNodeMacros.h>

#include <cstdint>
#include <vector>

class NxAction;
class NxCallbackAction;
class NxChildList;
class NxDistributeAction;
class NxGLRenderAction;
class NxGetBoundingBoxAction;
class NxGetMatrixAction;
class NxGetPrimitiveCountAction;
class NxHandleEventAction;
class NxPickAction;
class NxRayPickAction;
class NxSearchAction;
class NxWriteAction;

/// Root of the nodes of a scene graph. An action that reaches a node calls the entry point of its kind.
class NYX_CORE_API NxNode : public NxFieldContainer {
public:
  static void initClass();
  static void exitClass();
  static NxType getClassTypeId() { return s_class.classTypeId; }
  static NbRenderEngineMode& getClassRenderEngineMode() { return s_class.renderEngineMode; }
  static NxFieldData** getFieldDataPtr() { return s_class.getFieldDataPtr(); }
  static NxNodeClass& getNodeClass() { return s_class; }

  /// The number that the next node class gets as the data word of its type.
  static int getNextActionMethodIndex();
  static void incNextActionMethodIndex();

  NxType getTypeId() const override = 0;
  /// 1 for the toolkit's own classes.
  virtual int getIsBuiltIn() const = 0;
  const NxFieldData* getFieldData() const override = 0;
  virtual NbRenderEngineMode& getRenderEngineMode() const = 0;

  /// What the entry points of most classes come down to; does nothing here.
  virtual void doAction(NxAction* action);
  // One entry point an action class; they do nothing here, apart from search and write.
  virtual void GLRender(NxGLRenderAction* action);
  virtual void callback(NxCallbackAction* action);
  virtual void getBoundingBox(NxGetBoundingBoxAction* action);
  virtual void getMatrix(NxGetMatrixAction* action);
  virtual void handleEvent(NxHandleEventAction* action);
  virtual void pick(NxPickAction* action);
  /// Calls pick.
  virtual void rayPick(NxRayPickAction* action);
  /// Compares the node with what the action looks for.
  virtual void search(NxSearchAction* action);
  /// Counts a reference in the first stage and writes name, class and fields in the second.
  virtual void write(NxWriteAction* action);
  virtual void getPrimitiveCount(NxGetPrimitiveCountAction* action);
  virtual void distribute(NxDistributeAction* action);

  /// A number that no other node has had, new after each change of this node or of what lies below it.
  uint64_t getNodeId() const { return m_nodeId; }
  static uint64_t getNextNodeId();

  void startNotify() override;
  void notify(NxNotList* list) override;

  /// False for a node after which the traversal state is as it was before; true here.
  virtual bool affectsState() const;
  /// The children, hidden ones of a node that is no group included; null when there are none.
  virtual NxChildList* getChildren() const;
  /// True when only the contents of the node, and not its children, are kept equal across a cluster.
  virtual bool isSynchronizingContentOnly() const;

  /// A copy of the node and of everything below it. A node that is reached on several ways is copied once. The copy
  /// has no reference yet. With `copyConnections`, fields of the copy follow the fields that the originals follow.
  NxNode* copy(bool copyConnections = false) const;
  void copyContents(const NxFieldContainer* from, bool copyConnections) override;
  /// The node that takes this node's place in a copy that is being made: its own copy, made now if needed.
  virtual NxNode* copyThroughConnection() const;

protected:
  NxNode();
  /// A copy is a node of its own: it has a new id and neither name, parents nor sensors.
  NxNode(const NxNode& other);
  NxNode& operator=(const NxNode& other);
  ~NxNode() override;

private:
  uint64_t m_nodeId;
  uint64_t m_lastStamp = 0;
  static NxNodeClass s_class;
};
