// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/KoReplacedElement.h>

#include <cstddef>

class KiTessellator;

struct KoTessellatorElementValue {
  KiTessellator* tessellator = nullptr;
  std::size_t tessellatorTimeStamp = static_cast<std::size_t>(-1);
  std::size_t nodeTimeStamp = static_cast<std::size_t>(-1);

  bool matches(const KoTessellatorElementValue& o) const {
    return nodeTimeStamp == o.nodeTimeStamp && tessellator == o.tessellator &&
           tessellatorTimeStamp == o.tessellatorTimeStamp;
  }
};

/// The tessellator above.
class KERRIN_DATAMAPPING_API KoTessellatorElement
    : public KoReplacedElement<KoTessellatorElement, KoTessellatorElementValue> {
  NX_ELEMENT_HEADER(KoTessellatorElement);

public:
  static void set(NxState* state, NxNode* node, KiTessellator* tessellator, std::size_t nodeTimeStamp);
  /// Null without a tessellator, and -1 as time stamp where no node has set one; else the node's time stamp.
  static KiTessellator* getTessellator(NxState* state, std::size_t& timeStamp);

  /// The node's time stamp.
  std::size_t getTimeStamp() const { return m_value.nodeTimeStamp; }

  void print(FILE* file) const override;
};
