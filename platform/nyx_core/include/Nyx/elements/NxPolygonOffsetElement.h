// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>

/// A shift in depth; see NxPolygonOffset for the meanings.
struct NxPolygonOffsetValue {
  bool on = false;
  float factor = 0.f;
  float units = 0.f;
  int styles = 1; ///< a sum of NxPolygonOffset::Style

  friend bool operator==(const NxPolygonOffsetValue& a, const NxPolygonOffsetValue& b) {
    return a.on == b.on && a.factor == b.factor && a.units == b.units && a.styles == b.styles;
  }
};

/// The depth shift of what comes below.
class NYX_CORE_API NxPolygonOffsetElement : public NxValueElement<NxPolygonOffsetElement, NxPolygonOffsetValue> {
  NX_ELEMENT_HEADER(NxPolygonOffsetElement);
};
