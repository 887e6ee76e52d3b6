// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoActionNode.h>
#include <Nyx/actions/NxAction.h>

/// What the nodes have in common that add a data set to a list of the traversal state; `Element` is the list's element.
///
/// The set is not owned and must outlive its last traversal. Representations name the set by its index among those
/// that were added on the way down.
template <class Element>
class KoDataSetNode : public KoActionNode {
public:
  using Set = typename Element::Set;

  void doAction(NxAction* action) override { Element::add(action->getState(), this, m_set); }

  void copyContents(const NxFieldContainer* from, bool copyConnections) override {
    KoActionNode::copyContents(from, copyConnections);
    m_set = static_cast<const KoDataSetNode*>(from)->m_set;
  }

protected:
  const Set* getSet() const { return m_set; }
  void setSet(const Set* set) { m_set = set; }

private:
  const Set* m_set = nullptr;
};
