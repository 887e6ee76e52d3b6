// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/colors/KiColorMapping.h>
#include <KerrinDataMapping/elements/KoReplacedElement.h>
#include <Nyx/base/NbColorRGBA.h>

#include <cstddef>

/// The mapping of an element below. Equal stamps match, whatever the object.
template <class Value>
struct KoMappingElementValue {
  const KiColorMapping<Value, NbColorRGBA>* mapping = nullptr;
  std::size_t timeStamp = static_cast<std::size_t>(-1);

  bool matches(const KoMappingElementValue& o) const { return timeStamp == o.timeStamp; }
};

/// What the elements of a colour mapping of one value and of one of several values have in common.
template <class Derived, class Value>
class KoMappingElement : public KoReplacedElement<Derived, KoMappingElementValue<Value>> {
  using Base = KoReplacedElement<Derived, KoMappingElementValue<Value>>;

public:
  using Mapping = KiColorMapping<Value, NbColorRGBA>;

  static void set(NxState* state, NxNode* node, const Mapping* mapping) {
    auto* value = Base::getWritable(state, node);
    if (!value) return;
    value->mapping = mapping;
    value->timeStamp = mapping ? mapping->getTimeStamp() : static_cast<std::size_t>(-1);
  }

  /// Null without a mapping.
  static const Mapping* getColorMapping(NxState* state) {
    const auto* value = Base::getReadable(state);
    return value ? value->mapping : nullptr;
  }

  /// Keeps the stamp alone: the mapping may be gone when it is compared.
  NxElement* copyMatchInfo() const override {
    auto* copy = static_cast<KoMappingElement*>(static_cast<Derived*>(this->getTypeId().createInstance()));
    copy->m_value.timeStamp = this->m_value.timeStamp;
    return copy;
  }
};
