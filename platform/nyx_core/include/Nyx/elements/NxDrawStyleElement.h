// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>
#include <cstdint>

/// How shapes are drawn; see NxDrawStyle for the meanings.
struct NxDrawStyleValue {
  int style = 0; ///< an NxDrawStyle::Style
  float pointSize = 1.f;
  float lineWidth = 1.f;
  uint16_t linePattern = 0xFFFF;
  int linePatternScaleFactor = 1;

  friend bool operator==(const NxDrawStyleValue& a, const NxDrawStyleValue& b) {
    return a.style == b.style && a.pointSize == b.pointSize && a.lineWidth == b.lineWidth &&
           a.linePattern == b.linePattern && a.linePatternScaleFactor == b.linePatternScaleFactor;
  }
};

/// The draw style of what comes below.
class NYX_CORE_API NxDrawStyleElement : public NxValueElement<NxDrawStyleElement, NxDrawStyleValue> {
  NX_ELEMENT_HEADER(NxDrawStyleElement);
};
