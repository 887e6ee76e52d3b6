// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/KoExport.h>
#include <Nyx/elements/NxReplacedElement.h>
#include <Nyx/misc/NxState.h>

/// What the library's replaced elements have in common: one value, which the nearest node above has set.
///
/// `Value` starts as the element does; its `matches` says whether a cache that has seen the one value may stay when the
/// state holds the other.
template <class Derived, class Value>
class KoReplacedElement : public NxReplacedElement {
public:
  void init(NxState* state) override {
    NxReplacedElement::init(state);
    m_value = Value();
  }

  bool matches(const NxElement* element) const override {
    return m_value.matches(static_cast<const KoReplacedElement*>(element)->m_value);
  }

  NxElement* copyMatchInfo() const override {
    auto* copy = static_cast<Derived*>(getTypeId().createInstance());
    copy->m_value = m_value;
    return copy;
  }

protected:
  /// The value of the state's element for writing; null when the action does not carry the element.
  static Value* getWritable(NxState* state, NxNode* node) {
    auto* element = getElement(state, Derived::getClassTypeId(), Derived::getClassStackIndex(), node);
    return element ? &static_cast<Derived*>(element)->m_value : nullptr;
  }

  /// The value of the state's element; null when the action does not carry the element.
  static const Value* getReadable(NxState* state) {
    const auto* element = state->getConstElement(Derived::getClassTypeId(), Derived::getClassStackIndex());
    return element ? &static_cast<const Derived*>(element)->m_value : nullptr;
  }

  Value m_value;
};
