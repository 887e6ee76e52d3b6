// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>

/// Whether and how what comes below can be picked: an NxPickStyle::Style.
class NYX_CORE_API NxPickStyleElement : public NxValueElement<NxPickStyleElement, int> {
  NX_ELEMENT_HEADER(NxPickStyleElement);
};
