// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxReplacedElement.h>

/// What all elements have in common that carry one value from a node to what comes below it: the value itself, its
/// default (a default-constructed `T`), its comparison (`==`) and its copy. A class adds only its name:
///
///     class NxExampleElement : public NxValueElement<NxExampleElement, int> {
///       NX_ELEMENT_HEADER(NxExampleElement);
///     };
///     NX_ELEMENT_SOURCE(NxExampleElement, NxReplacedElement) // in a source file
template <class Derived, class T>
class NxValueElement : public NxReplacedElement {
public:
  using Value = T;

  /// The value in the state; the default where the action does not carry the element.
  static const T& get(NxState* state) {
    static const T initial{};
    const NxElement* element = getConstElement(state, Derived::getClassTypeId(), Derived::getClassStackIndex());
    return element ? static_cast<const Derived*>(element)->m_value : initial;
  }

  /// Replaces the value for what comes below. Does nothing where the action does not carry the element.
  static void set(NxState* state, NxNode* node, const T& value) {
    NxElement* element = getElement(state, Derived::getClassTypeId(), Derived::getClassStackIndex(), node);
    if (element) static_cast<Derived*>(element)->m_value = value;
  }

  void init(NxState* state) override {
    NxReplacedElement::init(state);
    m_value = T{};
  }

  /// Equal values match, whichever node has set them.
  bool matches(const NxElement* other) const override {
    return m_value == static_cast<const NxValueElement*>(other)->m_value;
  }

  NxElement* copyMatchInfo() const override {
    auto* copy = static_cast<Derived*>(createSame());
    copy->m_value = m_value;
    return copy;
  }

protected:
  T m_value{};
};
