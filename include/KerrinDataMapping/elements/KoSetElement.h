// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>
#include <Nyx/elements/NxAccumulatedElement.h>
#include <Nyx/misc/NxState.h>
#include <Nyx/nodes/NxNode.h>

#include <vector>

/// What the elements have in common that collect data sets: a list to which each node on the way down adds one.
template <class Derived, class DataSet>
class KoSetElement : public NxAccumulatedElement {
public:
  using Set = DataSet;

  /// Appends a set, which may be null. Does nothing when the action does not carry the element.
  static void add(NxState* state, NxNode* node, const Set* set) {
    auto* element = static_cast<Derived*>(getElement(state, Derived::getClassTypeId(), Derived::getClassStackIndex()));
    if (!element) return;
    element->m_sets.push_back(set);
    element->addNodeId(node);
  }

  static int getNum(NxState* state) {
    const Derived* element = find(state);
    return element ? static_cast<int>(element->m_sets.size()) : 0;
  }

  /// Null for an index out of range.
  static const Set* get(NxState* state, int index) {
    const Derived* element = find(state);
    if (!element || index < 0 || index >= static_cast<int>(element->m_sets.size())) return nullptr;
    return element->m_sets[static_cast<std::size_t>(index)];
  }

  void init(NxState* state) override {
    NxAccumulatedElement::init(state);
    m_sets.clear();
  }

  void push(NxState* state) override {
    NxAccumulatedElement::push(state);
    // What is added below a separator must not change the list above it.
    m_sets = static_cast<const Derived*>(getNextInStack())->m_sets;
  }

private:
  static const Derived* find(NxState* state) {
    return static_cast<const Derived*>(
        state->getConstElement(Derived::getClassTypeId(), Derived::getClassStackIndex()));
  }

  std::vector<const Set*> m_sets;
};
