// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbColor.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/elements/NxValueElement.h>
#include <vector>

/// A directional light in world coordinates.
struct NxLightValue {
  NbVec3f direction; ///< the way the light travels
  NbColor color;     ///< times its intensity

  friend bool operator==(const NxLightValue& a, const NxLightValue& b) {
    return a.direction == b.direction && a.color == b.color;
  }
};

/// The lights that shine on what comes below.
class NYX_CORE_API NxLightElement : public NxValueElement<NxLightElement, std::vector<NxLightValue>> {
  NX_ELEMENT_HEADER(NxLightElement);

public:
  static void add(NxState* state, NxNode* node, const NxLightValue& light) {
    std::vector<NxLightValue> lights = get(state);
    lights.push_back(light);
    set(state, node, lights);
  }
};
