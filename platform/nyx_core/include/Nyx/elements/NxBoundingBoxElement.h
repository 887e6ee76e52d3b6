// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>

/// Whether a box already stands for the shapes below.
struct NxBoundingBoxValue {
  bool isGiven = false; ///< true: NxBBox has given the box, shapes add nothing

  friend bool operator==(const NxBoundingBoxValue& a, const NxBoundingBoxValue& b) { return a.isGiven == b.isGiven; }
};

/// Whether shapes have to work out their own bounding boxes.
class NYX_CORE_API NxBoundingBoxElement : public NxValueElement<NxBoundingBoxElement, NxBoundingBoxValue> {
  NX_ELEMENT_HEADER(NxBoundingBoxElement);
};
