// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>
#include <cstdint>

class NxVertexProperty;

/// The vertex property node that was met last; null for none.
struct NxVertexPropertyValue {
  NxVertexProperty* node = nullptr;
  uint64_t change = 0; ///< the node's id when it was traversed

  friend bool operator==(const NxVertexPropertyValue& a, const NxVertexPropertyValue& b) {
    return a.node == b.node && a.change == b.change;
  }
};

/// Vertices for shapes that have none of their own.
class NYX_CORE_API NxVertexPropertyElement : public NxValueElement<NxVertexPropertyElement, NxVertexPropertyValue> {
  NX_ELEMENT_HEADER(NxVertexPropertyElement);
};
