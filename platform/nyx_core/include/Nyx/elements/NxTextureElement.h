// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>
#include <cstdint>

class NxTexture2;

/// The texture of what comes below; null for none.
struct NxTextureValue {
  const NxTexture2* node = nullptr;
  uint64_t change = 0; ///< the node's id when it was traversed

  friend bool operator==(const NxTextureValue& a, const NxTextureValue& b) {
    return a.node == b.node && a.change == b.change;
  }
};

/// The texture of what comes below.
class NYX_CORE_API NxTextureElement : public NxValueElement<NxTextureElement, NxTextureValue> {
  NX_ELEMENT_HEADER(NxTextureElement);
};
