// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>

#include <memory>

class NxChildList;
class NxSeparator;

/// A node with a scene graph of its own inside, which actions walk but searches don't enter.
class KERRIN_DATAMAPPING_API KoMeshBaseRepresentation : public KoActionNode {
  NX_NODE_ABSTRACT_HEADER(KoMeshBaseRepresentation);

public:
  /// Whether a field has changed since the last traversal that ran to its end.
  bool isModified() const { return m_isModified; }

  void fieldHasChanged(NxField* field) override;
  void doAction(NxAction* action) override;
  /// Writes the internal graph, not the node itself.
  void write(NxWriteAction* action) override;
  /// False: the internal graph leaves nothing behind in the traversal state.
  bool affectsState() const override;
  NxChildList* getChildren() const override;
  bool isSynchronizingContentOnly() const override;

protected:
  KoMeshBaseRepresentation();
  ~KoMeshBaseRepresentation() override;

  /// Drops what the node shows.
  virtual void clear();

  NxSeparator& getInternalGroup() const { return *m_internalGroup; }

private:
  NxSeparator* m_internalGroup;
  std::unique_ptr<NxChildList> m_children;
  bool m_isModified = true;
};
