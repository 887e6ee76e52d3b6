// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxActionClass.h>
#include <Nyx/base/NbRefPtr.h>
#include <Nyx/misc/NxTypedObject.h>
#include <Nyx/misc/NyxCoreExport.h>

#include <memory>
#include <vector>

class NxChildList;
class NxNode;
class NxPath;
class NxState;

/// Root of the actions, which walk a graph and do one kind of work at each node. A traversal holds the read lock of
/// the database.
class NYX_CORE_API NxAction : public NxTypedObject {
public:
  static void initClass() { s_class.initClass(); }
  static void exitClass() { s_class.exitClass(); }
  static NxType getClassTypeId() { return s_class.classTypeId; }
  static NxActionClass& getActionClass() { return s_class; }
  static void enableElement(NxType elementType, int stackIndex) { s_class.enableElement(elementType, stackIndex); }

  NxAction(const NxAction&) = delete;
  NxAction& operator=(const NxAction&) = delete;
  ~NxAction() override;

  /// Walks the graph below a node. A null node posts an error.
  virtual void apply(NxNode* root);
  /// Walks along a path and what lies below its end; beside it, only nodes that change the state of the path's nodes.
  virtual void apply(NxPath* path);

  /// The state of the traversal; between traversals, the one that the next will start with.
  NxState* getState();
  /// Makes the next traversal start with a new state.
  void invalidateState();

  /// Where a node stands as to the path that the action was applied to.
  enum PathCode {
    NO_PATH,    ///< The action was applied to a node.
    IN_PATH,    ///< On the path, not at its end.
    BELOW_PATH, ///< The end of the path, or below it.
    OFF_PATH,   ///< Beside the path.
  };
  PathCode getPathCode() const { return m_pathCode; }
  /// IN_PATH only: the index of the child through which the path goes on.
  int getPathChildIndex() const;

  NxNode* getCurPathTail() const { return m_current.empty() ? nullptr : m_current.back().node; }
  /// A new path from the root of the traversal to the current node, hidden nodes included.
  NbRefPtr<NxPath> getCurPath() const;

  /// The node or path that the action was applied to; null otherwise.
  NxNode* getNodeAppliedTo() const { return m_root; }
  NxPath* getPathAppliedTo() const { return m_path; }

  /// Ends the traversal: no further node is called.
  void terminate() { m_hasTerminated = true; }
  bool hasTerminated() const { return m_hasTerminated; }

  /// Calls a child of the current node. For child lists.
  void traverseChild(int index, NxNode* child);
  /// Calls a node that is no child, such as one held by a field, as if it stood in place of the current one.
  void traverse(NxNode* node);

protected:
  NxAction();

  virtual const NxActionClass& getRecord() const = 0;
  /// Called once for each apply(), between the making of the state and the first node; an override calls
  /// traverse(root).
  virtual void beginTraversal(NxNode* root);
  /// Called after the traversal.
  virtual void endTraversal(NxNode* root);
  /// Calls the node's entry point of this action's kind.
  virtual void callNode(NxNode* node) = 0;

private:
  struct Step {
    NxNode* node;
    int index;
  };
  void run(NxNode* root);

  std::unique_ptr<NxState> m_state;
  int m_enabledVersion = -1;
  NxNode* m_root = nullptr;
  NxPath* m_path = nullptr;
  PathCode m_pathCode = NO_PATH;
  std::vector<Step> m_current;
  bool m_hasTerminated = false;
  bool m_isRunning = false;
  static NxActionClass s_class;
};
