// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>

/// How shapes are lit.
struct NxLightModelValue {
  int model = 1; ///< an NxLightModel::Model

  friend bool operator==(const NxLightModelValue& a, const NxLightModelValue& b) { return a.model == b.model; }
};

/// The light model of what comes below.
class NYX_CORE_API NxLightModelElement : public NxValueElement<NxLightModelElement, NxLightModelValue> {
  NX_ELEMENT_HEADER(NxLightModelElement);
};
